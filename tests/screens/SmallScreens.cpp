// Message boxes, the progress dialog, and the dialogs that only tell something.
#include "app/CommandIds.h"
#include "app/ProgressDlg.h"
#include "dialogs/GoToOffsetDlg.h"
#include "dialogs/TextViewerDlg.h"
#include "tests/screens/Screens.h"
#include "tests/support/VirtualClock.h"
#include "widgets/WxUserInterface.h"

namespace {

class SmallScreens : public ScreensTest {};

struct Box {
    const char* picture;
    const wchar_t* text;
    OmMessageStyle style;
};

constexpr Box kBoxes[] = {
    {"box-information", L"Program operation completed and succesfully verified.", kInformationBox},
    {"box-warning",
     L"Erase operation is disabled because:\n1) Sectors configuration is unknown and so erasure of "
     L"individual sectors is not possible\n2) This chip does not support the 'full chip erase' "
     L"command.\n\nTo enable erase operation, please enter the sectors configuration using Setup "
     L"dialog.",
     kWarningBox},
    {"box-error", L"Failed to load setup file '/home/engineer/projects/router/router.velflash'.",
     kErrorBox},
    {"box-question",
     L"There are different version fields in the detected device IDCODE and the IDCODE specified "
     L"in the 'veldemo_cpu144.bsd' BSDL file.\nAre you sure you want to use this file anyway?",
     kQuestionBox},
    {"box-save-question", L"Do you want to save current setup?", kSaveQuestionBox},
    {"box-loss-question", L"Are you sure you want to delete 'Velmora Demo Board' scheme?",
     kLossQuestionBox},
    {"box-ok-or-cancel",
     L"Unlike S-record and Intel HEX, raw binary file format stores only\none continuous "
     L"uninterrupted piece of data.\n\nPress OK to save each chunk of data as a separate binary "
     L"file.\n\nFiles to save:\na.part1of2.00000.bin\na.part2of2.40000.bin",
     {OmButtons::OkCancel, OmIcon::Question}},
    {"box-long-path",
     L"Failed to save '/home/engineer/projects/a/rather/deep/folder/in/which/the/firmware/of/the/"
     L"third/revision/of/the/router/board/is/kept/by/the/build/server/firmware-2026-11-21.srec'.",
     kErrorBox},
};

} // namespace

TEST_F(SmallScreens, MessageBoxes) {
    WxUserInterface boxes;
    for (const Box& box : kBoxes) {
        dialogs_.Expect("Velmora Flash Programmer", [&](wxDialog& shown) {
            Picture(shown, box.picture);
            shown.EndModal(wxID_CANCEL);
        });
        boxes.ShowMessage(box.text, kProductName, box.style);
    }
}

TEST_F(SmallScreens, Progress) {
    VirtualClock clock;
    OmProgressDlg dialog(frame_, "Please Wait");
    dialog.Show(true);
    dialog.OnProgress(0, L"Erasing sectors...");
    Picture(dialog, "progress-0");
    clock.AdvanceMilliseconds(42000);
    dialog.OnProgress(37, L"Programming the flash...");
    Picture(dialog, "progress-37");
    clock.AdvanceMilliseconds(1000);
    dialog.OnProgress(-1, L"Waiting for the flash to become ready...");
    Picture(dialog, "progress-indeterminate");
    clock.AdvanceMilliseconds(4000000);
    dialog.OnProgress(98, L"Verifying a region of the flash memory whose description is far too "
                          L"long to be shown on one line of this dialog...");
    Picture(dialog, "progress-over-an-hour");
    PressButton(dialog, "&Abort");
    Picture(dialog, "progress-aborting");
    dialog.Show(false);
}

TEST_F(SmallScreens, About) {
    dialogs_.Expect("About Velmora Flash Programmer", [this](wxDialog& shown) {
        Picture(shown, "about");
        PressButton(shown, wxID_OK);
    });
    ChooseMenu(*frame_, wxID_ABOUT);
}

TEST_F(SmallScreens, GoToOffset) {
    OmGoToOffsetDlg dialog(frame_);
    Show(dialog, [this](wxDialog& shown) { Picture(shown, "go-to-offset"); });
}

TEST_F(SmallScreens, TextViewer) {
    OmTextViewerDlg dialog(frame_);
    dialog.SetTitle("Errors");
    dialog.SetText("Cannot open directory '/srv/no such folder'\n");
    Show(dialog, [this](wxDialog& shown) { Picture(shown, "text-viewer"); });
}
