#include "widgets/DialogLayout.h"

#include "platform/UserInterface.h"

#include <initializer_list>
#include <wx/button.h>
#include <wx/hyperlink.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kBoxCharacters = 12;

int Gap() {
    return wxSizerFlags::GetDefaultBorder();
}

wxTextCtrl* MakeBox(wxWindow* parent) {
    auto* box = new wxTextCtrl(parent, wxID_ANY);
    const int width = MeasureText(*box, kBoxCharacters, 1).x;
    box->SetMinSize(wxSize(box->GetSizeFromTextSize(width).x, -1));
    return box;
}

wxStdDialogButtonSizer* MakeOkCancel(wxWindow* parent, const wxString& okLabel,
                                     const wxString& cancelLabel) {
    auto* ok = new wxButton(parent, wxID_OK, okLabel);
    ok->SetDefault();
    auto* row = new wxStdDialogButtonSizer;
    row->AddButton(ok);
    row->AddButton(new wxButton(parent, wxID_CANCEL, cancelLabel));
    return row;
}

// Tab walks the buttons as the host orders them.
wxSizer* Realize(wxStdDialogButtonSizer* row) {
    row->Realize();
    wxWindow* previous = nullptr;
    for (const wxSizerItem* item : row->GetChildren()) {
        wxWindow* button = item->GetWindow();
        if (!button)
            continue;
        if (previous)
            button->MoveAfterInTabOrder(previous);
        previous = button;
    }
    return row;
}

} // namespace

bool RefuseInput(wxWindow& control, const wxString& text) {
    ShowMessage(text.ToStdWstring(), kWarningBox);
    control.SetFocus();
    return false;
}

void OmTextRow::Enable(bool enable) const {
    for (wxWindow* part : std::initializer_list<wxWindow*>{label, box, unit})
        if (part)
            part->Enable(enable);
}

std::wstring OmTextRow::GetText() const {
    return box->GetValue().ToStdWstring();
}

namespace {

// A frame of the toolkit keeps a line for its title even if there is none.
OmGroup AddUntitledGroup(wxWindow* parent, wxSizer* column, int proportion) {
    wxPanel* frame = MakeFrame(parent);
    auto* rows = new wxBoxSizer(wxVERTICAL);
    auto* margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(rows, wxSizerFlags(1).Expand().Border());
    frame->SetSizer(margin);
    column->Add(frame, RowFlags(proportion));
    return {frame, rows};
}

} // namespace

// The frame has its title above the rows; the border gives as much room below them.
OmGroup AddGroup(wxWindow* parent, wxSizer* column, const wxString& title, int proportion) {
    if (title.empty())
        return AddUntitledGroup(parent, column, proportion);
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, parent, title);
    auto* rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(parent->GetTextExtent(title).x, 0); // the frame would cut a longer title
    frame->Add(rows, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM));
    column->Add(frame, RowFlags(proportion));
    return {frame->GetStaticBox(), rows};
}

wxPanel* MakeFrame(wxWindow* parent) {
    return new wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                       wxTAB_TRAVERSAL | wxBORDER_THEME);
}

void FillFrame(wxPanel* frame, wxWindow* child) {
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(child, wxSizerFlags(1).Expand());
    frame->SetSizer(sizer);
}

wxFlexGridSizer* MakeTextRows() {
    constexpr int kColumns = 3;
    return new wxFlexGridSizer(kColumns, wxSize(Gap(), Gap()));
}

OmTextRow AddTextRow(wxWindow* parent, wxFlexGridSizer* rows, const wxString& label,
                     const wxString& unit) {
    OmTextRow row;
    row.label = new wxStaticText(parent, wxID_ANY, label);
    row.box = MakeBox(parent);
    row.unit = new wxStaticText(parent, wxID_ANY, unit);
    for (wxWindow* part : std::initializer_list<wxWindow*>{row.label, row.box, row.unit})
        rows->Add(part, wxSizerFlags().CentreVertical());
    return row;
}

OmTextRow AddIndentedBox(wxWindow* parent, wxSizer* column, const wxString& unit) {
    OmTextRow row;
    row.box = MakeBox(parent);
    row.unit = new wxStaticText(parent, wxID_ANY, unit);
    auto* line = new wxBoxSizer(wxHORIZONTAL);
    line->Add(row.box, wxSizerFlags().CentreVertical());
    line->Add(row.unit, wxSizerFlags().CentreVertical().Border(wxLEFT));
    AddIndented(column, line);
    return row;
}

