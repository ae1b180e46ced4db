#include "dialogs/ProgramDlg.h"

#include "data/DataImage.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/checklst.h>
#include <wx/wx.h>

namespace {

constexpr char kErase[] = "&Erase before programming";
constexpr char kOptions[] = "Erase &Options...";
constexpr char kVerify[] = "&Verify after programming";
constexpr char kIgnore[] = "&Ignore the data view contents address and instead program data into "
                           "the flash starting at address:";
constexpr char kUnit[] = "(enter address as a hex 8-bit offset)";
constexpr char kEraseData[] = "Erase only sectors &necessary to program data view contents";
constexpr char kEraseSelected[] = "Erase &selected sectors only";
constexpr wchar_t kEraseDisabled[] =
    L"Erase operation is disabled because:\n1) Sectors configuration is unknown and so erasure of "
    L"individual sectors is not possible\n2) This chip does not support the 'full chip erase' "
    L"command.\n\nTo enable erase operation, please enter the sectors configuration using Setup "
    L"dialog.";

const OmFlashSectorLayout kMap{{{4, 0x1000}, {2, 0x10000}}};

using Step = std::function<void(wxDialog&, ModalSteps&)>;

// The dialog as the Program command prepares it, with two bytes at 1FFFh.
class ProgramDlgTest : public testing::Test {
  protected:
    ProgramDlgTest() {
        image.SetBytes(0x1FFF, std::vector<uint8_t>(2));
        dialog.erase = true;
        dialog.verify = true;
        dialog.eraseMode = OmEraseMode::SectorsForData;
        dialog.sectorMap = &map;
        dialog.dataImage = &image;
    }

    int Show(const Step& step) {
        ModalSteps user;
        user.Expect("Program", [&](wxDialog& shown) { step(shown, user); });
        return dialog.ShowModal();
    }

    // Opens the erase options, takes `step` there, and shows what the text says then.
    static std::string EditOptions(wxDialog& shown, ModalSteps& user, const Step& step) {
        user.Expect("Erase Options", [&](wxDialog& options) { step(options, user); });
        PressButton(shown, kOptions);
        return TextBehind(shown, kOptions);
    }

    RecordingUserInterface boxes;
    OmFlashSectorLayout map = kMap;
    OmDataImage image;
    OmProgramDlg dialog{nullptr};
};

void SelectFirstSector(wxDialog& options, ModalSteps& user) {
    ClickRadio(options, kEraseSelected);
    user.Expect("Select Sectors", [](wxDialog& sectors) {
        FindByClass<wxCheckListBox>(sectors)->Check(0);
        PressButton(sectors, wxID_OK);
    });
    PressButton(options, "Selec&t...");
    PressButton(options, wxID_OK);
}

} // namespace

TEST_F(ProgramDlgTest, ShowsWhatItWasGiven) {
    EXPECT_EQ(Show([](wxDialog& shown, ModalSteps&) {
                  EXPECT_TRUE(CheckBox(shown, kErase).GetValue());
                  EXPECT_TRUE(IsEnabled(shown, kOptions));
                  EXPECT_EQ(TextBehind(shown, kOptions),
                            "Erase only sectors necessary to program data view contents");
                  EXPECT_TRUE(CheckBox(shown, kVerify).GetValue());
                  EXPECT_FALSE(CheckBox(shown, kIgnore).GetValue());
                  EXPECT_FALSE(BoxBehind(shown, kIgnore).IsThisEnabled());
                  EXPECT_FALSE(IsEnabled(shown, kUnit));
                  ExpectGoodLayout(shown);
                  TakeScreenshot(shown, "program");
                  PressButton(shown, wxID_OK);
              }),
              wxID_OK);
    EXPECT_TRUE(dialog.erase);
    EXPECT_TRUE(dialog.verify);
    EXPECT_FALSE(dialog.ignoreAddress);
    EXPECT_EQ(dialog.eraseMode, OmEraseMode::SectorsForData);
}

TEST_F(ProgramDlgTest, TakesChecksAndNewStart) {
    EXPECT_EQ(Show([](wxDialog& shown, ModalSteps&) {
                  ClickCheck(shown, kErase);
                  EXPECT_FALSE(IsEnabled(shown, kOptions));
                  EXPECT_EQ(TextBehind(shown, kOptions), "");
                  ClickCheck(shown, kVerify);
                  ClickCheck(shown, kIgnore);
                  EXPECT_TRUE(IsEnabled(shown, kUnit));
                  Type(shown, kIgnore, "3FFFFFFF");
                  TakeScreenshot(shown, "program_moved");
                  PressButton(shown, wxID_OK);
              }),
              wxID_OK);
    EXPECT_FALSE(dialog.erase);
    EXPECT_FALSE(dialog.verify);
    EXPECT_TRUE(dialog.ignoreAddress);
    EXPECT_EQ(dialog.newStart, 0x3FFFFFFFu);
}

