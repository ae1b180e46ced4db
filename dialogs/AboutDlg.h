// Says what the program is and where to find more about it.
#pragma once

#include <wx/dialog.h>

class wxSizer;
class wxStaticText;

class OmAboutDlg : public wxDialog {
  public:
    explicit OmAboutDlg(wxWindow* parent);

    void SetTexts(const wxString& name, const wxString& version, const wxString& rights);

  private:
    wxStaticText* AddLine(wxSizer* column, const wxString& placeholder);
    void AddWebsite(wxSizer* column);

    wxStaticText* name_ = nullptr;
    wxStaticText* version_ = nullptr;
    wxStaticText* rights_ = nullptr;
};
