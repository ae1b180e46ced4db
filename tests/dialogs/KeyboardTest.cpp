// The whole job without a mouse: every command, dialog and message box by real keys. Only the files
// are named through the seam; the host's own file dialogs are the host's affair.
#include "tests/dialogs/FlashCommandsFixture.h"
#include "widgets/WxUserInterface.h"

#include <set>
#include <wx/uiaction.h>

namespace {

constexpr char kProduct[] = "Velmora Flash Programmer";

struct Key {
    int code;
    int modifiers = wxMOD_NONE;
};

const Key kEnter{WXK_RETURN};
const Key kEscape{WXK_ESCAPE};
const Key kTab{WXK_TAB};
const Key kSpace{WXK_SPACE};

Key Alt(char letter) {
    return {letter, wxMOD_ALT};
}

Key Control(char letter) {
    return {letter, wxMOD_CONTROL};
}

// Keys for the window that has the focus.
void Press(const std::vector<Key>& keys) {
    wxUIActionSimulator keyboard;
    for (const Key& key : keys) {
        keyboard.Char(key.code, key.modifiers);
        RunEvents();
    }
}

wxString TextsOf(wxDialog& dialog) {
    wxString texts;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        if (dynamic_cast<wxStaticText*>(&window))
            texts += window.GetLabel() + "\n";
    });
    return texts;
}

// The letter that chooses an entry; 0 without one.
wxChar MnemonicOf(const wxString& label) {
    wxString rest = label;
    rest.Replace("&&", "");
    const int mark = rest.Find('&');
    return mark == wxNOT_FOUND ? wxChar(0) : wxChar(wxToupper(rest[static_cast<size_t>(mark) + 1]));
}

// Each command of a menu, and of its submenus, has a letter of its own. The recent files are
// numbered.
void ExpectMnemonics(const wxMenu& menu) {
    std::set<wxChar> letters;
    for (const wxMenuItem* item : menu.GetMenuItems()) {
        if (item->IsSeparator())
            continue;
        const wxChar letter = MnemonicOf(item->GetItemLabel());
        EXPECT_NE(letter, 0) << item->GetItemLabel();
        EXPECT_TRUE(letters.insert(letter).second) << item->GetItemLabel();
        if (item->IsSubMenu())
            ExpectMnemonics(*item->GetSubMenu());
    }
}

class KeyboardTest : public FlashCommandsTest {
  protected:
    KeyboardTest() : recorder_(SetUserInterface(&boxes_)) {}

    ~KeyboardTest() override { SetUserInterface(recorder_); }

    // Keys for the main window, to which the window manager gives the focus back.
    void PressInFrame(const std::vector<Key>& keys) {
        frame_->Raise();
        frame_->SetFocus();
        RunEvents();
        Press(keys);
    }

    void ExpectDialog(const char* title, const std::vector<Key>& keys) {
        dialogs_.Expect(title, [keys](wxDialog&) { Press(keys); });
    }

    void ExpectBox(const char* text, const Key& key) {
        dialogs_.Expect(kProduct, [text, key](wxDialog& box) {
            EXPECT_TRUE(TextsOf(box).Contains(text)) << TextsOf(box);
            Press({key});
        });
    }

    // A setup and a data file on the disk, and a program that knows of neither.
    void PrepareFiles() {
        UseSetup(kCmdSetAmd);
        ASSERT_TRUE(programmer_.SaveDesignSetup(folder_.Path("board.velflash")));
        programmer_.SetDesignSetup(OmDesignSetup());
        OmDataImage image;
        image.SetBytes(0, Bytes(256, 0x5A));
        ASSERT_TRUE(WriteSRecordFile(folder_.Path("data.srec"), image));
    }

