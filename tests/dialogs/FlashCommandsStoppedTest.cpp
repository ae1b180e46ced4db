// The commands that reach the flash, where they do not come to a good end: filled in wrongly, left
// by the pod, stopped by the user. Each through the menu of the real main window.
#include "app/ProgressDlg.h"
#include "tests/dialogs/FlashCommandsFixture.h"

#include <wx/checklst.h>

namespace {

constexpr wchar_t kInvalidAddress[] =
    L"Invalid starting address. Address must be an unsigned hex 8-bit offset.";
constexpr wchar_t kEmptyNewStart[] =
    L"If you choose to ignore the data view contents address, please enter a new starting "
    L"address. The address must be an unsigned hex 8-bit offset.";
constexpr wchar_t kNoSectors[] = L"No sectors selected.";
constexpr wchar_t kLocked[] = L"Lock sectors operation completed successfully.";
constexpr char kErase[] = "&Erase before programming";
constexpr char kBlankMoved[] = "&Ignore the data view contents address and instead use this as the "
                               "data starting address:";
constexpr char kProgramMoved[] = "&Ignore the data view contents address and instead program data "
                                 "into the flash starting at address:";
constexpr char kVerifyMoved[] = "&Ignore the data view contents address and instead read data from "
                                "the flash starting at address:";

using Fill = std::function<void(wxDialog&)>;

Fill Piece(const char* from, const char* size) {
    return [=](wxDialog& shown) {
        ClickRadio(shown, "S&pecify a piece of memory to blank check");
        Type(shown, "&From address:", from);
        Type(shown, "&Size in bytes:", size);
    };
}

Fill ReadPiece(const char* from, const char* size) {
    return [=](wxDialog& shown) {
        Type(shown, "&From address:", from);
        Type(shown, "&Size in bytes:", size);
    };
}

Fill NewStart(const char* check, const char* address) {
    return [=](wxDialog& shown) {
        ClickCheck(shown, check);
        Type(shown, check, address);
    };
}

Fill Radio(const char* label) {
    return [=](wxDialog& shown) { ClickRadio(shown, label); };
}

Fill TickAll() {
    return [](wxDialog& shown) { PressButton(shown, "&Select"); };
}

const Fill kAsItIs = [](wxDialog&) {};

wxWindow* FindProgress() {
    wxWindow* dialog = wxWindow::FindWindowByLabel("Please Wait");
    return dialog && dialog->IsShown() ? dialog : nullptr;
}

} // namespace

// Watches every box on its way to the user.
class FlashStopTest : public FlashCommandsTest, public OmUserInterface {
  protected:
    FlashStopTest() : recorder_(SetUserInterface(this)) {}

    ~FlashStopTest() override { SetUserInterface(recorder_); }

    // A result must not come up behind a window that takes no input.
    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override {
        EXPECT_EQ(FindProgress(), nullptr);
        if (!FindDialog()) {
            EXPECT_TRUE(frame_->IsEnabled());
        }
        return recorder_->ShowMessage(text, caption, style);
    }

    void BeginBusyCursor() override { recorder_->BeginBusyCursor(); }

    void EndBusyCursor() override { recorder_->EndBusyCursor(); }

    static wxDialog* FindDialog() {
        for (wxWindow* window : wxTopLevelWindows)
            if (auto* dialog = dynamic_cast<wxDialog*>(window); dialog && dialog->IsModal())
                return dialog;
        return nullptr;
    }

    // Expects the dialog, to be filled in and confirmed.
    void ExpectDialog(const char* title, const Fill& fill) {
        dialogs_.Expect(title, [fill](wxDialog& shown) {
            fill(shown);
            PressButton(shown, wxID_OK);
        });
    }

    // Presses Abort as soon as the progress dialog shows a text that begins like this.
    void AbortDuring(const wxString& text) {
        target_.onScan = [text] {
            wxWindow* progress = FindProgress();
            if (progress && FindByClass<wxStaticText>(*progress)->GetLabelText().StartsWith(text) &&
                FindByLabel(*progress, "&Abort")->IsEnabled())
                PressButton(*progress, "&Abort");
        };
    }

    // A board that is slow enough to be stopped in the middle.
    void UseSlowBoard(int commandSet) {
        UseSetup(commandSet);
        target_.vectorsPerTransfer = 8;
        LoadData(0, Bytes(256, 0x5A));
    }

    OmUserInterface* recorder_;
};

