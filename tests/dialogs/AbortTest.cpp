// Abort from the mouse, the keyboard and the window manager, in every operation; meanwhile the main
// window is out of reach, and afterwards the same command works.
#include "tests/dialogs/FlashCommandsFixture.h"

#include <wx/aui/auibar.h>
#include <wx/uiaction.h>

namespace {

using Fill = void (*)(wxDialog&);

void LeaveAsItIs(wxDialog&) {}

void FillPiece(wxDialog& shown) {
    Type(shown, "&From address:", "0");
    Type(shown, "&Size in bytes:", "512");
}

void FillCheckedPiece(wxDialog& shown) {
    ClickRadio(shown, "S&pecify a piece of memory to blank check");
    FillPiece(shown);
}

void EraseForData(wxDialog& shown) {
    ClickRadio(shown, "Erase only sectors &necessary to program data view contents");
}

void EraseNothing(wxDialog& shown) {
    ClickCheck(shown, "&Erase before programming");
}

void TickAll(wxDialog& shown) {
    PressButton(shown, "&Select");
}

struct Operation {
    int id;
    int commandSet;
    const char* title;
    Fill fill;
    const char* during; // how the text of the progress begins
    const wchar_t* aborted;
    const wchar_t* done; // null for no box
};

const Operation kOperations[] = {
    {kIdRead, kCmdSetAmd, "Read", FillPiece, "Reading", L"Flash reading was aborted by user.",
     nullptr},
    {kIdErase, kCmdSetAmd, "Erase", EraseForData, "Erasing sector",
     L"Erase operation was aborted by user.", L"Erase operation completed successfully."},
    {kIdBlankCheck, kCmdSetAmd, "Blank Check", FillCheckedPiece, "Checking",
     L"Blank check operation was aborted by user.", L"Selected flash region is blank."},
    {kIdProgram, kCmdSetAmd, "Program", EraseNothing, "Programming",
     L"Program operation was aborted by user.",
     L"Program operation completed and succesfully verified."},
    {kIdVerify, kCmdSetAmd, "Verify", LeaveAsItIs, "Verifying",
     L"Verify operation was aborted by user.", L"Data verification completed successfully."},
    {kIdLockSectors, kCmdSetIntel, "Select Sectors", TickAll, "Locking sector",
     L"Sector lock operation was aborted by user.",
     L"Lock sectors operation completed successfully."},
    {kIdUnlockSectors, kCmdSetIntel, "Select Sectors", TickAll, "Unlocking sector",
     L"Sector unlock operation was aborted by user.",
     L"Unlock sectors operation completed successfully."},
};

using Way = void (*)(wxWindow& progress);

void ClickAbort(wxWindow& progress) {
    const wxWindow& button = *progress.FindWindow(wxID_ABORT);
    wxUIActionSimulator mouse;
    mouse.MouseMove(button.ClientToScreen(wxPoint(0, 0) + button.GetSize() / 2));
    mouse.MouseClick();
}

// As the window manager does for a new window.
void TakeFocus(wxWindow& progress) {
    progress.Raise();
    wxTheApp->Yield(true);
}

void PressEscape(wxWindow& progress) {
    TakeFocus(progress);
    wxUIActionSimulator().Char(WXK_ESCAPE);
}

void PressEnter(wxWindow& progress) {
    TakeFocus(progress);
    wxUIActionSimulator().Char(WXK_RETURN);
}

void PressMnemonic(wxWindow& progress) {
    TakeFocus(progress);
    wxUIActionSimulator().Char('A', wxMOD_ALT);
}

void CloseByWindowManager(wxWindow& progress) {
    progress.Close();
}

struct WayToAbort {
    const char* name;
    Way take;
};

constexpr WayToAbort kWays[] = {
    {"mouse", ClickAbort},    {"Escape", PressEscape},         {"Enter", PressEnter},
    {"Alt+A", PressMnemonic}, {"close", CloseByWindowManager},
};

wxWindow* FindProgress() {
    wxWindow* dialog = wxWindow::FindWindowByLabel("Please Wait");
    return dialog && dialog->IsShown() ? dialog : nullptr;
}

class AbortTest : public FlashCommandsTest {
  protected:
    // A board that is slow enough to be stopped in the middle, with the data in its flash where the
    // operation expects them.
    void UseSlowBoard(const Operation& operation) {
        UseSetup(operation.commandSet);
        target_.vectorsPerTransfer = 8;
        const Bytes bytes(256, 0x5A);
        LoadData(0, bytes);
        FillFlash(operation.id == kIdVerify ? bytes : Bytes(512, 0xFF));
    }

    // Does `step` at each scan while the progress shows the operation at work.
    void DuringWork(const Operation& operation, std::function<void(wxWindow&)> step) {
        target_.onScan = [&operation, step = std::move(step)] {
            wxWindow* progress = FindProgress();
            if (progress &&
                FindByClass<wxStaticText>(*progress)->GetLabelText().StartsWith(operation.during))
                step(*progress);
        };
    }

