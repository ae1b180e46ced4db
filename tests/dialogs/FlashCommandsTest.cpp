// The commands that change nothing in the flash, through the menu of the real main window.
#include "app/HexViewCtrl.h"
#include "app/ProgressDlg.h"
#include "tests/dialogs/FlashCommandsFixture.h"

#include <wx/html/htmlwin.h>

namespace {

// Presses Abort at the scan after so many.
void AbortAfter(FakeTarget& target, int scans) {
    target.onScan = [&target, scans] {
        if (target.boundaryScans == scans)
            PressButton(*wxWindow::FindWindowByLabel("Please Wait"), "&Abort");
    };
}

ModalSteps::Step FillPiece(const char* from, const char* size) {
    return [=](wxDialog& shown) {
        Type(shown, "&From address:", from);
        Type(shown, "&Size in bytes:", size);
        PressButton(shown, wxID_OK);
    };
}

std::vector<OmDataChunk> Chunks(const OmDataImage& image) {
    return {image.GetChunks().begin(), image.GetChunks().end()};
}

constexpr char kVerifyMoved[] = "&Ignore the data view contents address and instead read data from "
                                "the flash starting at address:";
constexpr char kBlankMoved[] = "&Ignore the data view contents address and instead use this as the "
                               "data starting address:";

} // namespace

TEST_F(FlashCommandsTest, FailedConnectionStopsEveryCommandBeforeItsDialog) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});
    programmer_.createCable = [](OmConnectionSettings&) { return nullptr; };
    for (const int id : {kIdInfo, kIdRead, kIdErase, kIdBlankCheck, kIdProgram, kIdVerify,
                         kIdLockSectors, kIdUnlockSectors}) {
        SCOPED_TRACE(id);
        user_.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
        ChooseMenu(*frame_, id);
    }
}

TEST_F(FlashCommandsTest, JtagResetHandsThePinsBack) {
    ChooseMenu(*frame_, kIdJtagReset); // needs no setup
    EXPECT_EQ(cablesMade_, 1);
    EXPECT_GT(target_.resets, 0);
    const int before = target_.resets;
    ChooseMenu(*frame_, kIdJtagReset);
    EXPECT_EQ(cablesMade_, 1);
    EXPECT_EQ(target_.resets, before + 1);
    target_.callsUntilFailure = 0;
    user_.Expect(L"The pod has gone.", kErrorBox);
    ChooseMenu(*frame_, kIdJtagReset);
    EXPECT_EQ(target_.cablesOpen, 0);
}

TEST_F(FlashCommandsTest, JtagResetWithoutAPodSaysSo) {
    programmer_.createCable = [](OmConnectionSettings&) { return nullptr; };
    user_.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
    ChooseMenu(*frame_, kIdJtagReset);
}

TEST_F(FlashCommandsTest, InfoShowsTheReport) {
    UseSetup(kCmdSetAmd);
    dialogs_.Expect("Flash Array Information", [](wxDialog& shown) {
        const wxString report = FindByClass<wxHtmlWindow>(shown)->ToText();
        EXPECT_TRUE(report.Contains("CFI")) << report.ToStdString();
        TakeScreenshot(shown, "flash_info_report");
        PressButton(shown, "&Close");
    });
    ChooseMenu(*frame_, kIdInfo);
}

TEST_F(FlashCommandsTest, ReadShowsWhatTheFlashHolds) {
    UseSetup(kCmdSetAmd);
    FillFlash({0x10, 0x11, 0x12, 0x13, 0x14, 0x15});
    dialogs_.Expect("Read", FillPiece("2", "4"));
    ChooseMenu(*frame_, kIdRead);
    EXPECT_EQ(Chunks(frame_->GetDataImage()),
              (std::vector<OmDataChunk>{{2, {0x12, 0x13, 0x14, 0x15}}}));
    EXPECT_EQ(GetCaption(), " (data read from flash), 4 Bytes");
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 1u);
}

TEST_F(FlashCommandsTest, ReadOffersTheEntireFlash) {
    UseSetup(kCmdSetAmd);
    dialogs_.Expect("Read", [](wxDialog& shown) {
        ClickLink(shown, "Read the entire flash contents");
        PressButton(shown, wxID_OK);
    });
    ChooseMenu(*frame_, kIdRead);
    EXPECT_EQ(GetCaption(), " (data read from flash), 512 Bytes");
}

TEST_F(FlashCommandsTest, ReadPutsTheOldDataFileIntoTheRecentFiles) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});
    dialogs_.Expect("Read", FillPiece("0", "2"));
    ChooseMenu(*frame_, kIdRead);
    EXPECT_EQ(GetRecentFiles(kIdRecentData), std::vector<std::string>{"data.srec"});
    EXPECT_EQ(frame_->GetDataPath(), "");
}