wxTextCtrl* MakeReadOnlyLine(wxWindow* parent, unsigned characters) {
    auto* line = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                wxTE_READONLY | wxBORDER_NONE);
    line->SetBackgroundColour(wxGetTopLevelParent(parent)->GetBackgroundColour());
    const int width = MeasureText(*line, characters, 1).x;
    line->SetMinSize(wxSize(line->GetSizeFromTextSize(width).x, -1));
    return line;
}

void ShowLine(wxTextCtrl& line, const wxString& text) {
    line.ChangeValue(text);
    line.SetToolTip(text);
}

void IndentText(wxTextCtrl& box) {
    constexpr int kTenthsOfMillimetre = 15;
    wxTextAttr style;
    style.SetLeftIndent(kTenthsOfMillimetre);
    box.SetDefaultStyle(style);
}

wxHyperlinkCtrl* MakeLink(wxWindow* parent, const wxString& label, std::function<void()> action) {
    auto* link = new wxHyperlinkCtrl(parent, wxID_ANY, label, label, wxDefaultPosition,
                                     wxDefaultSize, wxBORDER_NONE | wxHL_ALIGN_LEFT);
    link->SetVisitedColour(link->GetNormalColour());
    // Not skipped: the toolkit would take the label for an address and open a browser.
    link->Bind(wxEVT_HYPERLINK, [run = std::move(action)](wxHyperlinkEvent&) { run(); });
    return link;
}

void UseFixedPitch(wxWindow& window) {
    window.SetFont(wxFontInfo(window.GetFont().GetPointSize()).FaceName("Courier New"));
}

wxSize MeasureText(const wxWindow& window, unsigned columns, unsigned lines) {
    const wxSize character = window.GetTextExtent("0");
    return {static_cast<int>(columns) * character.x, static_cast<int>(lines) * character.y};
}

wxSizer* MakeOkCancelRow(wxWindow* parent, const wxString& okLabel, const wxString& cancelLabel) {
    return Realize(MakeOkCancel(parent, okLabel, cancelLabel));
}

wxSizer* MakeOkCancelHelpRow(wxWindow* parent, std::function<void()> showHelp) {
    wxStdDialogButtonSizer* row = MakeOkCancel(parent, _("&OK"), _("&Cancel"));
    auto* help = new wxButton(parent, wxID_HELP, _("&Help"));
    help->Bind(wxEVT_BUTTON, [show = std::move(showHelp)](wxCommandEvent&) { show(); });
    row->AddButton(help);
    return Realize(row);
}

wxSizer* MakeCloseRow(wxWindow* parent) {
    auto* close = new wxButton(parent, wxID_CANCEL, _("&Close"));
    close->SetDefault();
    auto* row = new wxStdDialogButtonSizer;
    row->AddButton(close);
    return Realize(row);
}

void PressCancel(wxDialog& dialog) {
    wxCommandEvent press(wxEVT_BUTTON, wxID_CANCEL);
    dialog.FindWindow(wxID_CANCEL)->GetEventHandler()->ProcessEvent(press);
}

void LayOutDialog(wxDialog* dialog, wxSizer* content, wxSizer* buttons) {
    constexpr unsigned kTitleButtons = 16; // characters beside a title: its buttons and icon
    const int titleWidth = dialog->GetTextExtent(dialog->GetTitle()).x;
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(titleWidth + MeasureText(*dialog, kTitleButtons, 1).x, 0);
    column->Add(content, wxSizerFlags(1).Expand().Border(wxALL));
    column->Add(buttons, wxSizerFlags().Expand().DoubleBorder(wxBOTTOM));
    dialog->SetSizerAndFit(column);
    dialog->CentreOnParent();
}

wxSizerFlags RowFlags(int proportion) {
    return wxSizerFlags(proportion).Expand().Border(wxALL);
}

void AddIndented(wxSizer* column, wxSizer* row) {
    constexpr int kIndent = 5;
    auto* line = new wxBoxSizer(wxHORIZONTAL);
    line->AddSpacer(kIndent * Gap());
    line->Add(row, wxSizerFlags(1).CentreVertical());
    column->Add(line, wxSizerFlags().Expand().Border(wxRIGHT | wxBOTTOM));
}

void AddIndented(wxSizer* column, wxWindow* row) {
    auto* line = new wxBoxSizer(wxHORIZONTAL);
    line->Add(row, wxSizerFlags(1));
    AddIndented(column, line);
}
