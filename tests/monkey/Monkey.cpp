#include "tests/monkey/Monkey.h"

#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "app/MainFrame.h"
#include "app/MainMenus.h"
#include "dialogs/BsdlInfoDlg.h"
#include "dialogs/EditSectorsDlg.h"
#include "tests/monkey/Health.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/aui/auibar.h>
#include <wx/html/helpfrm.h>
#include <wx/uiaction.h>
#include <wx/wx.h>

namespace {

void CloseHelpWindow() {
    for (wxWindow* window : wxTopLevelWindows)
        if (auto* help = dynamic_cast<wxHtmlHelpFrame*>(window))
            help->Close(true);
}

// The program's own help. Over a dialog, its window keeps the program until it is closed.
class GlimpsedHelp : public OmHelpViewer {
  public:
    void Initialize(const wxString& book) override { viewer_->Initialize(book); }

    void DisplaySection(const wxString& topic) override {
        wxTheApp->CallAfter([] { CloseHelpWindow(); });
        viewer_->DisplaySection(topic);
    }

  private:
    std::unique_ptr<OmHelpViewer> viewer_ = CreateHelpViewer();
};

} // namespace

struct Monkey::Deed {
    const char* name;
    unsigned weight;
    void (Monkey::*act)();
};

std::vector<Monkey::Deed> Monkey::MakeDeeds() {
    return {
        {"chooses from a menu", 50, &Monkey::ChooseFromMenu},
        {"clicks a tool", 10, &Monkey::ClickTool},
        {"presses an accelerator", 6, &Monkey::PressAccelerator},
        {"presses keys", 6, &Monkey::PressKeys},
        {"scrolls", 4, &Monkey::ScrollByEvents},
        {"turns the wheel", 3, &Monkey::Wheel},
        {"clicks the view", 2, &Monkey::ClickView},
        {"resizes the window", 3, &Monkey::Resize},
        {"modifies the setup", 2, &Monkey::MarkModified},
        {"loads files", 12, &Monkey::LoadFiles},
        {"replaces the board", 6, &Monkey::ReplaceBoard},
        {"describes the board", 10, &Monkey::DescribeBoard},
        {"describes the board wrongly", 2, &Monkey::DescribeWrongly},
        {"breaks the board", 2, &Monkey::BreakBoard},
        {"edits sectors", 2, &Monkey::EditSectors},
        {"chooses a BSDL file", 2, &Monkey::ChooseBsdl},
        {"closes the window", 1, &Monkey::CloseWindow},
    };
}

Monkey::Monkey(uint64_t seed, Journal& journal)
    : journal_(journal), seed_(seed), board_(dice_), visitor_(dice_, journal, files_, boxes_),
      help_(std::make_unique<GlimpsedHelp>()) {
    dice_.Start(seed, 0);
    board_.clock.onLook = [this] { visitor_.WatchProgress(); };
    visitor_.breakBoard = [this] { board_.Break(); };
    board_.DescribeToProgram();
    files_.SaveGoodSetup();
    OpenWindow();
}

Monkey::~Monkey() {
    visitor_.SetFrame(nullptr);
    delete frame_.get();
    RunEvents();
}

void Monkey::OpenWindow() {
    frame_ = new OmMainFrame("Velmora Flash Programmer", wxPoint(20, 30), wxSize(800, 600), *help_);
    frame_->Show();
    frame_->Raise();
    visitor_.SetFrame(frame_);
    RunEvents();
}

void Monkey::OpenWindowAgainIfClosed() {
    if (!frame_ || frame_->IsBeingDeleted()) {
        visitor_.SetFrame(nullptr);
        RunEvents();
        EXPECT_FALSE(frame_) << "a closed window is still there";
        OpenWindow();
    }
}

