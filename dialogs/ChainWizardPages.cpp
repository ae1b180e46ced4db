#include "dialogs/ChainWizardPages.h"

#include "dialogs/ChainExamination.h"
#include "dialogs/ChainExamResult.h"
#include "flash/FlashProgrammer.h"
#include "jtag/ui/CableSettingsPanel.h"
#include "widgets/DialogLayout.h"

#include <wx/html/htmlwin.h>
#include <wx/panel.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

namespace {

constexpr unsigned kReportColumns = 60;
constexpr unsigned kReportLines = 20;
constexpr int kMostPrecedingDevices = 100;

wxStaticText* MakeHeading(wxWindow* parent, const wxString& text) {
    auto* heading = new wxStaticText(parent, wxID_ANY, text);
    heading->SetFont(heading->GetFont().Bold());
    return heading;
}

} // namespace

OmCableWizardPage::OmCableWizardPage(wxWizard* wizard, OmChainExamResult& result)
    : wxWizardPageSimple(wizard), result_(result) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(MakeHeading(this, _("Set up the JTAG Connection")), RowFlags());
    panel_ = new OmCableSettingsPanel(this);
    column->Add(panel_, wxSizerFlags(1).Expand());
    column->Add(new wxStaticText(this, wxID_ANY, _("Click 'Next' to examine the JTAG chain.")),
                RowFlags());
    SetSizer(column);
}

bool OmCableWizardPage::TransferDataToWindow() {
    panel_->SetSettings(OmFlashProgrammer::GetInstance().settings);
    return panel_->TransferDataToWindow();
}

bool OmCableWizardPage::TransferDataFromWindow() {
    if (!panel_->TransferDataFromWindow())
        return false;
    result_.adaptiveClockingAccepted = panel_->IsAdaptiveWarningAnswered();
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    programmer.settings = panel_->GetSettings();
    programmer.CloseCable(); // the user may have plugged it in meanwhile
    return programmer.OpenCable();
}

OmChainWizardPage::OmChainWizardPage(wxWizard* wizard, OmChainExamResult& result)
    : wxWizardPageSimple(wizard), result_(result) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(MakeHeading(this, _("The Detected JTAG Chain")), RowFlags());
    wxPanel* frame = MakeFrame(this);
    report_ = new wxHtmlWindow(frame, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                               wxHW_SCROLLBAR_AUTO | wxBORDER_NONE);
    report_->SetStandardFonts();
    report_->SetInitialSize(MeasureText(*report_, kReportColumns, kReportLines));
    FillFrame(frame, report_);
    column->Add(frame, RowFlags(1));
    BuildHiddenGroup(column);
    SetSizer(column);
    // Whatever is shown next has a way on.
    Bind(wxEVT_WIZARD_PAGE_CHANGING, [this](wxWizardEvent& event) {
        EnableNext(true);
        event.Skip();
    });
}

void OmChainWizardPage::BuildHiddenGroup(wxSizer* column) {
    hiddenGroup_ = new wxStaticBoxSizer(wxVERTICAL, this, _("Are there all devices detected?"));
    wxWindow* box = hiddenGroup_->GetStaticBox();
    label_ = new wxStaticText(box, wxID_ANY, _("Number of devices preceding XXXXX YYYYY:"));
    precedingCount_ = new wxSpinCtrl(box, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                     wxSP_ARROW_KEYS, 0, kMostPrecedingDevices, 0);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(precedingCount_, wxSizerFlags().CentreVertical().Border(wxRIGHT));
    row->Add(new wxStaticText(box, wxID_ANY, _("(Leave 0 if all devices were detected)")),
             wxSizerFlags().CentreVertical());
    hiddenGroup_->Add(label_, RowFlags());
    hiddenGroup_->Add(row, RowFlags());
    column->Add(hiddenGroup_, RowFlags());
}

bool OmChainWizardPage::TransferDataToWindow() {
    if (!wxWizardPageSimple::TransferDataToWindow())
        return false;
    precedingCount_->SetValue(0);
    OmExaminedChain chain = ExamineConnectedChain();
    const std::vector<OmChainRow> rows = DescribeChain(chain.devices);
    EnableNext(!rows.empty());
    report_->SetPage(MakeChainPage(rows, chain.beginningHidden));
    ShowHiddenGroup(chain.beginningHidden,
                    rows.empty() ? wxString() : wxString(MakePrecedingLabel(rows.front())));
    result_.devices = std::move(chain.devices);
    result_.irBits = std::move(chain.irBits);
    return true;
}

void OmChainWizardPage::ShowHiddenGroup(bool show, const wxString& label) {
    label_->SetLabelText(label); // a name may hold an ampersand
    label_->Wrap(MeasureText(*this, kReportColumns, 1).x);
    GetSizer()->Show(hiddenGroup_, show);
    Layout();
}

void OmChainWizardPage::EnableNext(bool enable) {
    GetParent()->FindWindow(wxID_FORWARD)->Enable(enable);
}

bool OmChainWizardPage::TransferDataFromWindow() {
    if (!wxWizardPageSimple::TransferDataFromWindow())
        return false;
    InsertPrecedingDevices(result_.devices, static_cast<unsigned>(precedingCount_->GetValue()));
    return true;
}
