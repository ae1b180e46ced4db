#include "jtag/ui/CableSettingsPanel.h"

#include "jtag/CableFactory.h"
#include "jtag/ui/DigilentPage.h"
#include "jtag/ui/Ftd2xxPage.h"
#include "jtag/ui/JLinkPages.h"
#include "jtag/ui/ParallelPage.h"
#include "jtag/ui/UsbBlasterPage.h"
#include "platform/Translation.h"

#include <algorithm>
#include <wx/choice.h>
#include <wx/simplebook.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

struct OmCableSettingsPanel::Connection {
    OmCableType type;
    Page page;
};

// In the order of the choice: what is most in use today comes first.
const OmCableSettingsPanel::Connection OmCableSettingsPanel::kConnections[] = {
    {OmCableType::AlteraUsbBlaster, kUsbBlaster},
    {OmCableType::Ftd2xx, kFtd2xx},
    {OmCableType::JLinkUsb, kJLinkUsb},
    {OmCableType::JLinkIp, kJLinkIp},
    {OmCableType::DigilentAdept, kDigilent},
    {OmCableType::XilinxParallelCable3, kParallel},
    {OmCableType::AlteraByteBlasterMV, kParallel},
    {OmCableType::LatticeParallelIspDownload, kParallel},
    {OmCableType::Wiggler, kParallel},
    {OmCableType::EmbestEasyIce, kParallel},
};

OmCableSettingsPanel::OmCableSettingsPanel(wxWindow* parent) : wxPanel(parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* label = new wxStaticText(this, wxID_ANY, _("Connec&tion:"));
    row->Add(label, wxSizerFlags().CentreVertical().Border(wxRIGHT));
    connection_ = new wxChoice(this, wxID_ANY);
    for (const Connection& connection : kConnections)
        connection_->Append(Translated(GetCableLabel(connection.type)));
    connection_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { ShowPage(); });
    row->Add(connection_, wxSizerFlags(1));
    column->Add(row, RowFlags());
    BuildPages();
    AlignLabels(*label);
    column->Add(book_, RowFlags(1));
    SetSizer(column);
}

void OmCableSettingsPanel::BuildPages() {
    book_ = new wxSimplebook(this, wxID_ANY);
    const auto recheck = [this] { ShowPage(); };
    pages_ = {new OmParallelPage(book_),          ftd2xxPage_ = new OmFtd2xxPage(book_, recheck),
              new OmJLinkUsbPage(book_),          new OmJLinkIpPage(book_),
              new OmDigilentPage(book_, recheck), new OmUsbBlasterPage(book_, recheck)};
    for (OmCablePage* page : pages_)
        book_->AddPage(page, wxString());
    errorText_ = new wxTextCtrl(book_, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                wxTE_MULTILINE | wxTE_READONLY);
    IndentText(*errorText_);
    book_->AddPage(errorText_, wxString());
}

void OmCableSettingsPanel::AlignLabels(wxStaticText& own) {
    int width = own.GetBestSize().x;
    for (const OmCablePage* page : pages_)
        width = std::max(width, page->GetLabelWidth());
    own.SetMinSize(wxSize(width, -1));
    for (OmCablePage* page : pages_)
        page->SetLabelWidth(width);
}

const OmCableSettingsPanel::Connection& OmCableSettingsPanel::GetChosenConnection() const {
    return kConnections[connection_->GetSelection()];
}

void OmCableSettingsPanel::ShowPage() {
    const size_t page = GetChosenConnection().page;
    wxString error;
    if (pages_[page]->Check(settings_, error)) {
        book_->ChangeSelection(page);
    } else {
        errorText_->ChangeValue(error);
        book_->ChangeSelection(kPageCount);
    }
    Layout();
}

bool OmCableSettingsPanel::IsShown(size_t page) const {
    return book_->GetSelection() == static_cast<int>(page);
}

bool OmCableSettingsPanel::IsAdaptiveWarningAnswered() const {
    return ftd2xxPage_->adaptiveWarningAnswered;
}

bool OmCableSettingsPanel::TransferDataToWindow() {
    if (!wxPanel::TransferDataToWindow())
        return false;
    for (OmCablePage* page : pages_)
        page->ShowSettings(settings_);
    for (size_t row = 0; row < std::size(kConnections); ++row)
        if (kConnections[row].type == settings_.cableType)
            connection_->SetSelection(static_cast<int>(row));
    ShowPage();
    return true;
}

// Every page is read: a cable's parameters stay while another cable is used.
bool OmCableSettingsPanel::TransferDataFromWindow() {
    if (!wxPanel::TransferDataFromWindow())
        return false;
    settings_.cableType = GetChosenConnection().type;
    for (const Page page : {kParallel, kFtd2xx, kDigilent, kJLinkUsb, kJLinkIp, kUsbBlaster})
        if (!pages_[page]->Read(settings_, IsShown(page)))
            return false;
    return true;
}