TEST_F(FlashCommandsTest, ReadAsksAboutUnsavedDataBeforeItTouchesTheCable) {
    UseSetup(kCmdSetAmd);
    ReadFromFlash(0x100, {1, 2, 3});
    user_.Expect(L"Do you want to save current data view contents?", kSaveQuestionBox,
                 OmAnswer::Cancel);
    ChooseMenu(*frame_, kIdRead);
    EXPECT_EQ(cablesMade_, 0);
    EXPECT_EQ(GetCaption(), " (data read from flash), 3 Bytes");
}

TEST_F(FlashCommandsTest, CancelledReadKeepsTheData) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});
    dialogs_.ExpectAndPress("Read", wxID_CANCEL);
    ChooseMenu(*frame_, kIdRead);
    EXPECT_EQ(GetCaption(), " data.srec, 2 Bytes");
}

TEST_F(FlashCommandsTest, AbortedReadShowsWhatCameIn) {
    UseSetup(kCmdSetAmd);
    target_.vectorsPerTransfer = 8;
    dialogs_.Expect("Read", [this](wxDialog& shown) {
        AbortAfter(target_, target_.boundaryScans + 20);
        ClickLink(shown, "Read the entire flash contents");
        PressButton(shown, wxID_OK);
    });
    user_.Expect(L"Flash reading was aborted by user.", kWarningBox);
    ChooseMenu(*frame_, kIdRead);
    const uint64_t bytes = frame_->GetDataImage().GetByteCount();
    EXPECT_GT(bytes, 0u);
    EXPECT_LT(bytes, 512u);
    EXPECT_EQ(GetCaption(),
              wxString::Format(" (data read from flash), %u Bytes", static_cast<unsigned>(bytes)));
    EXPECT_GT(frame_->GetHexView().GetLineCount(), 0u);
    user_.Expect(L"Do you want to save current data view contents?", kSaveQuestionBox,
                 OmAnswer::No);
    frame_->PromptSaveData();
}

TEST_F(FlashCommandsTest, FailedReadClosesTheCableAndShowsWhatCameIn) {
    UseSetup(kCmdSetAmd);
    dialogs_.Expect("Read", [this](wxDialog& shown) {
        target_.callsUntilFailure = 30;
        FillPiece("0", "512")(shown);
    });
    user_.Expect(L"The pod has gone.", kErrorBox);
    ChooseMenu(*frame_, kIdRead);
    EXPECT_EQ(target_.cablesOpen, 0);
    EXPECT_EQ(frame_->GetDataPath(), "");
}

TEST_F(FlashCommandsTest, BlankCheckWithoutDataChecksAPiece) {
    UseSetup(kCmdSetAmd);
    FillFlash({0x00, 0x00});
    dialogs_.Expect("Blank Check", FillPiece("2", "510"));
    user_.Expect(L"Selected flash region is blank.", kInformationBox);
    ChooseMenu(*frame_, kIdBlankCheck);
}

TEST_F(FlashCommandsTest, BlankCheckLooksWhereTheDataGoes) {
    UseSetup(kCmdSetAmd);
    FillFlash(Bytes(0x20, 0x00));
    OmDataImage image;
    image.SetBytes(0x20, Bytes(4, 0xAA));
    image.SetBytes(0x40, Bytes(4, 0xAA));
    LoadData(image);
    dialogs_.ExpectAndPress("Blank Check", wxID_OK);
    user_.Expect(L"Selected flash region is blank.", kInformationBox);
    ChooseMenu(*frame_, kIdBlankCheck);
    target_.chips[1].cells[0x21] = 0x12; // address 43h
    dialogs_.ExpectAndPress("Blank Check", wxID_OK);
    user_.Expect(L"Flash memory is not blank: read 12h at offset 00043h.", kErrorBox);
    ChooseMenu(*frame_, kIdBlankCheck);
}

TEST_F(FlashCommandsTest, BlankCheckMovesTheDataDown) {
    UseSetup(kCmdSetAmd);
    target_.chips[0].cells[0x30] = 0; // address 60h, where the data stands now
    OmDataImage image;
    image.SetBytes(0x60, Bytes(4, 0xAA));
    image.SetBytes(0x80, Bytes(4, 0xAA));
    LoadData(image);
    const auto moveToTwo = [](wxDialog& shown) {
        ClickCheck(shown, kBlankMoved);
        Type(shown, kBlankMoved, "2");
        PressButton(shown, wxID_OK);
    };
    dialogs_.Expect("Blank Check", moveToTwo);
    user_.Expect(L"Selected flash region is blank.", kInformationBox);
    ChooseMenu(*frame_, kIdBlankCheck);
    target_.chips[1].cells[0x12] = 0; // address 25h, where the second chunk comes to lie
    dialogs_.Expect("Blank Check", moveToTwo);
    user_.Expect(L"Flash memory is not blank: read 00h at offset 00025h.", kErrorBox);
    ChooseMenu(*frame_, kIdBlankCheck);
}

