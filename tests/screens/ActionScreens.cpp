// The dialogs of the flash commands, with each choice that enables or disables something.
#include "dialogs/BlankCheckDlg.h"
#include "dialogs/ProgramDlg.h"
#include "dialogs/ReadDlg.h"
#include "dialogs/VerifyDlg.h"
#include "tests/screens/Screens.h"

namespace {

constexpr char kOptions[] = "Erase &Options...";
constexpr char kEraseForData[] = "Erase only sectors &necessary to program data view contents";
constexpr char kProgramElsewhere[] =
    "&Ignore the data view contents address and instead program data into the flash starting at "
    "address:";
constexpr char kVerifyElsewhere[] =
    "&Ignore the data view contents address and instead read data from the flash starting at "
    "address:";
constexpr char kCheckElsewhere[] =
    "&Ignore the data view contents address and instead use this as the data starting address:";
constexpr char kCheckPiece[] = "S&pecify a piece of memory to blank check";

// 8 MiB with boot sectors, in two chips.
const OmFlashSectorLayout kMap{{{8, 0x2000}, {127, 0x10000}}};
constexpr uint32_t kFlashSize = 0x800000;

OmDataImage MakeImage() {
    OmDataImage image;
    image.SetBytes(0x1FFF, std::vector<uint8_t>(0x48000));
    return image;
}

const OmDataImage kNoData;

class ActionScreens : public ScreensTest {
  protected:
    // Shows the erase dialog as its command does.
    void ShowErase(OmEraseMode mode, const OmFlashSectorLayout& map, const OmDataImage& image,
                   uint32_t offset, const OmSectorRange& selection, const std::string& name) {
        OmEraseDlg dialog(frame_);
        dialog.Initialise(mode, map, 2, image, offset, selection);
        Show(dialog, [&](wxDialog& shown) { Picture(shown, name); });
    }

    const OmDataImage image_ = MakeImage();
};

} // namespace

TEST_F(ActionScreens, Read) {
    OmReadDlg dialog(frame_);
    dialog.entireSize = kFlashSize;
    Show(dialog, [this](wxDialog& shown) {
        Picture(shown, "read-empty");
        ClickLink(shown, "Read the entire flash contents");
        Picture(shown, "read-entire-flash");
    });
}

TEST_F(ActionScreens, BlankCheck) {
    OmBlankCheckDlg dialog(frame_);
    dialog.entireSize = kFlashSize;
    Show(dialog, [this](wxDialog& shown) {
        Picture(shown, "blank-check-data");
        ClickCheck(shown, kCheckElsewhere);
        Type(shown, kCheckElsewhere, "40000");
        Picture(shown, "blank-check-data-elsewhere");
        ClickRadio(shown, kCheckPiece);
        Picture(shown, "blank-check-piece");
        ClickLink(shown, "Blank check the entire flash");
        Picture(shown, "blank-check-entire-flash");
    });
}

TEST_F(ActionScreens, BlankCheckWithoutData) {
    OmBlankCheckDlg dialog(frame_);
    dialog.noData = true;
    Show(dialog, [this](wxDialog& shown) { Picture(shown, "blank-check-no-data"); });
}

TEST_F(ActionScreens, Verify) {
    OmVerifyDlg dialog(frame_);
    Show(dialog, [this](wxDialog& shown) {
        Picture(shown, "verify");
        ClickCheck(shown, kVerifyElsewhere);
        Type(shown, kVerifyElsewhere, "3FFFFFFF");
        Picture(shown, "verify-elsewhere");
    });
}

TEST_F(ActionScreens, Erase) {
    OmSectorRange many;
    for (uint32_t index = 0; index < 60; index += 3)
        many.insert(index);
    ShowErase(OmEraseMode::EntireFlash, kMap, image_, 0, {}, "erase-entire-flash");
    ShowErase(OmEraseMode::SectorsForData, kMap, image_, 0, {}, "erase-sectors-for-data");
    ShowErase(OmEraseMode::SelectedSectors, kMap, image_, 0, {}, "erase-selected-none");
    ShowErase(OmEraseMode::SelectedSectors, kMap, image_, 0, {0, 1}, "erase-selected");
    ShowErase(OmEraseMode::SelectedSectors, kMap, image_, 0, many, "erase-selected-many");
    ShowErase(OmEraseMode::EntireFlash, kMap, kNoData, 0, {}, "erase-no-data");
    ShowErase(OmEraseMode::EntireFlash, {}, image_, 0, {}, "erase-no-sector-map");
    ShowErase(OmEraseMode::SectorsForData, kMap, image_, 0x8000000, {}, "erase-beyond-the-flash");
}

TEST_F(ActionScreens, Program) {
    OmProgramDlg dialog(frame_);
    dialog.erase = true;
    dialog.verify = true;
    dialog.eraseMode = OmEraseMode::SectorsForData;
    dialog.sectorMap = &kMap;
    dialog.chipCount = 2;
    dialog.dataImage = &image_;
    dialog.selectedSectors = {0, 1, 2, 9, 10, 14};
    Show(dialog, [&](wxDialog& shown) {
        Picture(shown, "program");
        ClickCheck(shown, kProgramElsewhere);
        Type(shown, kProgramElsewhere, "40000");
        Picture(shown, "program-elsewhere");
        dialogs_.Expect("Erase Options", [this](wxDialog& options) {
            Picture(options, "program-erase-options");
            ClickRadio(options, kEraseForData);
            PressButton(options, wxID_OK);
        });
        PressButton(shown, kOptions);
        ClickCheck(shown, "&Erase before programming");
        Picture(shown, "program-without-erase");
    });
}

TEST_F(ActionScreens, ProgramWithSelectedSectors) {
    OmProgramDlg dialog(frame_);
    dialog.erase = true;
    dialog.eraseMode = OmEraseMode::SelectedSectors;
    dialog.sectorMap = &kMap;
    dialog.dataImage = &image_;
    dialog.selectedSectors = {0, 1, 2, 9, 10, 14};
    Show(dialog, [this](wxDialog& shown) { Picture(shown, "program-selected-sectors"); });
}