void Monkey::Step() {
    static const std::vector<Deed> deeds = MakeDeeds();
    static const unsigned total = [] {
        unsigned sum = 0;
        for (const Deed& deed : deeds)
            sum += deed.weight;
        return sum;
    }();
    dice_.Start(seed_, ++step_);
    unsigned chosen = dice_.Below(total);
    const Deed* deed = deeds.data();
    for (; chosen >= deed->weight; ++deed)
        chosen -= deed->weight;
    journal_.Note(std::to_string(step_) + " " + deed->name);
    (this->*deed->act)();
    RunEvents();
    OpenWindowAgainIfClosed();
    ExpectHealthy(*frame_);
    EXPECT_FALSE(visitor_.IsBusy());
    EXPECT_FALSE(files_.ShellWasReached());
}

OmHexViewCtrl& Monkey::View() {
    return *FindByClass<OmHexViewCtrl>(*frame_);
}

void Monkey::SendCommand(int id) {
    journal_.Note("    command " + std::to_string(id));
    wxCommandEvent event(wxEVT_MENU, id);
    event.SetEventObject(frame_);
    frame_->GetEventHandler()->ProcessEvent(event);
}

void Monkey::ChooseFromMenu() {
    static constexpr int kFirst[] = {
        wxID_NEW,   wxID_OPEN,           wxID_SAVE,          wxID_SAVEAS,           wxID_HELP,
        wxID_ABOUT, kIdFirstRecentSetup, kIdFirstRecentData, kIdFirstRecentData + 1};
    const int id = dice_.OneIn(3)   ? dice_.Pick(kFirst)
                   : dice_.OneIn(2) ? dice_.Between(kIdInfo, kIdUnlockSectors)
                                    : dice_.Between(kIdLoadData, kIdWebsite);
    frame_->UpdateWindowUI();
    frame_->GetMenuBar()->UpdateMenus();
    const wxMenuItem* item = frame_->GetMenuBar()->FindItem(id);
    if (item && item->IsEnabled() && !item->IsSubMenu())
        SendCommand(id);
}

void Monkey::ClickTool() {
    auto* bar = FindByClass<wxAuiToolBar>(*frame_, dice_.Below(2));
    const auto tools = dice_.OneIn(4) ? GetDataTools() : GetActionTools();
    const wxRect tool = bar->GetToolRect(dice_.Pick(tools).id);
    if (tool.IsEmpty() || !bar->IsShownOnScreen())
        return;
    const wxPoint at = bar->ClientToScreen(tool.GetPosition() + tool.GetSize() / 2);
    wxUIActionSimulator mouse;
    mouse.MouseMove(at);
    mouse.MouseClick();
    journal_.Note("    at " + std::to_string(at.x) + " " + std::to_string(at.y));
}

void Monkey::PressAccelerator() {
    struct Key {
        int code;
        int modifiers;
    };

    static constexpr Key kKeys[] = {
        {'O', wxMOD_CONTROL}, {'S', wxMOD_CONTROL}, {'G', wxMOD_CONTROL},
        {WXK_F2, wxMOD_NONE}, {WXK_F5, wxMOD_NONE}, {'R', wxMOD_CONTROL},
        {'E', wxMOD_CONTROL}, {'P', wxMOD_CONTROL}, {WXK_F9, wxMOD_NONE}};
    const Key& key = dice_.Pick(kKeys);
    journal_.Note("    key " + std::to_string(key.code));
    View().SetFocus();
    wxUIActionSimulator().Char(key.code, key.modifiers);
}

// Wherever they go; menus may open, which Escape closes.
void Monkey::PressKeys() {
    static constexpr int kKeys[] = {WXK_UP,  WXK_DOWN,  WXK_LEFT,   WXK_RIGHT,  WXK_HOME, WXK_END,
                                    WXK_TAB, WXK_SPACE, WXK_RETURN, WXK_PAGEUP, WXK_F10,  WXK_MENU,
                                    'F',     'A',       'S',        'I',        'L',      'X',
                                    'P',     'V',       '1',        WXK_DELETE};
    wxUIActionSimulator keyboard;
    for (int i = dice_.Between(1, 6); i > 0 && frame_; --i) {
        const int key = dice_.Pick(kKeys);
        journal_.Note("    key " + std::to_string(key));
        keyboard.Char(key, key < 128 && dice_.OneIn(2) ? wxMOD_ALT : wxMOD_NONE);
        RunEvents();
    }
    for (int i = 0; i < 4; ++i) {
        keyboard.Char(WXK_ESCAPE);
        RunEvents();
    }
}

