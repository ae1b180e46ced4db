#include "app/MainFrame.h"

#include "app/AuiToolBarArt.h"
#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "app/MainMenus.h"
#include "app/WindowGeometry.h"
#include "flash/FlashProgrammer.h"
#include "jtag/ConnectionSettings.h"
#include "jtag/StaticPinsSchemes.h"
#include "platform/Paths.h"
#include "platform/UserInterface.h"
#include "widgets/Help.h"
#include "widgets/Icons.h"

#include <wx/aui/auibar.h>
#include <wx/aui/dockart.h>
#include <wx/config.h>
#include <wx/filename.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/stattext.h>

namespace {

constexpr char kRecentSetupsPath[] = "/RecentSetupFiles/";
constexpr char kRecentDataPath[] = "/RecentDataFiles/";
constexpr int kCaptionWidth = 220;
constexpr int kToolBarLayer = 10; // outside everything else that may be docked

struct BarMargins {
    int left, right, top, bottom;
};

constexpr BarMargins kActionMargins{5, 5, 2, 3};
constexpr BarMargins kDataMargins{5, 5, 3, 2};

// GTK gives a menu item that has a standard id, but no accelerator, the one that this id usually
// has: Ctrl+O would load a setup instead of a data file. It looks at the id only when the item is
// added.
void AppendCommand(wxMenu* menu, int id, const wxString& label) {
#ifdef __WXGTK__
    menu->Append(wxID_ANY, label)->SetId(id);
#else
    menu->Append(id, label);
#endif
}

wxMenu* MakeMenu(std::span<const OmMenuRow> rows) {
    auto* menu = new wxMenu;
    for (const OmMenuRow& row : rows) {
        if (row.id == wxID_SEPARATOR)
            menu->AppendSeparator();
        else if (row.isSubmenu)
            menu->Append(row.id, wxGetTranslation(row.label), MakeMenu(row.submenu));
        else
            AppendCommand(menu, row.id, wxGetTranslation(row.label));
    }
    return menu;
}

void AddTools(wxAuiToolBar* bar, std::span<const OmToolRow> rows) {
    for (const OmToolRow& row : rows) {
        if (row.id == wxID_SEPARATOR)
            bar->AddSeparator();
        else
            bar->AddTool(row.id, *row.label ? wxGetTranslation(row.label) : wxString(),
                         GetToolIcon(row.icon), wxGetTranslation(row.tooltip));
    }
}

wxAuiToolBar* MakeToolBar(wxWindow* parent, long style, const BarMargins& margins,
                          wxAuiToolBarArt* art) {
    auto* bar = new wxAuiToolBar(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, style);
    bar->SetArtProvider(art);
    bar->SetToolBitmapSize(wxSize(16, 16));
    bar->SetMargins(margins.left, margins.right, margins.top, margins.bottom);
    return bar;
}

// The longest text of the program's own in the data caption.
wxString GetLongestCaption() {
    constexpr unsigned long long kLargestUsual = 16777216;
    return _(" (data read from flash)") + wxString::Format(_(", %llu Bytes"), kLargestUsual);
}

// The box has a fixed width, so the font gives way.
void MakeRoom(wxWindow& box, const wxString& text, int width) {
    constexpr int kSmallestPoints = 8;
    wxFont font = box.GetFont();
    while (box.GetTextExtent(text).x > width && font.GetPointSize() > kSmallestPoints) {
        font.SetPointSize(font.GetPointSize() - 1);
        box.SetFont(font);
    }
}

template <typename Action>
void WithHistory(const char* path, Action action) {
    wxConfigBase* store = wxConfigBase::Get();
    const wxConfigPathChanger restoresPath(store, path);
    action(*store);
}

} // namespace

OmMainFrame::OmMainFrame(const wxString& title, const wxPoint& position, const wxSize& size,
                         OmHelpViewer& helpViewer)
    : wxFrame(nullptr, wxID_ANY, title, position, size),
      recentSetups_(kMaxRecentFiles, kIdFirstRecentSetup),
      recentDataFiles_(kMaxRecentFiles, kIdFirstRecentData), helpViewer_(helpViewer) {
    helpViewer_.Initialize(wxString(GetProgramDirectory()) + "/velflash");
    SetCurrentHelpViewer(&helpViewer_);
    manager_.SetManagedWindow(this);
    // No pane can be dragged, so no gap is needed to take hold of.
    manager_.GetArtProvider()->SetMetric(wxAUI_DOCKART_SASH_SIZE, 0);
    SetIcons(GetAppIcon());
    BuildMenus();
    BuildToolBars();
    hexView_ = new OmHexViewCtrl(this);
    manager_.AddPane(hexView_, wxAuiPaneInfo().Name("hex_view").CenterPane().PaneBorder(false));
    manager_.Update();
    UpdateTitle();
    UpdateDataCaption();
    BindCommands();
}

