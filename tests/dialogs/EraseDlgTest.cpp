#include "dialogs/EraseDlg.h"

#include "data/DataImage.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/checklst.h>
#include <wx/wx.h>

namespace {

constexpr char kEntire[] = "Erase entire &flash";
constexpr char kData[] = "Erase only sectors &necessary to program data view contents";
constexpr char kSelected[] = "Erase &selected sectors only";
constexpr char kSelect[] = "Selec&t...";

const OmFlashSectorLayout kMap{{{4, 0x1000}, {2, 0x10000}}};

OmDataImage MakeImage(uint32_t address, size_t size) {
    OmDataImage image;
    image.SetBytes(address, std::vector<uint8_t>(size));
    return image;
}

struct Given {
    OmEraseMode mode = OmEraseMode::EntireFlash;
    OmFlashSectorLayout map = kMap;
    OmDataImage image = MakeImage(0x1FFF, 2);
    uint32_t offset = 0;
    OmSectorRange selection = {};
};

struct Outcome {
    int button;
    OmEraseMode mode;
    OmSectorRange selection = {};
};

// `user` may expect further dialogs.
Outcome Show(const Given& given, const std::function<void(wxDialog&, ModalSteps&)>& step) {
    OmEraseDlg dialog(nullptr);
    dialog.Initialise(given.mode, given.map, 1, given.image, given.offset, given.selection);
    ModalSteps user;
    user.Expect("Erase", [&](wxDialog& shown) { step(shown, user); });
    const int button = dialog.ShowModal();
    return {button, dialog.mode, dialog.selectedSectors};
}

void ExpectSelectEnabled(wxDialog& dialog, bool enabled) {
    EXPECT_EQ(IsEnabled(dialog, kSelect), enabled);
    EXPECT_EQ(BoxBehind(dialog, kSelect).IsThisEnabled(), enabled);
}

void TickInSelectDialog(ModalSteps& user, unsigned row, int button) {
    user.Expect("Select Sectors", [row, button](wxDialog& shown) {
        FindByClass<wxCheckListBox>(shown)->Check(row);
        PressButton(shown, button);
    });
}

} // namespace

TEST(EraseDlg, OffersTheEntireFlashFirst) {
    const RecordingUserInterface boxes;
    const Outcome outcome = Show({}, [](wxDialog& shown, ModalSteps&) {
        EXPECT_TRUE(Radio(shown, kEntire).GetValue());
        EXPECT_EQ(TextBehind(shown, kData), "2 sectors: 01000h - 02FFFh");
        ExpectSelectEnabled(shown, false);
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "erase");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.button, wxID_OK);
    EXPECT_EQ(outcome.mode, OmEraseMode::EntireFlash);
}

TEST(EraseDlg, TakesTheSectorsForTheData) {
    const RecordingUserInterface boxes;
    const Outcome outcome = Show({}, [](wxDialog& shown, ModalSteps&) {
        ClickRadio(shown, kData);
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.mode, OmEraseMode::SectorsForData);
}

TEST(EraseDlg, TakesSelectedSectors) {
    const RecordingUserInterface boxes;
    const Outcome outcome = Show({}, [](wxDialog& shown, ModalSteps& user) {
        ClickRadio(shown, kSelected);
        ExpectSelectEnabled(shown, true);
        TickInSelectDialog(user, 4, wxID_OK);
        PressButton(shown, kSelect);
        EXPECT_EQ(TextBehind(shown, kSelect), "1 sector: 04000h - 13FFFh");
        TakeScreenshot(shown, "erase_selected");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.mode, OmEraseMode::SelectedSectors);
    EXPECT_EQ(outcome.selection, OmSectorRange({4}));
}

TEST(EraseDlg, CancelledSelectionChangesNothing) {
    const Given given{.mode = OmEraseMode::SelectedSectors, .selection = {0}};
    const Outcome outcome = Show(given, [](wxDialog& shown, ModalSteps& user) {
        EXPECT_TRUE(Radio(shown, kSelected).GetValue());
        EXPECT_EQ(TextBehind(shown, kSelect), "1 sector: 00000h - 00FFFh");
        TickInSelectDialog(user, 4, wxID_CANCEL);
        PressButton(shown, kSelect);
        EXPECT_EQ(TextBehind(shown, kSelect), "1 sector: 00000h - 00FFFh");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.selection, OmSectorRange({0}));
}

TEST(EraseDlg, EveryRadioUpdatesTheSelectButton) {
    Show({}, [](wxDialog& shown, ModalSteps&) {
        ClickRadio(shown, kSelected);
        ExpectSelectEnabled(shown, true);
        ClickRadio(shown, kData);
        ExpectSelectEnabled(shown, false);
        ClickRadio(shown, kSelected);
        ClickRadio(shown, kEntire);
        ExpectSelectEnabled(shown, false);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EraseDlg, RefusesAnEmptySelection) {
    RecordingUserInterface boxes;
    boxes.Expect(L"No sectors selected.", kWarningBox);
    const Outcome outcome = Show({}, [](wxDialog& shown, ModalSteps&) {
        ClickRadio(shown, kSelected);
        PressButton(shown, wxID_OK);
        EXPECT_TRUE(shown.IsModal());
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(outcome.button, wxID_CANCEL);
}

TEST(EraseDlg, WithoutDataItsSectorsCannotBeChosen) {
    const Given given{.image = OmDataImage()};
    Show(given, [](wxDialog& shown, ModalSteps&) {
        EXPECT_FALSE(IsEnabled(shown, kData));
        EXPECT_FALSE(BoxBehind(shown, kData).IsThisEnabled());
        EXPECT_EQ(TextBehind(shown, kData), "(currently disabled because no data to program)");
        EXPECT_TRUE(IsEnabled(shown, kSelected));
        TakeScreenshot(shown, "erase_no_data");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EraseDlg, WithoutSectorMapOnlyTheEntireFlashIsLeft) {
    const Given given{.map = {}};
    const Outcome outcome = Show(given, [](wxDialog& shown, ModalSteps&) {
        EXPECT_TRUE(IsEnabled(shown, kEntire));
        EXPECT_FALSE(IsEnabled(shown, kData));
        EXPECT_FALSE(BoxBehind(shown, kData).IsThisEnabled());
        EXPECT_EQ(TextBehind(shown, kData),
                  "(currently disabled because sectors configuration is unknown)");
        EXPECT_FALSE(IsEnabled(shown, kSelected));
        ExpectSelectEnabled(shown, false);
        TakeScreenshot(shown, "erase_no_map");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.mode, OmEraseMode::EntireFlash);
}

TEST(EraseDlg, DataBehindTheFlashHasNothingToErase) {
    const Given given{.offset = 0x100000};
    Show(given, [](wxDialog& shown, ModalSteps&) {
        EXPECT_EQ(TextBehind(shown, kData),
                  "Nothing to erase -- data starting address is beyond flash address space");
        EXPECT_TRUE(IsEnabled(shown, kData));
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EraseDlg, OffsetMovesTheSectorsForTheData) {
    const Given given{.mode = OmEraseMode::SectorsForData, .offset = 0x3000};
    Show(given, [](wxDialog& shown, ModalSteps&) {
        EXPECT_TRUE(Radio(shown, kData).GetValue());
        EXPECT_EQ(TextBehind(shown, kData), "1 sector: 04000h - 13FFFh");
        PressButton(shown, wxID_CANCEL);
    });
}
