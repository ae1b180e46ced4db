// The check box "ignore the data view contents address" with its address box, as several actions
// offer it.
#pragma once

#include "widgets/DialogLayout.h"

#include <cstdint>

class wxCheckBox;

// What most actions say of a checked box without an address, and of one that is none.
wxString EmptyNewStartWarning();
wxString InvalidAddressWarning();

class OmNewStartControls {
  public:
    struct Texts {
        wxString check;
        wxString unit;
        wxString emptyWarning;   // checked, and no address
        wxString invalidWarning; // checked, and not an address
    };

    OmNewStartControls(wxWindow* parent, wxSizer* column, const Texts& texts);
    OmNewStartControls(const OmNewStartControls&) = delete;
    OmNewStartControls& operator=(const OmNewStartControls&) = delete;

    void Show(bool checked, uint32_t start);
    void SetFocus() const;

    // For a dialog where something else decides whether the check box can be used at all: then the
    // unit follows that, and only the box follows the check.
    void EnableAll(bool enable);

    bool IsChecked() const;

    // Takes over the check, and the address if it is on; false after a warning.
    bool Read(bool& checked, uint32_t& start) const;

    // The address as it is now, without a word about a wrong one.
    bool Peek(uint32_t& start) const;

  private:
    void UpdateEnabled();

    wxCheckBox* check_ = nullptr;
    OmTextRow address_;
    wxString emptyWarning_;
    wxString invalidWarning_;
    bool unitFollowsCheck_ = true;
};
