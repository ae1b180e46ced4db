#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "tests/windows/MainWindow.h"

#include <set>
#include <wx/aui/auibar.h>
#include <wx/uiaction.h>

namespace {

struct ShownItem {
    int depth; // 0: a menu of the bar
    int id;    // of a menu of the bar: 0
    std::string label;

    bool operator==(const ShownItem&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ShownItem& item) {
    return stream << item.depth << " " << item.id << " \"" << item.label << "\"";
}

void CollectItems(const wxMenu& menu, int depth, std::vector<ShownItem>& items) {
    for (const wxMenuItem* item : menu.GetMenuItems()) {
        if (item->IsSeparator()) {
            items.push_back({depth, 0, "---"});
            continue;
        }
        items.push_back({depth, item->GetId(), item->GetItemLabel().ToStdString()});
        if (item->IsSubMenu())
            CollectItems(*item->GetSubMenu(), depth + 1, items);
    }
}

std::vector<ShownItem> CollectMenus(const wxMenuBar& bar) {
    std::vector<ShownItem> items;
    for (size_t index = 0; index < bar.GetMenuCount(); ++index) {
        items.push_back({0, 0, bar.GetMenuLabel(index).ToStdString()});
        CollectItems(*bar.GetMenu(index), 1, items);
    }
    return items;
}

struct ShownTool {
    int id;
    std::string label;
    std::string tooltip;

