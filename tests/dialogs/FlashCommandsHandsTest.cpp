// The commands as hands give them: keys typed and tools clicked, in the real main window.
#include "tests/dialogs/FlashCommandsFixture.h"

#include <wx/aui/auibar.h>
#include <wx/uiaction.h>

namespace {

// Types one key after the other.
ModalSteps::Step Keys(std::vector<int> keys) {
    return [keys](wxDialog& shown) {
        wxUIActionSimulator user;
        PointAt(shown);
        for (const int key : keys)
            user.Char(key);
    };
}

} // namespace

class HandsTest : public FlashCommandsTest {
  protected:
    HandsTest() {
        UseSetup(kCmdSetAmd);
        frame_->Raise();
        frame_->SetFocus();
        PointAt(*frame_);
    }

    // A key chooses a command; done when `done`.
    void Type(int key, int modifiers, const std::function<bool()>& done) {
        PointAt(*frame_);
        frame_->UpdateWindowUI();
        frame_->GetMenuBar()->UpdateMenus();
        wxUIActionSimulator user;
        user.Char(key, modifiers);
        EXPECT_TRUE(WaitFor(done)) << key;
    }

    void Click(unsigned bar, int tool) {
        wxAuiToolBar& tools = GetToolBar(bar);
        const wxRect rect = tools.GetToolRect(tool);
        wxUIActionSimulator user;
        user.MouseMove(tools.ClientToScreen(rect.GetPosition() + rect.GetSize() / 2));
        SettleEvents();
        user.MouseClick();
    }
};

TEST_F(HandsTest, ReadIsDoneWithTheKeyboardAlone) {
    FillFlash({0x10, 0x11, 0x12, 0x13, 0x14, 0x15});
    dialogs_.Expect("Read", Keys({'2', WXK_TAB, '4', WXK_RETURN}));
    Type('R', wxMOD_CONTROL, [this] { return !frame_->GetDataImage().IsEmpty(); });
    EXPECT_EQ(frame_->GetDataImage().GetChunks().front(),
              (OmDataChunk{2, {0x12, 0x13, 0x14, 0x15}}));
}

TEST_F(HandsTest, LoadProgramAndSaveAreDoneWithTheKeyboardAlone) {
    const std::string data = folder_.Write("data.bin", "hello!");
    files_.ExpectOpen("Load Data File", kOpenDataFilter, data);
    Type('O', wxMOD_CONTROL, [this] { return !frame_->GetDataImage().IsEmpty(); });
    dialogs_.Expect("Program", Keys({WXK_RETURN}));
    user_.Expect(L"Program operation completed and succesfully verified.", kInformationBox);
    Type('P', wxMOD_CONTROL, [this] { return user_.shown.size() == 1; });
    EXPECT_EQ(FlashBytes(0, 6), (Bytes{'h', 'e', 'l', 'l', 'o', '!'}));
    const std::string copy = folder_.Path("copy.srec");
    files_.ExpectSave("Save Data File", kSaveDataFilter, copy);
    Type('S', wxMOD_CONTROL, [&] { return frame_->GetDataPath() == copy; });
    EXPECT_TRUE(std::filesystem::exists(copy));
}

TEST_F(HandsTest, KeysOpenTheirDialogs) {
    LoadData(0, {1, 2});

    const struct {
        int key;
        int modifiers;
        const char* title;
    } cases[] = {{'G', wxMOD_CONTROL, "Go to Offset"},   {'R', wxMOD_CONTROL, "Read"},
                 {'E', wxMOD_CONTROL, "Erase"},          {'P', wxMOD_CONTROL, "Program"},
                 {WXK_F5, 0, "Flash Array Information"}, {WXK_F2, 0, "JTAG Connection"}};

    for (const auto& test : cases) {
        bool came = false;
        dialogs_.Expect(test.title, [&came](wxDialog& shown) {
            Keys({WXK_ESCAPE})(shown);
            came = true;
        });
        Type(test.key, test.modifiers, [&came] { return came; });
        SettleEvents();
    }
    EXPECT_EQ(ErasedSectors(), Sectors());
}

TEST_F(HandsTest, ToolsRunTheirCommands) {
    LoadData(0, {1, 2});

    const struct {
        unsigned bar;
        int tool;
        const char* dialog;
    } cases[] = {{0, kIdInfo, "Flash Array Information"},
                 {0, kIdRead, "Read"},
                 {0, kIdErase, "Erase"},
                 {0, kIdProgram, "Program"},
                 {0, kIdVerify, "Verify"}};

    for (const auto& test : cases) {
        bool came = false;
        dialogs_.Expect(test.dialog, [&came](wxDialog& shown) {
            came = true;
            PressButton(shown, wxID_CANCEL);
        });
        Click(test.bar, test.tool);
        EXPECT_TRUE(WaitFor([&came] { return came; })) << test.dialog;
        SettleEvents();
    }
    const std::string path = folder_.Path("a.velflash");
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
    Click(0, wxID_SAVE);
    EXPECT_TRUE(WaitFor([&] { return frame_->GetSetupPath() == path; }));
    frame_->MarkSetupModified();
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::No);
    files_.ExpectOpen("Load Setup File", kOpenSetupFilter, path);
    Click(0, wxID_OPEN);
    EXPECT_TRUE(WaitFor([this] { return !frame_->IsSetupModified(); }));
    files_.ExpectSave("Save Data File", kSaveDataFilter, folder_.Path("b.hex"), 1);
    Click(1, kIdSaveDataAs);
    EXPECT_TRUE(WaitFor([this] { return frame_->GetDataPath().EndsWith("b.hex"); }));
    files_.ExpectOpen("Load Data File", kOpenDataFilter, folder_.Path("data.srec"));
    Click(1, kIdLoadData);
    EXPECT_TRUE(WaitFor([this] { return frame_->GetDataPath().EndsWith("data.srec"); }));
}
