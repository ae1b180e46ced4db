#include "dialogs/FlashInfoDlg.h"

#include "widgets/DialogLayout.h"

#include <wx/html/htmlwin.h>
#include <wx/panel.h>

namespace {

constexpr unsigned kReportColumns = 80;
constexpr unsigned kReportLines = 32;

} // namespace

OmFlashInfoDlg::OmFlashInfoDlg(wxWindow* parent, const std::wstring& html)
    : wxDialog(parent, wxID_ANY, _("Flash Array Information"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    wxPanel* frame = MakeFrame(this);
    auto* report = new wxHtmlWindow(frame, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                    wxHW_SCROLLBAR_AUTO | wxBORDER_NONE);
    report->SetStandardFonts();
    report->SetInitialSize(MeasureText(*report, kReportColumns, kReportLines));
    report->SetPage(html);
    auto* column = new wxBoxSizer(wxVERTICAL);
    FillFrame(frame, report);
    column->Add(frame, RowFlags(1));
    LayOutDialog(this, column, MakeCloseRow(this));
    report->SetFocus(); // the arrow keys scroll at once
}
