// The Setup and New Setup commands, through the menu of the real main window.
#include "tests/dialogs/FlashCommandsFixture.h"

#include <wx/spinctrl.h>

namespace {

class SetupCommandTest : public FlashCommandsTest {
  protected:
    SetupCommandTest() { programmer_.SetDesignSetup(MakeSmallestSetup()); }

    // Changes the setup in the dialog that is shown: a chain of two devices without a name.
    void EnterTwoDevices(wxDialog& setup) {
        dialogs_.Expect("JTAG Chain Devices Count", [](wxDialog& size) {
            FindByClass<wxSpinCtrl>(size)->SetValue(2);
            PressButton(size, wxID_OK);
        });
        PressButton(setup, "E&nter manually...");
    }

    void SaveToFile(const char* name) {
        files_.ExpectSave("Save Setup File", kSaveSetupFilter, folder_.Path(name));
        ChooseMenu(*frame_, wxID_SAVEAS);
    }

    // As the program shows it while it is found out.
    void FindSectors() {
        programmer_.sectorsValid = true;
        programmer_.commandSet = OmCommandSet::AmdWord;
    }
};

} // namespace

TEST_F(SetupCommandTest, OkWithoutAChangeChangesNothing) {
    SaveToFile("board.velflash");
    FindSectors();
    const OmDesignSetup before = programmer_.setup;
    dialogs_.ExpectAndPress("Setup", wxID_OK);
    ChooseMenu(*frame_, kIdSetup);
    EXPECT_FALSE(frame_->IsSetupModified());
    EXPECT_EQ(frame_->GetTitle(), "board - Velmora Flash Programmer");
    EXPECT_TRUE(programmer_.setup == before);
    EXPECT_TRUE(programmer_.sectorsValid) << "what was found about the flash is kept";
}

TEST_F(SetupCommandTest, OkTakesAChangeAndMarksTheTitle) {
    SaveToFile("board.velflash");
    FindSectors();
    programmer_.SetDesignSetup(OmDesignSetup());
    dialogs_.Expect("Setup", [this](wxDialog& shown) {
        EnterTwoDevices(shown);
        PressButton(shown, wxID_OK);
    });
    ChooseMenu(*frame_, kIdSetup);
    EXPECT_EQ(programmer_.setup.GetDeviceCount(), 2u);
    EXPECT_TRUE(frame_->IsSetupModified());
    EXPECT_EQ(frame_->GetTitle(), "board* - Velmora Flash Programmer");
    EXPECT_FALSE(programmer_.sectorsValid);
}

TEST_F(SetupCommandTest, CancelDropsTheChange) {
    programmer_.SetDesignSetup(OmDesignSetup());
    dialogs_.Expect("Setup", [this](wxDialog& shown) {
        EnterTwoDevices(shown);
        PressButton(shown, wxID_CANCEL);
    });
    ChooseMenu(*frame_, kIdSetup);
    EXPECT_EQ(programmer_.setup.GetDeviceCount(), 0u);
    EXPECT_FALSE(frame_->IsSetupModified());
}

TEST_F(SetupCommandTest, CableStaysOpen) {
    ASSERT_TRUE(programmer_.OpenCable());
    dialogs_.ExpectAndPress("Setup", wxID_OK);
    ChooseMenu(*frame_, kIdSetup);
    dialogs_.ExpectAndPress("Setup", wxID_CANCEL);
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_EQ(target_.cablesOpen, 1);
    EXPECT_EQ(cablesMade_, 1);
}

TEST_F(SetupCommandTest, NewSetupIsEmptyAndOpensTheDialogAtOnce) {
    SaveToFile("board.velflash");
    dialogs_.Expect("Setup", [this](wxDialog& shown) {
        EXPECT_EQ(programmer_.setup.GetDeviceCount(), 0u);
        EXPECT_EQ(frame_->GetTitle(), "Untitled - Velmora Flash Programmer");
        PressButton(shown, wxID_CANCEL);
    });
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_TRUE(programmer_.setup == OmDesignSetup());
    EXPECT_EQ(frame_->GetTitle(), "Untitled - Velmora Flash Programmer");
    EXPECT_EQ(frame_->GetSetupPath(), "");
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), (std::vector<std::string>{"board.velflash"}));
}

TEST_F(SetupCommandTest, NewSetupThatIsFilledInIsModified) {
    dialogs_.Expect("Setup", [this](wxDialog& shown) {
        EnterTwoDevices(shown);
        PressButton(shown, wxID_OK);
    });
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
}

TEST_F(SetupCommandTest, NewSetupAsksForTheModifiedOneFirst) {
    frame_->MarkSetupModified();
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::Cancel);
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_EQ(programmer_.setup.GetDeviceCount(), 1u);
    EXPECT_TRUE(frame_->IsSetupModified());
}

TEST_F(SetupCommandTest, NewSetupKeepsTheConnection) {
    programmer_.settings.cableType = OmCableType::Wiggler;
    programmer_.adaptiveWarningAnswered = true;
    dialogs_.ExpectAndPress("Setup", wxID_CANCEL);
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_EQ(programmer_.settings.cableType, OmCableType::Wiggler);
    EXPECT_TRUE(programmer_.adaptiveWarningAnswered);
    programmer_.settings.ResetToDefaults();
    programmer_.adaptiveWarningAnswered = false;
}
