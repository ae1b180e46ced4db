// The commands that change the flash, through the menu of the real main window.
#include "tests/dialogs/FlashCommandsFixture.h"

#include <wx/checklst.h>

namespace {

constexpr char kErase[] = "&Erase before programming";
constexpr char kVerify[] = "&Verify after programming";
constexpr char kProgramMoved[] = "&Ignore the data view contents address and instead program data "
                                 "into the flash starting at address:";
constexpr char kEraseEntire[] = "Erase entire &flash";
constexpr char kEraseData[] = "Erase only sectors &necessary to program data view contents";
constexpr char kEraseSelected[] = "Erase &selected sectors only";
constexpr wchar_t kErased[] = L"Erase operation completed successfully.";
constexpr wchar_t kProgrammed[] = L"Program operation completed.";
constexpr wchar_t kVerified[] = L"Program operation completed and succesfully verified.";

// Ticks rows of the sector list and presses the confirming button.
ModalSteps::Step TickSectors(std::vector<unsigned> rows) {
    return [rows](wxDialog& shown) {
        for (const unsigned row : rows)
            FindByClass<wxCheckListBox>(shown)->Check(row);
        PressButton(shown, wxID_OK);
    };
}

ModalSteps::Step ClickAndPressOk(const char* radio) {
    return [radio](wxDialog& shown) {
        ClickRadio(shown, radio);
        PressButton(shown, wxID_OK);
    };
}

ModalSteps::Step MoveTo(const char* start) {
    return [start](wxDialog& shown) {
        ClickCheck(shown, kProgramMoved);
        Type(shown, kProgramMoved, start);
        PressButton(shown, wxID_OK);
    };
}

} // namespace

class FlashChangeTest : public FlashCommandsTest {
  protected:
    // Expects the Erase dialog, selects sectors there and presses Erase.
    void ExpectEraseOf(const std::vector<unsigned>& rows) {
        dialogs_.Expect("Erase", [this, rows](wxDialog& shown) {
            ClickRadio(shown, kEraseSelected);
            dialogs_.Expect("Select Sectors", TickSectors(rows));
            PressButton(shown, "Selec&t...");
            PressButton(shown, wxID_OK);
        });
    }
};

TEST_F(FlashChangeTest, EraseOfTheEntireFlashIsOneChipErase) {
    UseSetup(kCmdSetAmd);
    FillFlash(Bytes(0x40, 0));
    dialogs_.ExpectAndPress("Erase", wxID_OK);
    user_.Expect(kErased, kInformationBox);
    ChooseMenu(*frame_, kIdErase);
    EXPECT_TRUE(target_.chips[0].Saw(0x10)); // Chip Erase
    EXPECT_EQ(FlashBytes(0, 0x40), Bytes(0x40, 0xFF));
}

TEST_F(FlashChangeTest, EraseForTheDataTakesTheSectorsItTouches) {
    UseSetup(kCmdSetAmd);
    LoadData(0x3F, {1, 2});
    dialogs_.Expect("Erase", ClickAndPressOk(kEraseData));
    user_.Expect(kErased, kInformationBox);
    ChooseMenu(*frame_, kIdErase);
    EXPECT_EQ(ErasedSectors(), Sectors({1, 2}));
}

TEST_F(FlashChangeTest, EraseOfSelectedSectors) {
    UseSetup(kCmdSetIntel);
    ExpectEraseOf({15, 3});
    user_.Expect(kErased, kInformationBox);
    ChooseMenu(*frame_, kIdErase);
    EXPECT_EQ(ErasedSectors(), Sectors({3, 15}));
}

TEST_F(FlashChangeTest, FailedEraseSaysNothingMore) {
    UseSetup(kCmdSetAmd);
    target_.chips[0].failing.insert(3 * 16);
    ExpectEraseOf({3});
    user_.Expect(L"An erase error occured while attempting to erase sector 00030h.", kErrorBox);
    ChooseMenu(*frame_, kIdErase);
}

