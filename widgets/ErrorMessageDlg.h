// A message with a box of details below it, for failures whose full account is longer than a
// message box should be.
#pragma once

#include <wx/dialog.h>

class wxTextCtrl;

class OmErrorMessageDlg : public wxDialog {
  public:
    // `message` and `details` are set before ShowModal.
    OmErrorMessageDlg(wxWindow* parent, const wxString& title);

    wxString message;
    wxString details;

    bool TransferDataToWindow() override;

  private:
    wxSizer* BuildMessageRow();
    wxTextCtrl* BuildDetailsBox();
};