TEST_F(ProgramDlgTest, RefusesBadNewStart) {
    const struct {
        const char* start;
        const wchar_t* text;
    } cases[] = {
        {"", L"If you choose to ignore the data view contents address, please enter a new starting "
             L"address. The address must be an unsigned hex 8-bit offset."},
        {"40000000", L"Invalid starting address. Address must be an unsigned hex 8-bit offset."},
        {"xyz", L"Invalid starting address. Address must be an unsigned hex 8-bit offset."},
    };

    Show([&](wxDialog& shown, ModalSteps&) {
        ClickCheck(shown, kIgnore);
        for (const auto& c : cases) {
            boxes.Expect(c.text, kWarningBox);
            Type(shown, kIgnore, c.start);
            PressButton(shown, wxID_OK);
            EXPECT_TRUE(shown.IsModal());
            EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kIgnore));
        }
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(ProgramDlgTest, DisabledEraseSaysWhyAndStaysOff) {
    dialog.erase = false;
    dialog.eraseDisabled = true;
    boxes.Expect(kEraseDisabled, kWarningBox);
    Show([](wxDialog& shown, ModalSteps&) {
        ClickCheck(shown, kErase);
        EXPECT_FALSE(CheckBox(shown, kErase).GetValue());
        EXPECT_FALSE(IsEnabled(shown, kOptions));
        EXPECT_EQ(TextBehind(shown, kOptions), "");
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(dialog.erase);
}

TEST_F(ProgramDlgTest, OptionsShowTheSectorsOfTheData) {
    Show([](wxDialog& shown, ModalSteps& user) {
        EditOptions(shown, user, [](wxDialog& options, ModalSteps&) {
            EXPECT_EQ(options.FindWindow(wxID_OK)->GetLabel(), "&OK");
            EXPECT_TRUE(Radio(options, kEraseData).GetValue());
            EXPECT_EQ(TextBehind(options, kEraseData), "2 sectors: 01000h - 02FFFh");
            ExpectGoodLayout(options);
            TakeScreenshot(options, "erase_options");
            PressButton(options, wxID_CANCEL);
        });
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(ProgramDlgTest, OptionsFollowTheNewStart) {
    const struct {
        const char* start;
        const char* text;
    } cases[] = {
        {"4000", "1 sector: 04000h - 13FFFh"},
        {"0", "1 sector: 00000h - 00FFFh"},
        {"100000", "Nothing to erase -- data starting address is beyond flash address space"},
        {"xyz", "2 sectors: 01000h - 02FFFh"}, // no address yet: as if the data were not moved
    };

    Show([&](wxDialog& shown, ModalSteps& user) {
        ClickCheck(shown, kIgnore);
        for (const auto& c : cases) {
            Type(shown, kIgnore, c.start);
            EditOptions(shown, user, [&](wxDialog& options, ModalSteps&) {
                EXPECT_EQ(TextBehind(options, kEraseData), c.text);
                PressButton(options, wxID_CANCEL);
            });
        }
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(ProgramDlgTest, OptionsGiveModeAndSelectionBack) {
    Show([](wxDialog& shown, ModalSteps& user) {
        EXPECT_EQ(EditOptions(shown, user, SelectFirstSector), "Erase 1 sector: 00000h - 00FFFh");
        TakeScreenshot(shown, "program_selected_sectors");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.eraseMode, OmEraseMode::SelectedSectors);
    EXPECT_EQ(dialog.selectedSectors, OmSectorRange({0}));
}

TEST_F(ProgramDlgTest, SelectionLastsOnlyAsLongAsItsMode) {
    Show([](wxDialog& shown, ModalSteps& user) {
        EditOptions(shown, user, SelectFirstSector);
        const std::string text = EditOptions(shown, user, [](wxDialog& options, ModalSteps&) {
            EXPECT_EQ(TextBehind(options, "Selec&t..."), "1 sector: 00000h - 00FFFh");
            ClickRadio(options, "Erase entire &flash");
            PressButton(options, wxID_OK);
        });
        EXPECT_EQ(text, "Erase entire flash");
        EditOptions(shown, user, [](wxDialog& options, ModalSteps&) {
            EXPECT_EQ(TextBehind(options, "Selec&t..."), "");
            PressButton(options, wxID_CANCEL);
        });
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.eraseMode, OmEraseMode::EntireFlash);
}

TEST_F(ProgramDlgTest, EraseTextComesBackWithItsCheck) {
    dialog.eraseMode = OmEraseMode::EntireFlash;
    dialog.erase = false;
    Show([](wxDialog& shown, ModalSteps&) {
        EXPECT_EQ(TextBehind(shown, kOptions), "");
        ClickCheck(shown, kErase);
        EXPECT_EQ(TextBehind(shown, kOptions), "Erase entire flash");
        PressButton(shown, wxID_OK);
    });
    EXPECT_TRUE(dialog.erase);
}
