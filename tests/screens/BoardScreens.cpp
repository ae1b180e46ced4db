// The job itself on the virtual board, from the loaded setup to the closing message: what only a
// flash on the far side can show.
#include "app/CommandIds.h"
#include "app/ProgressDlg.h"
#include "bsdl/Idcode.h"
#include "data/DataFiles.h"
#include "flash/FlashProgrammer.h"
#include "platform/Paths.h"
#include "platform/Text.h"
#include "tests/jtag/FakeLibrary.h"
#include "tests/screens/Screens.h"
#include "widgets/WxUserInterface.h"

#include <cstdlib>

namespace {

OmProgressDlg* FindProgress() {
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<OmProgressDlg*>(window);
        if (dialog && dialog->IsShown())
            return dialog;
    }
    return nullptr;
}

class BoardScreens : public ScreensTest {
  protected:
    BoardScreens() {
        OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
        programmer.settings.cableType = OmCableType::Ftd2xx;
        programmer.settings.ftd2xxFrequency = 30000000;
        SetManufacturerTablePath(ToLocal(GetProgramDirectory()) + "/mfrid.dat");
        SetUserInterface(&boxes_);
        EXPECT_TRUE(frame_->LoadSetupFile(std::getenv("OM_DEMO_SETUP")));
    }

    ~BoardScreens() override {
        OmFlashProgrammer::GetInstance().CloseCable();
        OmFlashProgrammer::GetInstance().settings.ResetToDefaults();
        SetUserInterface(&user_);
    }

    // A boot loader and an application, with a gap between them.
    void LoadFirmware() {
        OmDataImage image;
        std::vector<uint8_t> bytes(0x6000);
        for (size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<uint8_t>(i * i >> 7);
        image.SetBytes(0, bytes);
        image.SetBytes(0x40000, bytes);
        const std::string path = folder_.Path("firmware.srec");
        ASSERT_TRUE(WriteSRecordFile(path, image));
        ASSERT_TRUE(frame_->LoadDataFile(path));
    }

    void ExpectBox(const std::string& picture) {
        dialogs_.Expect("Velmora Flash Programmer", [=, this](wxDialog& shown) {
            Picture(shown, picture);
            PressButton(shown, wxID_OK);
        });
    }

    WxUserInterface boxes_;
};

} // namespace

TEST_F(BoardScreens, Info) {
    dialogs_.Expect("Flash Array Information", [this](wxDialog& shown) {
        Picture(shown, "flash-info");
        PressButton(shown, "&Close");
    });
    ChooseMenu(*frame_, kIdInfo);
}

TEST_F(BoardScreens, Program) {
    LoadFirmware();
    frame_->SetSize(640, 400); // as much as a help page needs
    Picture(*frame_, "job-loaded");
    frame_->SetSize(670, 680);
    dialogs_.Expect("Program", [this](wxDialog& shown) {
        Picture(shown, "job-program");
        PressButton(shown, wxID_OK);
    });
    ExpectBox("job-done");
    wxTimer timer;
    bool pictured = false;
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        OmProgressDlg* progress = FindProgress();
        if (pictured || !progress || progress->GetLastPercent() < 30)
            return;
        pictured = true;
        Picture(*frame_, "job-progress");
    });
    timer.Start(20);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_TRUE(pictured);
}

TEST_F(BoardScreens, FailedVerify) {
    ReadFromFlash(0x100, {1, 2, 3});
    dialogs_.ExpectAndPress("Verify", wxID_OK);
    ExpectBox("job-verify-failed");
    ChooseMenu(*frame_, kIdVerify);
}

TEST_F(BoardScreens, NoCable) {
    const FakeLoader noLibraries;
    ExpectBox("job-no-cable");
    ChooseMenu(*frame_, kIdInfo);
}
