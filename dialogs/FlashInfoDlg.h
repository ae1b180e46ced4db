// Shows the report on the flash.
#pragma once

#include <string>
#include <wx/dialog.h>

class OmFlashInfoDlg : public wxDialog {
  public:
    OmFlashInfoDlg(wxWindow* parent, const std::wstring& html);
};