TEST_F(FlashChangeTest, EraseWithoutSectorsOnAmdOffersTheEntireFlashOnly) {
    UseSetup(kCmdSetAmd, false);
    LoadData(0, {1, 2});
    ExpectMissingSectorsBox();
    dialogs_.Expect("Erase", [](wxDialog& shown) {
        EXPECT_TRUE(Radio(shown, kEraseEntire).GetValue());
        EXPECT_FALSE(IsEnabled(shown, kEraseData));
        EXPECT_FALSE(IsEnabled(shown, kEraseSelected));
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kErased, kInformationBox);
    ChooseMenu(*frame_, kIdErase);
}

TEST_F(FlashChangeTest, EraseWithoutSectorsOnIntelIsImpossible) {
    UseSetup(kCmdSetIntel, false);
    ExpectMissingSectorsBox();
    user_.Expect(kEraseDisabledText, kWarningBox);
    ChooseMenu(*frame_, kIdErase);
}

TEST_F(FlashChangeTest, UnknownCommandSetStopsEraseAndProgramOnly) {
    UseSetup(kCmdSetAuto);
    LoadData(0, {1, 2});
    for (const int id : {kIdErase, kIdProgram}) {
        user_.Expect(L"Failed to identify flash command set (or command set is unsupported).",
                     kWarningBox);
        ChooseMenu(*frame_, id);
    }
    for (const int id : {kIdLockSectors, kIdUnlockSectors}) {
        user_.Expect(L"It seems like the connected flash does not support neither Intel Standard "
                     L"(Basic) nor Intel Extended (Scaleable) command set.\n\nIgnore this warning "
                     L"and proceed anyway?",
                     kWarningQuestionBox, OmAnswer::No, L"Warning");
        ChooseMenu(*frame_, id);
    }
}

TEST_F(FlashChangeTest, ProgramWithoutDataSaysSoAtOnce) {
    UseSetup(kCmdSetAmd);
    user_.Expect(L"No data to program.", kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_EQ(cablesMade_, 0);
}

TEST_F(FlashChangeTest, ProgramErasesProgramsAndVerifies) {
    UseSetup(kCmdSetAmd);
    FillFlash(Bytes(0x60, 0));
    LoadData(0x20, {1, 2, 3, 4});
    dialogs_.Expect("Program", [](wxDialog& shown) {
        EXPECT_TRUE(CheckBox(shown, kErase).GetValue());
        EXPECT_EQ(TextBehind(shown, "Erase &Options..."),
                  "Erase only sectors necessary to program data view contents");
        EXPECT_TRUE(CheckBox(shown, kVerify).GetValue());
        EXPECT_FALSE(CheckBox(shown, kProgramMoved).GetValue());
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kVerified, kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_EQ(ErasedSectors(), Sectors({1}));
    EXPECT_EQ(FlashBytes(0x20, 6), (Bytes{1, 2, 3, 4, 0xFF, 0xFF}));
    EXPECT_EQ(FlashBytes(0x40, 2), (Bytes{0, 0}));
}

TEST_F(FlashChangeTest, ProgramAloneSaysSo) {
    UseSetup(kCmdSetAmd);
    LoadData(0x20, {1, 2});
    dialogs_.Expect("Program", [](wxDialog& shown) {
        ClickCheck(shown, kErase);
        ClickCheck(shown, kVerify);
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kProgrammed, kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_EQ(ErasedSectors(), Sectors());
    EXPECT_EQ(FlashBytes(0x20, 2), (Bytes{1, 2}));
}

TEST_F(FlashChangeTest, ProgramAtALowerStartKeepsTheShownData) {
    UseSetup(kCmdSetAmd);
    OmDataImage image;
    image.SetBytes(0x1000, Bytes{1, 2});
    image.SetBytes(0x1020, Bytes{3, 4});
    LoadData(image);
    const int busyBefore = user_.busyCount;
    dialogs_.Expect("Program", MoveTo("40"));
    user_.Expect(kVerified, kInformationBox); // so the moved data was verified, not the shown one
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_GT(user_.busyCount, busyBefore);
    EXPECT_EQ(ErasedSectors(), Sectors({2, 3}));
    EXPECT_EQ(FlashBytes(0x40, 2), (Bytes{1, 2}));
    EXPECT_EQ(FlashBytes(0x60, 2), (Bytes{3, 4}));
    EXPECT_EQ(frame_->GetDataImage(), image);
}

TEST_F(FlashChangeTest, ProgramErasesSelectedSectors) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});
    dialogs_.Expect("Program", [this](wxDialog& shown) {
        dialogs_.Expect("Erase Options", [this](wxDialog& options) {
            ClickRadio(options, kEraseSelected);
            dialogs_.Expect("Select Sectors", TickSectors({0, 9}));
            PressButton(options, "Selec&t...");
            PressButton(options, wxID_OK);
        });
        PressButton(shown, "Erase &Options...");
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kVerified, kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_EQ(ErasedSectors(), Sectors({0, 9}));
}

TEST_F(FlashChangeTest, FailedEraseEndsProgramBeforeItWrites) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});
    target_.chips[0].failing.insert(0);
    dialogs_.ExpectAndPress("Program", wxID_OK);
    user_.Expect(L"An erase error occured while attempting to erase sector 00000h.", kErrorBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_FALSE(target_.chips[0].Saw(0xA0)); // Program
}

TEST_F(FlashChangeTest, FailedVerifySaysNothingMore) {
    UseSetup(kCmdSetAmd);
    FillFlash({0x00, 0x00});
    LoadData(0, {1, 2});
    dialogs_.Expect("Program", [](wxDialog& shown) {
        ClickCheck(shown, kErase);
        PressButton(shown, wxID_OK);
    });
    user_.Expect(L"Data verification failed at offset 00000h.\n"
                 L"Byte read from flash: 00h; byte expected: 01h.",
                 kErrorBox);
    ChooseMenu(*frame_, kIdProgram);
}

TEST_F(FlashChangeTest, ProgramWithoutSectorsOnIntelCannotErase) {
    UseSetup(kCmdSetIntel, false);
    LoadData(0, {1, 2});
    ExpectMissingSectorsBox();
    dialogs_.Expect("Program", [](wxDialog& shown) {
        EXPECT_FALSE(CheckBox(shown, kErase).GetValue());
        ClickCheck(shown, kErase);
        EXPECT_FALSE(CheckBox(shown, kErase).GetValue());
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kEraseDisabledText, kWarningBox);
    user_.Expect(kVerified, kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_EQ(ErasedSectors(), Sectors());
    EXPECT_EQ(FlashBytes(0, 2), (Bytes{1, 2}));
}

TEST_F(FlashChangeTest, ProgramWithoutSectorsOnAmdErasesTheEntireFlash) {
    UseSetup(kCmdSetAmd, false);
    FillFlash(Bytes(0x40, 0));
    LoadData(0, {1, 2});
    ExpectMissingSectorsBox();
    dialogs_.Expect("Program", [](wxDialog& shown) {
        EXPECT_TRUE(CheckBox(shown, kErase).GetValue());
        EXPECT_EQ(TextBehind(shown, "Erase &Options..."), "Erase entire flash");
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kVerified, kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_EQ(FlashBytes(0x20, 2), (Bytes{0xFF, 0xFF}));
}

TEST_F(FlashChangeTest, LockAndUnlockTakeTheSelectedSectors) {
    const struct {
        int id;
        const char* button;
        const wchar_t* done;
    } cases[] = {
        {kIdLockSectors, "&Lock", L"Lock sectors operation completed successfully."},
        {kIdUnlockSectors, "&Unlock", L"Unlock sectors operation completed successfully."},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.button);
        UseSetup(kCmdSetIntel);
        target_.chips[0].lockChanges.clear();
        dialogs_.Expect("Select Sectors", [&](wxDialog& shown) {
            EXPECT_EQ(shown.FindWindow(wxID_OK)->GetLabel(), c.button);
            TickSectors({2, 5})(shown);
        });
        user_.Expect(c.done, kInformationBox);
        ChooseMenu(*frame_, c.id);
        EXPECT_EQ(target_.chips[0].lockChanges, (Sectors{2 * 16, 5 * 16}));
    }
}

TEST_F(FlashChangeTest, CancelledSelectionLocksNothing) {
    UseSetup(kCmdSetIntel);
    for (const int id : {kIdLockSectors, kIdUnlockSectors}) {
        dialogs_.ExpectAndPress("Select Sectors", wxID_CANCEL);
        ChooseMenu(*frame_, id);
    }
    EXPECT_EQ(target_.chips[0].lockChanges, Sectors());
}

TEST_F(FlashChangeTest, LockWithoutSectorsEndsSilently) {
    UseSetup(kCmdSetIntel, false);
    ExpectMissingSectorsBox();
    ChooseMenu(*frame_, kIdLockSectors);
}

TEST_F(FlashChangeTest, UnlockWithoutSectorsAsksAboutSectorZero) {
    UseSetup(kCmdSetIntel, false);
    ExpectMissingSectorsBox();
    user_.Expect(L"Unlock sector at zero address?", kQuestionBox, OmAnswer::No);
    ChooseMenu(*frame_, kIdUnlockSectors);
    EXPECT_EQ(target_.chips[0].lockChanges, Sectors());
    ExpectMissingSectorsBox();
    user_.Expect(L"Unlock sector at zero address?", kQuestionBox, OmAnswer::Yes);
    user_.Expect(L"Unlock sectors operation completed successfully.", kInformationBox);
    ChooseMenu(*frame_, kIdUnlockSectors);
    EXPECT_EQ(target_.chips[0].lockChanges, Sectors({0}));
}

TEST_F(FlashChangeTest, LockOfAnAmdFlashAsksFirst) {
    UseSetup(kCmdSetAmd);
    user_.Expect(L"It seems like the connected flash does not support neither Intel Standard "
                 L"(Basic) nor Intel Extended (Scaleable) command set.\n\nIgnore this warning and "
                 L"proceed anyway?",
                 kWarningQuestionBox, OmAnswer::No, L"Warning");
    ChooseMenu(*frame_, kIdLockSectors);
}

TEST_F(FlashChangeTest, NoCommandTouchesTheSetupsModifiedFlag) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});
    dialogs_.ExpectAndPress("Program", wxID_OK);
    user_.Expect(kVerified, kInformationBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_FALSE(frame_->IsSetupModified());
}
