#include "dialogs/SetupChainPage.h"

#include "dialogs/BsdlInfoDlg.h"
#include "dialogs/ChainExamWizard.h"
#include "dialogs/ChainSizeDlg.h"
#include "dialogs/IRLenDlg.h"
#include "dialogs/PinMapDlg.h"
#include "dialogs/SetupVerify.h"
#include "flash/FlashProgrammer.h"
#include "platform/Text.h"
#include "widgets/DialogLayout.h"

#include <algorithm>
#include <wx/button.h>
#include <wx/htmllbox.h>
#include <wx/stattext.h>

namespace {

constexpr unsigned kListColumns = 60;
constexpr unsigned kListRows = 12;

} // namespace

OmSetupChainPage::OmSetupChainPage(wxWindow* parent, OmSetupSession& session)
    : wxPanel(parent), session_(session) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    BuildDefinition(column);
    BuildChain(column);
    SetSizer(column);
}

void OmSetupChainPage::BuildDefinition(wxSizer* column) {
    const auto [box, rows] = AddGroup(this, column, _("Define the JTAG chain"), 0);
    constexpr int kColumns = 2;
    const int gap = wxSizerFlags::GetDefaultBorder();
    auto* grid = new wxFlexGridSizer(kColumns, wxSize(2 * gap, gap));
    AddWay(box, grid, _("&Examine the chain..."),
           _("Detect chain devices (when chain is connected to the\ncomputer) ..."),
           &OmSetupChainPage::Examine);
    AddWay(box, grid, _("E&nter manually..."),
           _("... or manually specify the chain configuration (if chain is\nnot currently "
             "connected to the computer)."),
           &OmSetupChainPage::EnterManually);
    rows->Add(grid, RowFlags());
}

void OmSetupChainPage::AddWay(wxWindow* parent, wxSizer* rows, const wxString& label,
                              const wxString& note, void (OmSetupChainPage::*way)()) {
    auto* button = new wxButton(parent, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [this, way](wxCommandEvent&) { (this->*way)(); });
    rows->Add(button, wxSizerFlags().Expand().CentreVertical());
    rows->Add(new wxStaticText(parent, wxID_ANY, note), wxSizerFlags().CentreVertical());
}

void OmSetupChainPage::BuildChain(wxSizer* column) {
    const auto [box, rows] = AddGroup(this, column, _("JTAG chain"), 1);
    list_ = new wxSimpleHtmlListBox(box, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr,
                                    wxHLB_DEFAULT_STYLE | wxBORDER_THEME);
    list_->SetMinSize(MeasureText(*list_, kListColumns, kListRows));
    list_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { UpdateEnabled(); });
    list_->Bind(wxEVT_HTML_LINK_CLICKED,
                [this](wxHtmlLinkEvent& event) { FollowLink(event.GetLinkInfo().GetHref()); });
    rows->Add(list_, RowFlags(1));
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    bsdl_ =
        AddButton(box, buttons, _("&BSDL file..."), [this] { ActOnSelected(OmChainAction::Bsdl); });
    pinMap_ =
        AddButton(box, buttons, _("Pin &map..."), [this] { ActOnSelected(OmChainAction::PinMap); });
    irLength_ = AddButton(box, buttons, _("&IR length..."),
                          [this] { ActOnSelected(OmChainAction::IrLength); });
    buttons->AddStretchSpacer();
    verify_ = AddButton(box, buttons, _("&Verify..."), [this] { VerifyChain(session_.setup); });
    rows->Add(buttons, RowFlags());
    rows->Add(new wxStaticText(
                  box, wxID_ANY,
                  _("NOTE: A BSDL file and pin map must be set for the device(s) connected to the "
                    "flash\nmemory. For the rest of the devices it is sufficient to set either a "
                    "BSDL file or\nInstruction Register (IR) length. In some cases the IR length "
                    "is detected automatically\nwhile examining the JTAG chain.")),
              RowFlags());
}

wxButton* OmSetupChainPage::AddButton(wxWindow* parent, wxSizer* row, const wxString& label,
                                      std::function<void()> press) {
    auto* button = new wxButton(parent, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [run = std::move(press)](wxCommandEvent&) { run(); });
    row->Add(button, wxSizerFlags().Border(wxRIGHT));
    return button;
}

void OmSetupChainPage::ShowChain() {
    const int selected = list_->GetSelection();
    wxArrayString items;
    for (unsigned device = 0; device < session_.setup.GetDeviceCount(); ++device)
        items.push_back(
            FormatChainItem(session_.setup.GetDevice(device), static_cast<int>(device)));
    list_->Clear();
    if (!items.empty())
        list_->Append(items);
    list_->SetSelection(selected < static_cast<int>(items.size()) ? selected : wxNOT_FOUND);
    UpdateEnabled();
}

