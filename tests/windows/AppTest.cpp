#include "app/App.h"
#include "app/MainFrame.h"
#include "flash/FlashProgrammer.h"
#include "tests/windows/MainWindow.h"
#include "tests/windows/StartUp.h"

#include <gtest/gtest.h>
#include <wx/config.h>
#include <wx/msgdlg.h>
#include <wx/sysopt.h>

TEST(App, BitmapsAreRemappedOnlyWithModernControlsAndDeepColours) {
    EXPECT_EQ(ChooseBitmapRemapping(600, 32), 2);
    EXPECT_EQ(ChooseBitmapRemapping(610, 32), 2);
    EXPECT_EQ(ChooseBitmapRemapping(599, 32), 0);
    EXPECT_EQ(ChooseBitmapRemapping(600, 24), 0);
    EXPECT_EQ(ChooseBitmapRemapping(600, 16), 0);
}

TEST_F(StartUp, OpensAnEmptyWindowWithoutArguments) {
    const OmMainFrame& frame = Start({});
    EXPECT_TRUE(frame.IsShown());
    EXPECT_EQ(frame.GetTitle(), "Untitled - Velmora Flash Programmer");
    EXPECT_EQ(frame.GetSize(), wxSize(670, 680));
    EXPECT_EQ(wxTheApp->GetAppName(), "Velmora Flash Programmer");
    EXPECT_EQ(wxTheApp->GetVendorName(), "Velmora");
    EXPECT_EQ(wxSystemOptions::GetOption("msw.notebook.themed-background"), "0");
    EXPECT_NE(app_->GetHelpController(), nullptr);
}

TEST_F(StartUp, LoadsTheNamedFiles) {
    const std::string data = folder_.Write("data.bin", "hello");
    const std::string setup = folder_.Path("board.velflash");
    Start({});
    OmFlashProgrammer::GetInstance().SetDesignSetup(MakeSmallestSetup());
    ASSERT_TRUE(OmFlashProgrammer::GetInstance().SaveDesignSetup(setup));
    Stop();
    const OmMainFrame& frame = Start({setup, data});
    EXPECT_EQ(frame.GetTitle(), "board - Velmora Flash Programmer");
    EXPECT_EQ(frame.GetDataPath(), data);
    EXPECT_EQ(frame.GetDataImage().GetByteCount(), 5u);
}

TEST_F(StartUp, HelpSwitchShowsTheUsageAndGoesOn) {
    const std::string setup = folder_.Path("missing.velflash");
    ModalSteps user;
    user.ExpectBox("Velmora Flash Programmer", "Usage: velflash [<setup_file> [<data_file>] ]",
                   wxOK | wxCENTRE | wxICON_INFORMATION, wxID_OK);
    user.ExpectBox("Velmora Flash Programmer", "Failed to load setup file '" + setup + "'.",
                   wxOK | wxCENTRE | wxICON_ERROR, wxID_OK);
    const OmMainFrame& frame = Start({"--help", setup});
    EXPECT_TRUE(frame.IsShown());
    EXPECT_EQ(frame.GetTitle(), "Untitled - Velmora Flash Programmer");
}

TEST_F(StartUp, WindowClosedBeforeItHasLoadedItsFilesLoadsNone) {
    const std::string data = folder_.Write("data.bin", "hello");
    const std::string setup = folder_.Path("missing.velflash");
    duringStart_ = [this] { app_->GetTopWindow()->Close(); };
    const std::vector<std::string> cases[] = {{setup}, {setup, data}};
    for (const std::vector<std::string>& arguments : cases) {
        StartOnly(arguments);
        EXPECT_EQ(frame_, nullptr);
        Stop();
    }
}

TEST_F(StartUp, GeometryComesBackInTheNextRun) {
    OmMainFrame& frame = Start({});
    frame.SetSize(30, 40, 800, 600);
    ASSERT_TRUE(WaitFor([&] { return frame.GetRect() == wxRect(30, 40, 800, 600); }));
    Stop();
    Start({});
    EXPECT_TRUE(WaitFor([&] { return frame_->GetRect() == wxRect(30, 40, 800, 600); }));
}

TEST_F(StartUp, SettingsLieInAPrivateFolderOfTheUser) {
    const std::filesystem::path config = folder_.path / "made" / "config";
    setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    Start({});
    wxConfigBase::Get()->Write("/BsdlDirs", "$HOME/bsdl");
    Stop();
    const std::string file = (config / "Velmora Flash Programmer.conf").string();
    EXPECT_NE(ReadWholeFile(file).find("BsdlDirs="), std::string::npos);
    EXPECT_EQ(std::filesystem::status(config).permissions(), std::filesystem::perms::owner_all);
    Start({});
    EXPECT_EQ(wxConfigBase::Get()->Read("/BsdlDirs"), "$HOME/bsdl");
}