    bool operator==(const ShownTool&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ShownTool& tool) {
    return stream << tool.id << " \"" << tool.label << "\" \"" << tool.tooltip << "\"";
}

std::vector<ShownTool> CollectTools(const wxAuiToolBar& bar) {
    std::vector<ShownTool> tools;
    for (size_t index = 0; index < bar.GetToolCount(); ++index) {
        const wxAuiToolBarItem& tool = *bar.FindToolByIndex(static_cast<int>(index));
        if (tool.GetKind() == wxITEM_SEPARATOR)
            tools.push_back({0, "---", ""});
        else if (const_cast<wxAuiToolBarItem&>(tool).GetWindow())
            tools.push_back({0, "control", ""});
        else
            tools.push_back(
                {tool.GetId(), tool.GetLabel().ToStdString(), tool.GetShortHelp().ToStdString()});
    }
    return tools;
}

} // namespace

TEST_F(MainWindowTest, MenusHaveTheirLabelsIdsAndOrder) {
    const std::vector<ShownItem> expected = {
        {0, 0, "&File"},
        {1, wxID_NEW, "&New Setup"},
        {1, wxID_OPEN, "&Load Setup..."},
        {1, wxID_SAVE, "Save Se&tup"},
        {1, wxID_SAVEAS, "Save Setup &As..."},
        {1, 0, "---"},
        {1, 10000, "L&oad Data File...\tCtrl+O"},
        {1, 10001, "&Save Data As...\tCtrl+S"},
        {1, 0, "---"},
        {1, 10002, "&Recent Setup Files"},
        {1, 10003, "Recent &Data Files"},
        {1, 0, "---"},
        {1, wxID_EXIT, "E&xit"},
        {0, 0, "&View"},
        {1, 10022, "&Go to Offset...\tCtrl+G"},
        {0, 0, "&Setup"},
        {1, 10023, "JTAG &Connection...\tF2"},
        {1, 0, "---"},
        {1, 10024, "&Setup..."},
        {0, 0, "&Actions"},
        {1, 10025, "&Info...\tF5"},
        {1, 10026, "&Read...\tCtrl+R"},
        {1, 10027, "&Erase...\tCtrl+E"},
        {1, 10028, "&Blank Check..."},
        {1, 10029, "&Program...\tCtrl+P"},
        {1, 10030, "&Verify..."},
        {1, 0, "---"},
        {1, 10031, "Intel &Specific"},
        {2, 10032, "&Lock Sectors..."},
        {2, 10033, "&Unlock Sectors..."},
        {1, 0, "---"},
        {1, 10034, "JTAG Rese&t\tF9"},
        {0, 0, "&Help"},
        {1, wxID_HELP, "&Help\tF1"},
        {1, 10036, "Velmora &Website"},
        {1, 0, "---"},
        {1, wxID_ABOUT, "&About Velmora Flash Programmer"},
    };
    EXPECT_EQ(CollectMenus(*frame_->GetMenuBar()), expected);
}

TEST_F(MainWindowTest, NoTwoCommandsShareAnIdOrAnAccelerator) {
    std::set<int> ids;
    std::set<std::string> accelerators;
    for (const ShownItem& item : CollectMenus(*frame_->GetMenuBar())) {
        if (item.id != 0) {
            EXPECT_TRUE(ids.insert(item.id).second) << item;
        }
        const size_t tab = item.label.find('\t');
        if (tab != std::string::npos) {
            EXPECT_TRUE(accelerators.insert(item.label.substr(tab)).second) << item;
        }
    }
}

TEST_F(MainWindowTest, UpperBarHasItsToolsLabelsAndTips) {
    const std::vector<ShownTool> expected = {
        {wxID_OPEN, "", "Load Setup..."},
        {wxID_SAVE, "", "Save Setup"},
        {0, "---", ""},
        {10024, "Setup", "Show Setup Dialog..."},
        {0, "---", ""},
        {10025, "Info", "Get Flash Information"},
        {10026, "Read", "Read Flash Contents..."},
        {10027, "Erase", "Erase Flash..."},
        {10029, "Program", "Program Flash..."},
        {10030, "Verify", "Verify Programmed Data..."},
        {0, "---", ""},
        {10034, "JTAG Reset", "Enable Normal Device Operation"},
    };
    EXPECT_EQ(CollectTools(GetToolBar(0)), expected);
}

TEST_F(MainWindowTest, LowerBarHasTheCaptionBeforeItsTools) {
    const std::vector<ShownTool> expected = {
        {0, "control", ""},
        {10000, "", "Load Data File..."},
        {10001, "", "Save Data as..."},
    };
    EXPECT_EQ(CollectTools(GetToolBar(1)), expected);
    const wxStaticText& caption = *FindByClass<wxStaticText>(*frame_);
    EXPECT_EQ(caption.GetToolTipText(), "Data for Programming");
    EXPECT_EQ(caption.GetSize().x, 220);
    EXPECT_EQ(caption.GetBackgroundColour(), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
}

TEST_F(MainWindowTest, BarsStandInTheirRowsWithTheirMarginsAndStyles) {
    const struct {
        unsigned bar;
        const char* pane;
        int row;
        long style;
    } cases[] = {{0, "toolbar1", 0, wxAUI_TB_TEXT | wxAUI_TB_HORZ_LAYOUT}, {1, "toolbar2", 1, 0}};

    const wxAuiManager& manager = *wxAuiManager::GetManager(frame_);
    for (const auto& test : cases) {
        wxAuiPaneInfo& pane = const_cast<wxAuiManager&>(manager).GetPane(test.pane);
        ASSERT_TRUE(pane.IsOk()) << test.pane;
        EXPECT_EQ(pane.window, &GetToolBar(test.bar));
        EXPECT_TRUE(pane.IsToolbar() && pane.dock_direction == wxAUI_DOCK_TOP) << test.pane;
        EXPECT_EQ(pane.dock_row, test.row) << test.pane;
        EXPECT_EQ(pane.dock_layer, 10) << test.pane;
        EXPECT_EQ(GetToolBar(test.bar).GetWindowStyle() &
                      (wxAUI_TB_TEXT | wxAUI_TB_HORZ_LAYOUT | wxAUI_TB_GRIPPER | wxAUI_TB_OVERFLOW),
                  test.style)
            << test.pane;
    }
}

TEST_F(MainWindowTest, BarsRunAcrossTheWindow) {
    const int width = frame_->GetClientSize().x;
    EXPECT_EQ(GetToolBar(0).GetSize().x, width);
    EXPECT_EQ(GetToolBar(1).GetSize().x, width);
    EXPECT_EQ(frame_->GetHexView().GetSize().x, width);
}

TEST_F(MainWindowTest, OnlyFourCommandsAreEverDisabled) {
    const std::set<int> disabled = {10001, 10002, 10003, 10022};
    for (const ShownItem& item : CollectMenus(*frame_->GetMenuBar())) {
        if (item.id != 0) {
            EXPECT_EQ(IsMenuEnabled(*frame_, item.id), disabled.count(item.id) == 0) << item;
        }
    }
}

TEST_F(MainWindowTest, DataCommandsAreEnabledWithData) {
    ReadFromFlash(0, {1});
    EXPECT_TRUE(IsMenuEnabled(*frame_, kIdSaveDataAs));
    EXPECT_TRUE(IsMenuEnabled(*frame_, kIdGoToOffset));
    EXPECT_FALSE(IsMenuEnabled(*frame_, kIdRecentData));
}

TEST_F(MainWindowTest, SaveDataToolFollowsItsCommand) {
    EXPECT_TRUE(WaitFor([this] {
        SettleEvents();
        return !GetToolBar(1).GetToolEnabled(kIdSaveDataAs);
    }));
    ReadFromFlash(0, {1});
    EXPECT_TRUE(WaitFor([this] {
        SettleEvents();
        return GetToolBar(1).GetToolEnabled(kIdSaveDataAs);
    }));
}

// Real keys, as the window's accelerators see them.
class AcceleratorTest : public MainWindowTest {
  protected:
    AcceleratorTest() {
        frame_->Raise();
        frame_->SetFocus();
        SettleEvents();
        frame_->Bind(wxEVT_MENU,
                     [this](wxCommandEvent& event) { chosen_.push_back(event.GetId()); });
    }

    // The commands that a key chooses. F9 after it shows that the key has been worked off.
    std::vector<int> Type(int key, int modifiers = wxMOD_NONE) {
        chosen_.clear();
        frame_->UpdateWindowUI();
        frame_->GetMenuBar()->UpdateMenus();
        wxUIActionSimulator user;
        user.Char(key, modifiers);
        user.Char(WXK_F9);
        EXPECT_TRUE(WaitFor([this] { return !chosen_.empty() && chosen_.back() == kIdJtagReset; }));
        if (!chosen_.empty())
            chosen_.pop_back();
        return chosen_;
    }

    std::vector<int> chosen_;
};

TEST_F(AcceleratorTest, KeysChooseTheirCommands) {
    const struct {
        int key;
        int modifiers;
        int id;
    } cases[] = {{'O', wxMOD_CONTROL, 10000}, {WXK_F2, 0, 10023},
                 {WXK_F5, 0, 10025},          {'R', wxMOD_CONTROL, 10026},
                 {'E', wxMOD_CONTROL, 10027}, {'P', wxMOD_CONTROL, 10029},
                 {WXK_F1, 0, wxID_HELP}};

    for (const auto& test : cases)
        EXPECT_EQ(Type(test.key, test.modifiers), std::vector<int>{test.id}) << test.id;
}

TEST_F(AcceleratorTest, KeysOfDisabledCommandsDoNothing) {
    EXPECT_EQ(Type('S', wxMOD_CONTROL), std::vector<int>{});
    EXPECT_EQ(Type('G', wxMOD_CONTROL), std::vector<int>{});
    ReadFromFlash(0, {1});
    EXPECT_EQ(Type('S', wxMOD_CONTROL), std::vector<int>{10001});
    EXPECT_EQ(Type('G', wxMOD_CONTROL), std::vector<int>{10022});
}

// The host's usual keys would load and save the setup, or end the program.
TEST_F(AcceleratorTest, CommandsWithoutAKeyHaveNone) {
    EXPECT_EQ(Type('N', wxMOD_CONTROL), std::vector<int>{});
    EXPECT_EQ(Type('Q', wxMOD_CONTROL), std::vector<int>{});
    EXPECT_EQ(Type('S', wxMOD_CONTROL | wxMOD_SHIFT), std::vector<int>{});
}