void OmSetupChainPage::UpdateEnabled() {
    const int selected = list_->GetSelection();
    const OmChainDevice* device = selected == wxNOT_FOUND
                                      ? nullptr
                                      : &session_.setup.GetDevice(static_cast<unsigned>(selected));
    bsdl_->Enable(device != nullptr);
    pinMap_->Enable(device && CanChoosePinMap(*device));
    irLength_->Enable(device && CanEnterIrLength(*device));
    verify_->Enable(list_->GetItemCount() > 0);
}

// The warning about adaptive clocking was answered even if the wizard was cancelled then.
void OmSetupChainPage::Examine() {
    OmChainExamWizard wizard(wxGetTopLevelParent(this));
    const bool finished = wizard.RunWizard();
    if (wizard.adaptiveClockingAccepted)
        OmFlashProgrammer::GetInstance().adaptiveWarningAnswered = true;
    if (finished && !wizard.devices.empty())
        ApplyChain(wizard.devices, wizard.irBits);
}

// As many devices as there are leaves them alone, with what is assigned to them.
void OmSetupChainPage::EnterManually() {
    OmChainSizeDlg dialog(wxGetTopLevelParent(this));
    const int present = static_cast<int>(session_.setup.GetDeviceCount());
    dialog.count = present;
    if (dialog.ShowModal() == wxID_OK && dialog.count != present)
        ApplyChain(std::vector<OmBitVector>(static_cast<size_t>(dialog.count)), OmBitVector());
}

void OmSetupChainPage::ApplyChain(const std::vector<OmBitVector>& devices,
                                  const OmBitVector& irBits) {
    if (!session_.ReplaceChain(devices, irBits))
        return;
    list_->SetSelection(devices.empty() ? wxNOT_FOUND : 0);
    UpdateEnabled();
}

void OmSetupChainPage::FollowLink(const wxString& href) {
    const std::optional<OmChainLink> link = ParseChainLink(href.ToStdWstring());
    if (link && link->device < static_cast<int>(session_.setup.GetDeviceCount()))
        Act(link->action, link->device);
}

void OmSetupChainPage::ActOnSelected(OmChainAction action) {
    if (list_->GetSelection() != wxNOT_FOUND)
        Act(action, list_->GetSelection());
}

void OmSetupChainPage::Act(OmChainAction action, int device) {
    switch (action) {
    case OmChainAction::Bsdl:
        ChooseBsdl(device);
        break;
    case OmChainAction::PinMap:
        ChoosePinMap(device);
        break;
    case OmChainAction::IrLength:
        EnterIrLength(device);
        break;
    }
}

wxString OmSetupChainPage::GetDisplayName(int device) const {
    return FormatDeviceName(session_.setup.devices, device);
}

void OmSetupChainPage::ChooseBsdl(int device) {
    const OmChainDevice& chosen = session_.setup.GetDevice(static_cast<unsigned>(device));
    OmBsdlInfoDlg dialog(this);
    dialog.SetTitle(_("BSDL File"));
    dialog.SetDevice(GetDisplayName(device), chosen.Idcode, chosen.bsdl.get(),
                     FromLocal(chosen.BsdlFile));
    std::unique_ptr<OmBsdlData> data;
    wxString file;
    if (dialog.ShowModal() == wxID_OK && dialog.TakeResult(data, file))
        session_.AssignBsdl(device, std::move(data), ToLocal(file.ToStdWstring()));
}

void OmSetupChainPage::ChoosePinMap(int device) {
    const OmChainDevice& chosen = session_.setup.GetDevice(static_cast<unsigned>(device));
    if (!chosen.bsdl || chosen.bsdl->pinMappings.empty())
        return;
    OmPinMapDlg dialog(this);
    dialog.displayName = GetDisplayName(device);
    dialog.pinMaps = chosen.bsdl->GetPinMappingNames();
    const auto current = std::ranges::find(dialog.pinMaps, chosen.PinMapping);
    if (current != dialog.pinMaps.end())
        dialog.selected = static_cast<int>(current - dialog.pinMaps.begin());
    if (dialog.ShowModal() == wxID_OK)
        session_.ChoosePinMapping(device, dialog.pinMaps[static_cast<size_t>(dialog.selected)]);
}

void OmSetupChainPage::EnterIrLength(int device) {
    OmIRLenDlg dialog(this);
    dialog.displayName = GetDisplayName(device);
    dialog.length = session_.setup.GetDevice(static_cast<unsigned>(device)).IRLen;
    if (dialog.ShowModal() == wxID_OK)
        session_.EnterIrLength(device, dialog.length);
}