void Monkey::ScrollByEvents() {
    static const wxEventType kTypes[] = {wxEVT_SCROLLWIN_LINEUP, wxEVT_SCROLLWIN_LINEDOWN,
                                         wxEVT_SCROLLWIN_PAGEUP, wxEVT_SCROLLWIN_PAGEDOWN,
                                         wxEVT_SCROLLWIN_THUMBTRACK};
    for (int i = dice_.Between(1, 10); i > 0; --i) {
        const int position =
            dice_.OneIn(4) ? static_cast<int>(dice_.Throw()) : dice_.Between(0, 1000);
        wxScrollWinEvent event(dice_.Pick(kTypes), position,
                               dice_.OneIn(8) ? wxHORIZONTAL : wxVERTICAL);
        View().GetEventHandler()->ProcessEvent(event);
    }
}

void Monkey::Wheel() {
    for (int i = dice_.Between(1, 10); i > 0; --i) {
        wxMouseEvent event(wxEVT_MOUSEWHEEL);
        event.m_wheelRotation =
            dice_.OneIn(6) ? static_cast<int>(dice_.Throw() >> 34) : dice_.Between(-360, 360);
        event.m_wheelDelta = dice_.OneIn(8) ? 0 : 120;
        event.m_linesPerAction = dice_.Between(0, 30);
        event.m_wheelAxis = dice_.OneIn(8) ? wxMOUSE_WHEEL_HORIZONTAL : wxMOUSE_WHEEL_VERTICAL;
        View().GetEventHandler()->ProcessEvent(event);
    }
}

void Monkey::ClickView() {
    const wxSize size = View().GetSize();
    wxUIActionSimulator mouse;
    mouse.MouseMove(View().ClientToScreen(
        wxPoint(dice_.Between(0, std::max(size.x, 1)), dice_.Between(0, std::max(size.y, 1)))));
    static constexpr int kButtons[] = {wxMOUSE_BTN_LEFT, wxMOUSE_BTN_RIGHT, wxMOUSE_BTN_MIDDLE};
    mouse.MouseClick(dice_.Pick(kButtons));
}

void Monkey::Resize() {
    if (dice_.OneIn(4))
        return frame_->Maximize(dice_.OneIn(2));
    const int limit = dice_.OneIn(5) ? 6000 : 1200;
    frame_->SetSize(dice_.Between(1, limit), dice_.Between(1, limit));
}

void Monkey::MarkModified() {
    frame_->MarkSetupModified();
}

void Monkey::LoadFiles() {
    if (dice_.OneIn(2))
        frame_->LoadSetupFile(files_.PickSetupToOpen(dice_));
    else
        frame_->LoadDataFile(files_.PickDataToOpen(dice_));
}

void Monkey::ReplaceBoard() {
    board_.Replace();
    if (dice_.OneIn(4))
        return;
    board_.DescribeToProgram();
}

void Monkey::DescribeBoard() {
    board_.DescribeToProgram();
}

void Monkey::DescribeWrongly() {
    board_.DescribeWrongly();
}

void Monkey::BreakBoard() {
    board_.Break();
}

void Monkey::EditSectors() {
    OmEditSectorsDlg dialog(frame_);
    if (dice_.OneIn(2))
        dialog.layout = OmFlashProgrammer::GetInstance().setup.sectors;
    visitor_.ShowAlone(dialog);
}

void Monkey::ChooseBsdl() {
    OmBsdlInfoDlg dialog(frame_);
    dialog.SetDevice("Dev1", OmBitVector(dice_.OneIn(2) ? 32 : 0, 0), nullptr, "");
    visitor_.ShowAlone(dialog);
}

void Monkey::CloseWindow() {
    frame_->Close(dice_.OneIn(2));
}
