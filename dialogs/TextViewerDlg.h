// A plain text to read, in a window that can be resized. The caller sets the title.
#pragma once

#include <wx/dialog.h>

class wxTextCtrl;

class OmTextViewerDlg : public wxDialog {
  public:
    explicit OmTextViewerDlg(wxWindow* parent);

    void SetText(const wxString& text);

    // For texts whose columns align.
    void UseFixedFont();

  private:
    wxTextCtrl* box_ = nullptr;
};