    void Run(const Operation& operation) {
        dialogs_.Expect(operation.title, [&](wxDialog& shown) {
            operation.fill(shown);
            PressButton(shown, wxID_OK);
        });
        ChooseMenu(*frame_, operation.id);
        target_.onScan = nullptr;
        EXPECT_TRUE(frame_->IsEnabled());
    }

    // The data that an aborted read leaves are not from a file.
    void ExpectQuestionAboutReadData(const Operation& operation) {
        if (operation.id == kIdRead)
            user_.Expect(L"Do you want to save current data view contents?", kSaveQuestionBox,
                         OmAnswer::No);
    }

    void ExpectSuccess(const Operation& operation) {
        if (operation.done)
            user_.Expect(operation.done, kInformationBox);
    }

    void AbortAndRunAgain(const Operation& operation, const WayToAbort& way) {
        SCOPED_TRACE(testing::Message() << operation.during << " by " << way.name);
        UseSlowBoard(operation);
        DuringWork(operation, [&](wxWindow& progress) {
            if (progress.FindWindow(wxID_ABORT)->IsEnabled())
                way.take(progress);
        });
        user_.Expect(operation.aborted, kWarningBox);
        const OmDataImage shown = frame_->GetDataImage();
        Run(operation);
        EXPECT_EQ(frame_->GetDataImage() == shown, operation.id != kIdRead);
        EXPECT_FALSE(frame_->IsSetupModified());
        ExpectQuestionAboutReadData(operation);
        ExpectSuccess(operation);
        Run(operation);
    }

    // Whatever comes to the busy window is dropped: a dialog or a box would fail the test.
    void ReachForFrame() {
        for (const int id : {int{wxID_NEW}, int{wxID_OPEN}, int{wxID_SAVEAS}, int{wxID_ABOUT},
                             int{kIdLoadData}, int{kIdInfo}, int{kIdProgram}, int{kIdConnection},
                             int{kIdGoToOffset}, int{wxID_EXIT}}) {
            wxCommandEvent command(wxEVT_MENU, id);
            frame_->GetEventHandler()->ProcessEvent(command);
        }
        EXPECT_FALSE(frame_->Close());
        EXPECT_FALSE(frame_->IsBeingDeleted());
        EXPECT_FALSE(frame_->IsEnabled());
    }
};

} // namespace

// Every operation shows the same progress, so not each way needs each of them.
TEST_F(AbortTest, WorksInEveryWay) {
    for (const auto& way : kWays)
        AbortAndRunAgain(kOperations[4], way);
}

TEST_F(AbortTest, WorksInEveryOperationAndTheNextOneWorks) {
    for (const Operation& operation : kOperations)
        AbortAndRunAgain(operation, kWays[0]);
}

TEST_F(AbortTest, MainWindowIsOutOfReachDuringEveryOperation) {
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.during);
        UseSlowBoard(operation);
        int tries = 0;
        DuringWork(operation, [&](wxWindow&) {
            if (++tries == 3)
                ReachForFrame();
        });
        ExpectSuccess(operation);
        Run(operation);
        EXPECT_GE(tries, 3);
    }
}

// Real keys and clicks, which reach the window only if the host lets them.
TEST_F(AbortTest, KeysAndClicksMeantForTheMainWindowDoNothingDuringWork) {
    const Operation& verify = kOperations[4];
    UseSlowBoard(verify);
    int tries = 0;
    DuringWork(verify, [&](wxWindow&) {
        if (++tries > 3)
            return;
        wxUIActionSimulator user;
        const wxAuiToolBar& bar = GetToolBar(0);
        const wxRect tool = bar.GetToolRect(wxID_OPEN);
        user.MouseMove(bar.ClientToScreen(tool.GetPosition() + tool.GetSize() / 2));
        user.MouseClick();
        user.Char('O', wxMOD_CONTROL);
        user.Char(WXK_F2);
    });
    ExpectSuccess(verify);
    Run(verify);
    EXPECT_GE(tries, 3);
    SettleEvents(); // what was kept back would come now
}

// What is queued when work begins is worked off by its first report.
TEST_F(AbortTest, CommandsQueuedBeforeWorkAreDroppedByIt) {
    const Operation& verify = kOperations[4];
    UseSlowBoard(verify);
    dialogs_.Expect(verify.title, [&](wxDialog& shown) {
        for (const int id : {int{wxID_OPEN}, int{kIdLoadData}, int{wxID_EXIT}})
            wxPostEvent(frame_, wxCommandEvent(wxEVT_MENU, id));
        wxPostEvent(frame_, wxCloseEvent(wxEVT_CLOSE_WINDOW));
        PressButton(shown, wxID_OK);
    });
    ExpectSuccess(verify);
    ChooseMenu(*frame_, verify.id);
    SettleEvents();
    EXPECT_FALSE(frame_->IsBeingDeleted());
}
