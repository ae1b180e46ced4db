// Asks for the package of a device whose BSDL file describes several.
#pragma once

#include "widgets/DialogLayout.h"

#include <string>
#include <vector>

class wxChoice;

class OmPinMapDlg : public wxDialog {
  public:
    explicit OmPinMapDlg(wxWindow* parent);

    std::vector<std::string> pinMaps; // in: names as in the BSDL data
    int selected = -1;                // in and out: index, -1 for none
    wxString displayName;             // in: leads the title, such as "Dev1 (chip)"

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    wxChoice* choice_ = nullptr;
};
