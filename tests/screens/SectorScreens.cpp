#include "dialogs/EditSectorsDlg.h"
#include "dialogs/SelectSectorsDlg.h"
#include "tests/screens/Screens.h"

#include <wx/listbox.h>

namespace {

const OmFlashSectorLayout kMap{{{8, 0x2000}, {127, 0x10000}}};
const OmFlashSectorLayout kAbsurdMap{{{1000000000, 1}, {0xFFFFFFFF, 0xFFFFFFFF}}};

class SectorScreens : public ScreensTest {
  protected:
    void ShowSelect(const OmFlashSectorLayout& map, uint32_t chips, OmSelectSectorsMode mode,
                    const OmSectorRange& selection, const std::string& name) {
        OmSelectSectorsDlg dialog(frame_);
        dialog.sectorMap = &map;
        dialog.chipCount = chips;
        dialog.mode = mode;
        dialog.selection = selection;
        Show(dialog, [&](wxDialog& shown) { Picture(shown, name); });
    }
};

} // namespace

TEST_F(SectorScreens, SelectSectors) {
    ShowSelect(kMap, 1, OmSelectSectorsMode::Plain, {}, "select-sectors");
    ShowSelect(kMap, 2, OmSelectSectorsMode::Plain, {1, 2, 8}, "select-sectors-two-chips");
    ShowSelect(kMap, 1, OmSelectSectorsMode::Lock, {0}, "select-sectors-lock");
    ShowSelect(kMap, 1, OmSelectSectorsMode::Unlock, {}, "select-sectors-unlock");
    ShowSelect(kAbsurdMap, 1, OmSelectSectorsMode::Plain, {}, "select-sectors-absurd");
}

TEST_F(SectorScreens, EditSectors) {
    OmEditSectorsDlg empty(frame_);
    Show(empty, [this](wxDialog& shown) { Picture(shown, "edit-sectors-empty"); });
    OmEditSectorsDlg dialog(frame_);
    dialog.layout = kMap;
    Show(dialog, [this](wxDialog& shown) {
        Picture(shown, "edit-sectors");
        SelectRow(*FindByClass<wxListBox>(shown), 1);
        Picture(shown, "edit-sectors-row-selected");
    });
    OmEditSectorsDlg absurd(frame_);
    absurd.layout = kAbsurdMap;
    Show(absurd, [this](wxDialog& shown) { Picture(shown, "edit-sectors-absurd"); });
}