TEST_F(FlashCommandsTest, VerifyWithoutDataSaysSoAtOnce) {
    UseSetup(kCmdSetAmd);
    user_.Expect(L"No data to verify.", kInformationBox);
    ChooseMenu(*frame_, kIdVerify);
    EXPECT_EQ(cablesMade_, 0);
}

TEST_F(FlashCommandsTest, VerifyComparesTheData) {
    UseSetup(kCmdSetAmd);
    FillFlash({1, 2, 3, 4});
    LoadData(2, {3, 4});
    dialogs_.ExpectAndPress("Verify", wxID_OK);
    user_.Expect(L"Data verification completed successfully.", kInformationBox);
    ChooseMenu(*frame_, kIdVerify);
    target_.chips[1].cells[1] = 5; // address 3
    dialogs_.ExpectAndPress("Verify", wxID_OK);
    user_.Expect(L"Data verification failed at offset 00003h.\n"
                 L"Byte read from flash: 05h; byte expected: 04h.",
                 kErrorBox);
    ChooseMenu(*frame_, kIdVerify);
}

TEST_F(FlashCommandsTest, VerifyOfMovedDataLeavesTheShownDataAlone) {
    UseSetup(kCmdSetAmd);
    FillFlash({1, 2, 3, 4});
    LoadData(0x80, {3, 4});
    dialogs_.Expect("Verify", [](wxDialog& shown) {
        ClickCheck(shown, kVerifyMoved);
        Type(shown, kVerifyMoved, "2");
        PressButton(shown, wxID_OK);
    });
    user_.Expect(L"Data verification completed successfully.", kInformationBox);
    ChooseMenu(*frame_, kIdVerify);
    EXPECT_EQ(frame_->GetDataImage().GetChunks().front().address, 0x80u);
}

TEST_F(FlashCommandsTest, CancelledDialogsEndTheirCommands) {
    UseSetup(kCmdSetAmd);
    LoadData(0, {1, 2});

    const struct {
        int id;
        const char* title;
    } cases[] = {{kIdBlankCheck, "Blank Check"},
                 {kIdVerify, "Verify"},
                 {kIdErase, "Erase"},
                 {kIdProgram, "Program"},
                 {kIdGoToOffset, "Go to Offset"}};

    for (const auto& [id, title] : cases) {
        dialogs_.ExpectAndPress(title, wxID_CANCEL);
        ChooseMenu(*frame_, id);
    }
    EXPECT_EQ(ErasedSectors(), Sectors());
    EXPECT_EQ(FlashBytes(0, 2), (Bytes{0xFF, 0xFF}));
}

namespace {

ModalSteps::Step GoTo(const char* offset) {
    return [offset](wxDialog& shown) {
        Type(shown, "Enter a hex offset to scroll data view to:", offset);
        PressButton(shown, wxID_OK);
    };
}

} // namespace

TEST_F(FlashCommandsTest, GoToOffsetScrollsToItsLine) {
    LoadData(0, Bytes(0x10000, 0x55));
    dialogs_.Expect("Go to Offset", GoTo("8004"));
    ChooseMenu(*frame_, kIdGoToOffset);
    EXPECT_EQ(frame_->GetHexView().GetFirstLine(), 0x800u);
}

TEST_F(FlashCommandsTest, GoToOffsetInAGapScrollsToTheNextDataAndSaysSo) {
    OmDataImage image;
    image.SetBytes(0, Bytes(0x1000, 0x55));
    image.SetBytes(0x8000, Bytes(0x1000, 0x55));
    LoadData(image);
    user_.Expect(L"There is no data at offset 4ABCh.", kInformationBox);
    dialogs_.Expect("Go to Offset", GoTo("4abc"));
    ChooseMenu(*frame_, kIdGoToOffset);
    uint32_t line = 0;
    EXPECT_TRUE(frame_->GetHexView().FindLine(0x8000, line));
    EXPECT_EQ(frame_->GetHexView().GetFirstLine(), line);
}

TEST_F(FlashCommandsTest, GoToOffsetBehindTheDataScrollsToItsEnd) {
    LoadData(0, Bytes(0x1000, 0x55));
    user_.Expect(L"There is no data at offset 100000h.", kInformationBox);
    dialogs_.Expect("Go to Offset", GoTo("100000"));
    ChooseMenu(*frame_, kIdGoToOffset);
    EXPECT_GT(frame_->GetHexView().GetFirstLine(), 0u);
}