TEST_F(FlashStopTest, DialogsFilledInWronglyStay) {
    const struct {
        int id;
        int commandSet;
        const char* title;
        Fill fill;
        const wchar_t* warning;
    } cases[] = {
        {kIdRead, kCmdSetAmd, "Read", ReadPiece("80000000", "4"), kInvalidAddress},
        {kIdRead, kCmdSetAmd, "Read", ReadPiece("0", "0"),
         L"Invalid size. Size must be a decimal number of bytes to read."},
        {kIdBlankCheck, kCmdSetAmd, "Blank Check", Piece("10xyz", "4"), kInvalidAddress},
        {kIdBlankCheck, kCmdSetAmd, "Blank Check", Piece("0", "1k"),
         L"Invalid size. Size must be a decimal number of bytes to check for blank."},
        {kIdBlankCheck, kCmdSetAmd, "Blank Check", NewStart(kBlankMoved, ""), kEmptyNewStart},
        {kIdBlankCheck, kCmdSetAmd, "Blank Check", NewStart(kBlankMoved, "40000000"),
         kInvalidAddress},
        {kIdVerify, kCmdSetAmd, "Verify", NewStart(kVerifyMoved, ""),
         L"If you choose to ignore the data view contents address, please enter a starting "
         L"address. The address must be an unsigned hex 8-bit offset."},
        {kIdVerify, kCmdSetAmd, "Verify", NewStart(kVerifyMoved, "-1"),
         L"Invalid starting address.\nAddress must be an unsigned hex 8-bit offset."},
        {kIdErase, kCmdSetAmd, "Erase", Radio("Erase &selected sectors only"), kNoSectors},
        {kIdProgram, kCmdSetAmd, "Program", NewStart(kProgramMoved, ""), kEmptyNewStart},
        {kIdProgram, kCmdSetAmd, "Program", NewStart(kProgramMoved, "xyz"), kInvalidAddress},
        {kIdLockSectors, kCmdSetIntel, "Select Sectors", kAsItIs, kNoSectors},
        {kIdUnlockSectors, kCmdSetIntel, "Select Sectors", kAsItIs, kNoSectors},
        {kIdGoToOffset, kCmdSetAmd, "Go to Offset", kAsItIs,
         L"Invalid data entered: ''.\n\nPlease enter a hexadecimal offset to scroll the data view "
         L"to."},
    };

    LoadData(0, {1, 2});
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.id << " " << test.title);
        UseSetup(test.commandSet);
        user_.Expect(test.warning, kWarningBox);
        dialogs_.Expect(test.title, [&](wxDialog& shown) {
            test.fill(shown);
            PressButton(shown, wxID_OK);
            EXPECT_TRUE(shown.IsModal());
            PressButton(shown, wxID_CANCEL);
        });
        ChooseMenu(*frame_, test.id);
        EXPECT_EQ(GetCaption(), " data.srec, 2 Bytes");
    }
    EXPECT_EQ(FlashBytes(0, 2), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(ErasedSectors(), Sectors());
    EXPECT_EQ(target_.chips[0].lockChanges, Sectors());
}

// The pod goes while the dialog is open, so at the first thing that the operation does.
TEST_F(FlashStopTest, PodThatGoesEndsEveryCommand) {
    const struct {
        int id;
        int commandSet;
        const char* title;
        Fill fill;
    } cases[] = {
        {kIdRead, kCmdSetAmd, "Read", ReadPiece("0", "512")},
        {kIdErase, kCmdSetAmd, "Erase", kAsItIs},
        {kIdErase, kCmdSetAmd, "Erase",
         Radio("Erase only sectors &necessary to program data view contents")},
        {kIdBlankCheck, kCmdSetAmd, "Blank Check", Piece("0", "512")},
        {kIdProgram, kCmdSetAmd, "Program", kAsItIs},
        {kIdVerify, kCmdSetAmd, "Verify", kAsItIs},
        {kIdLockSectors, kCmdSetIntel, "Select Sectors", TickAll()},
        {kIdUnlockSectors, kCmdSetIntel, "Select Sectors", TickAll()},
    };

    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.id << " " << test.title);
        UseSetup(test.commandSet);
        LoadData(0, {1, 2});
        ExpectDialog(test.title, [&](wxDialog& shown) {
            test.fill(shown);
            target_.callsUntilFailure = 0;
        });
        user_.Expect(L"The pod has gone.", kErrorBox);
        ChooseMenu(*frame_, test.id);
        EXPECT_EQ(target_.cablesOpen, 0);
        EXPECT_TRUE(frame_->IsEnabled());
        target_.callsUntilFailure = -1;
    }
}

TEST_F(FlashStopTest, PodThatGoesDuringInfoShowsNoReport) {
    UseSetup(kCmdSetAmd);
    dialogs_.ExpectAndPress("Flash Array Information", wxID_CANCEL);
    ChooseMenu(*frame_, kIdInfo); // the cable stays open
    target_.onScan = [this] { target_.callsUntilFailure = 0; };
    user_.Expect(L"The pod has gone.", kErrorBox);
    ChooseMenu(*frame_, kIdInfo);
    EXPECT_EQ(target_.cablesOpen, 0);
}