    void LoadSetupAndData() {
        files_.ExpectOpen("Load Setup File", kOpenSetupFilter, folder_.Path("board.velflash"));
        PressInFrame({Alt('F'), {'L'}});
        EXPECT_EQ(frame_->GetTitle(), "board - Velmora Flash Programmer");
        files_.ExpectOpen("Load Data File", kOpenDataFilter, folder_.Path("data.srec"));
        PressInFrame({Control('O')});
        EXPECT_EQ(GetCaption(), " data.srec, 256 Bytes");
    }

    WxUserInterface boxes_;
    OmUserInterface* recorder_;
};

} // namespace

TEST_F(KeyboardTest, DoesTheWholeJob) {
    PrepareFiles();
    LoadSetupAndData();

    ExpectDialog("Program", {kEnter});
    ExpectBox("Program operation completed and succesfully verified.", kEnter);
    PressInFrame({Control('P')});
    EXPECT_EQ(FlashBytes(0, 256), Bytes(256, 0x5A));

    ExpectDialog("Verify", {kEnter});
    ExpectBox("Data verification completed successfully.", kSpace);
    PressInFrame({Alt('A'), {'V'}});

    ExpectDialog("Read", {{'0'}, kTab, {'6'}, {'4'}, kEnter});
    PressInFrame({Control('R')});
    EXPECT_EQ(GetCaption(), " (data read from flash), 64 Bytes");

    files_.ExpectSave("Save Data File", kSaveDataFilter, folder_.Path("read.hex"), 1);
    PressInFrame({Alt('F'), {'S'}});
    EXPECT_EQ(GetCaption(), " read.hex, 64 Bytes");
}

TEST_F(KeyboardTest, QuitsWithUnsavedDataOnlyAfterTheQuestion) {
    ReadFromFlash(0, {1, 2});
    const wxWeakRef<OmMainFrame> frame(frame_);
    ExpectBox("Do you want to save current data view contents?", kEscape);
    PressInFrame({Alt('F'), {'X'}});
    ASSERT_TRUE(frame);
    ExpectBox("Do you want to save current data view contents?", Alt('N'));
    PressInFrame({Alt('F'), {'X'}});
    EXPECT_TRUE(WaitFor([&] {
        RunEvents();
        return !frame;
    }));
    frame_ = frame;
}

TEST_F(KeyboardTest, TabVisitsTheProgramDialogFromTopToBottom) {
    PrepareFiles();
    LoadSetupAndData();
    dialogs_.Expect("Program", [](wxDialog& shown) {
        std::vector<std::string> visited;
        for (int i = 0; i < 7; ++i) {
            const wxWindow* focus = wxWindow::FindFocus();
            visited.push_back(focus ? focus->GetLabel().ToStdString() : "");
            Press({kTab});
        }
        const std::vector<std::string> expected = {
            "&Erase before programming",
            "Erase &Options...",
            "", // what is to be erased, to be read and copied
            "&Verify after programming",
            "&Ignore the data view contents address and instead program data into the flash "
            "starting at address:",
            "&Cancel",
            "&Program",
        };
        EXPECT_EQ(visited, expected);
        EXPECT_TRUE(CheckBox(shown, "&Verify after programming").GetValue());
        Press({Alt('V')});
        EXPECT_FALSE(CheckBox(shown, "&Verify after programming").GetValue());
        Press({kEscape});
    });
    PressInFrame({Control('P')});
    EXPECT_EQ(target_.chips[0].erased.size(), 0u);
}

TEST_F(KeyboardTest, EveryMenuCommandHasALetterOfItsOwn) {
    const wxMenuBar& bar = *frame_->GetMenuBar();
    std::set<wxChar> letters;
    for (size_t i = 0; i < bar.GetMenuCount(); ++i) {
        EXPECT_TRUE(letters.insert(MnemonicOf(bar.GetMenuLabel(i))).second) << bar.GetMenuLabel(i);
        ExpectMnemonics(*bar.GetMenu(i));
    }
    EXPECT_EQ(letters, (std::set<wxChar>{'F', 'V', 'S', 'A', 'H'}));
}