// Everything that outlives the run is written here, while the window still has its geometry.
OmMainFrame::~OmMainFrame() {
    hexView_->SetDataImage(nullptr);
    SetCurrentHelpViewer(nullptr);
    SaveConnectionSettings(OmFlashProgrammer::GetInstance().settings);
    SaveUsedStaticPinsSchemes();
    SaveRecentFiles();
    StoreWindowGeometry(GetRect(), IsMaximized());
    manager_.UnInit();
}

void OmMainFrame::BuildMenus() {
    auto* bar = new wxMenuBar;
    for (const OmMenu& menu : GetMenuTable())
        bar->Append(MakeMenu(menu.rows), wxGetTranslation(menu.title));
    recentSetups_.UseMenu(bar->FindItem(kIdRecentSetups)->GetSubMenu());
    recentDataFiles_.UseMenu(bar->FindItem(kIdRecentData)->GetSubMenu());
    LoadRecentFiles();
    SetMenuBar(bar);
}

void OmMainFrame::BuildToolBars() {
    auto* actions = MakeToolBar(this, wxAUI_TB_TEXT | wxAUI_TB_HORZ_LAYOUT, kActionMargins,
                                new OmAuiToolBarArt(false, true));
    AddTools(actions, GetActionTools());
    AddToolBarPane(actions, "toolbar1", 0);
    auto* data = MakeToolBar(this, 0, kDataMargins, new OmAuiToolBarArt(true, false));
    dataCaption_ = MakeDataCaption(data);
    data->AddControl(dataCaption_);
    AddTools(data, GetDataTools());
    AddToolBarPane(data, "toolbar2", 1);
}

void OmMainFrame::AddToolBarPane(wxAuiToolBar* bar, const wxString& name, int row) {
    bar->Realize();
    // Resizable: the bar fills its row, so that the lines of its art run across the window. The
    // bars draw their own edges.
    manager_.AddPane(bar, wxAuiPaneInfo()
                              .Name(name)
                              .ToolbarPane()
                              .Top()
                              .Row(row)
                              .Layer(kToolBarLayer)
                              .Gripper(false)
                              .PaneBorder(false)
                              .Floatable(false)
                              .Movable(false)
                              .Resizable());
}

// Reads like a text box. A long file name is shortened where it says least.
wxStaticText* OmMainFrame::MakeDataCaption(wxAuiToolBar* bar) {
    auto* caption = new wxStaticText(bar, wxID_ANY, " ", wxDefaultPosition, wxDefaultSize,
                                     wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_MIDDLE);
    caption->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    const int width = FromDIP(kCaptionWidth);
    MakeRoom(*caption, GetLongestCaption(), width);
    // The text's own height: GTK tells that of a label in a new font only when it is shown.
    const wxSize size(width, caption->GetTextExtent(" ").y + 2);
    caption->SetMinSize(size);
    caption->SetMaxSize(size);
    caption->SetToolTip(_("Data for Programming"));
    return caption;
}

void OmMainFrame::LoadRecentFiles() {
    WithHistory(kRecentSetupsPath, [this](wxConfigBase& store) { recentSetups_.Load(store); });
    WithHistory(kRecentDataPath, [this](wxConfigBase& store) { recentDataFiles_.Load(store); });
}

// The files still current stop being so now.
void OmMainFrame::SaveRecentFiles() {
    if (!setupPath_.empty())
        recentSetups_.AddFileToHistory(setupPath_);
    if (!dataPath_.empty())
        recentDataFiles_.AddFileToHistory(dataPath_);
    WithHistory(kRecentSetupsPath, [this](wxConfigBase& store) { recentSetups_.Save(store); });
    WithHistory(kRecentDataPath, [this](wxConfigBase& store) { recentDataFiles_.Save(store); });
}

void OmMainFrame::UpdateTitle() {
    wxString name = setupPath_.empty() ? _("Untitled") : wxFileName(setupPath_).GetName();
    if (setupModified_)
        name += "*";
    SetTitle(name + " - " + kProductName);
}

void OmMainFrame::UpdateDataCaption() {
    if (dataImage_.IsEmpty()) {
        dataCaption_->SetLabel(_(" (no data loaded)"));
        return;
    }
    wxString caption = dataPath_.empty() ? _(" (data read from flash)")
                                         : " " + wxFileName(dataPath_).GetFullName();
    caption += wxString::Format(_(", %llu Bytes"),
                                static_cast<unsigned long long>(dataImage_.GetByteCount()));
    dataCaption_->SetLabelText(caption);
}