// AbortTest aborts every operation; here what stands for more than one step, or another family.
TEST_F(FlashStopTest, AbortEndsEveryStepOfACommand) {
    const struct {
        int id;
        int commandSet;
        const char* title;
        Fill fill;
        const char* during;
        const wchar_t* told;
    } cases[] = {
        {kIdErase, kCmdSetIntel, "Erase",
         Radio("Erase only sectors &necessary to program data view contents"), "Erasing sector 2",
         L"Erase operation was aborted by user."},
        {kIdProgram, kCmdSetAmd, "Program", kAsItIs, "Erasing sector 3",
         L"Erase operation was aborted by user."},
        {kIdProgram, kCmdSetIntel, "Program", kAsItIs, "Programming",
         L"Program operation was aborted by user."},
        {kIdProgram, kCmdSetAmd, "Program", kAsItIs, "Verifying",
         L"Verify operation was aborted by user."},
    };

    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.id << " " << test.during);
        UseSlowBoard(test.commandSet);
        const OmDataImage shown = frame_->GetDataImage();
        AbortDuring(test.during);
        ExpectDialog(test.title, test.fill);
        user_.Expect(test.told, kWarningBox);
        ChooseMenu(*frame_, test.id);
        target_.onScan = nullptr;
        EXPECT_EQ(frame_->GetDataImage(), shown);
        EXPECT_TRUE(frame_->IsEnabled());
        EXPECT_FALSE(frame_->IsSetupModified());
    }
}

// Of the entire flash, which is one command that may take minutes.
TEST_F(FlashStopTest, ChipEraseThatTakesLongCanBeAborted) {
    UseSetup(kCmdSetAmd);
    target_.chips[0].neverReady.insert(0);
    AbortDuring("Eras");
    ExpectDialog("Erase", kAsItIs);
    user_.Expect(L"Erase operation was aborted by user.", kWarningBox);
    ChooseMenu(*frame_, kIdErase);
}

TEST_F(FlashStopTest, EraseThatTakesForEverEndsByItself) {
    UseSetup(kCmdSetAmd);
    clock_.stepMicroseconds = 100000;
    target_.chips[0].neverReady.insert(0);
    ExpectDialog("Erase", kAsItIs);
    user_.Expect(L"Erase timeout error.", kErrorBox);
    ChooseMenu(*frame_, kIdErase);
}

TEST_F(FlashStopTest, AbortedEraseKeepsProgramFromWriting) {
    UseSlowBoard(kCmdSetAmd);
    AbortDuring("Erasing sector 2");
    ExpectDialog("Program", kAsItIs);
    user_.Expect(L"Erase operation was aborted by user.", kWarningBox);
    ChooseMenu(*frame_, kIdProgram);
    EXPECT_FALSE(target_.chips[0].Saw(0xA0)); // Program
}

TEST_F(FlashStopTest, ProgramOfALockedBlockSaysHowToUnlockIt) {
    UseSetup(kCmdSetIntel);
    LoadData(0, {1, 2});
    target_.chips[0].locked.insert(0);
    ExpectDialog("Program", [](wxDialog& shown) { ClickCheck(shown, kErase); });
    user_.Expect(L"An Intel Block Locked error occured while attempting to program the flash.\n"
                 L"To unlock erase blocks (sectors) go to menu Actions > Intel Specific > Unlock "
                 L"Sectors.",
                 kWarningBox);
    ChooseMenu(*frame_, kIdProgram);
}

TEST_F(FlashStopTest, LockAndUnlockThatFailSayNothingMore) {
    const struct {
        int id;
        const wchar_t* told;
    } cases[] = {
        {kIdLockSectors, L"Sector lock operation failed while attempting to lock sector 00020h."},
        {kIdUnlockSectors,
         L"Sector unlock operation failed while attempting to unlock sector 00020h."},
    };

    for (const auto& test : cases) {
        UseSetup(kCmdSetIntel);
        target_.chips[0].failing.insert(2 * 16);
        ExpectDialog("Select Sectors",
                     [](wxDialog& shown) { FindByClass<wxCheckListBox>(shown)->Check(2); });
        user_.Expect(test.told, kErrorBox);
        ChooseMenu(*frame_, test.id);
    }
}

TEST_F(FlashStopTest, LockOfAnAmdFlashGoesOnIfTheUserSaysSo) {
    UseSetup(kCmdSetAmd);
    user_.Expect(L"It seems like the connected flash does not support neither Intel Standard "
                 L"(Basic) nor Intel Extended (Scaleable) command set.\n\nIgnore this warning and "
                 L"proceed anyway?",
                 kWarningQuestionBox, OmAnswer::Yes, L"Warning");
    for (FakeFlashChip& chip : target_.chips)
        chip.family = FakeFlashFamily::Intel;
    ExpectDialog("Select Sectors",
                 [](wxDialog& shown) { FindByClass<wxCheckListBox>(shown)->Check(2); });
    user_.Expect(kLocked, kInformationBox);
    ChooseMenu(*frame_, kIdLockSectors);
}
