#include "dialogs/AboutDlg.h"

#include "widgets/DialogLayout.h"
#include "widgets/Icons.h"
#include "widgets/Product.h"

#include <wx/button.h>
#include <wx/hyperlink.h>
#include <wx/panel.h>
#include <wx/statbmp.h>
#include <wx/statline.h>
#include <wx/stattext.h>

OmAboutDlg::OmAboutDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("About")) {
    auto* panel = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE);
    auto* pictureSizer = new wxBoxSizer(wxVERTICAL);
    pictureSizer->Add(new wxStaticBitmap(panel, wxID_ANY, GetAboutPicture()));
    panel->SetSizer(pictureSizer);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(panel, wxSizerFlags().CentreHorizontal()); // texts may be wider than the picture
    column->Add(new wxStaticLine(this), wxSizerFlags().Expand().DoubleBorder(wxBOTTOM));
    name_ = AddLine(column, _("name"));
    name_->SetFont(name_->GetFont().MakeLarger().MakeBold());
    version_ = AddLine(column, _("version"));
    rights_ = AddLine(column, _("C 0000-0000 CompanyName. All rights reserved."));
    AddWebsite(column);
    auto* ok = new wxButton(this, wxID_OK, _("&OK"));
    ok->SetDefault();
    column->Add(ok, wxSizerFlags().CentreHorizontal().DoubleBorder());
    SetSizerAndFit(column);
    SetEscapeId(wxID_OK);
    ok->SetFocus();
}

wxStaticText* OmAboutDlg::AddLine(wxSizer* column, const wxString& placeholder) {
    auto* line = new wxStaticText(this, wxID_ANY, placeholder);
    column->Add(line, wxSizerFlags().CentreHorizontal().Border(wxLEFT | wxRIGHT | wxBOTTOM));
    return line;
}

void OmAboutDlg::AddWebsite(wxSizer* column) {
    auto* link = new wxHyperlinkCtrl(this, wxID_ANY, kWebsiteUrl, kWebsiteUrl);
    column->Add(link, wxSizerFlags().CentreHorizontal().Border(wxLEFT | wxRIGHT));
}

void OmAboutDlg::SetTexts(const wxString& name, const wxString& version, const wxString& rights) {
    name_->SetLabel(name);
    version_->SetLabel(version);
    rights_->SetLabel(rights);
    GetSizer()->SetSizeHints(this);
    CentreOnParent();
}
