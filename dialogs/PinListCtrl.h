// A table of pins: as many rows as there are pins, drawn from a list of texts, so that a thousand
// rows cost no more than those that are seen. Rows in conflict stand out.
#pragma once

#include "setup/PinRowTexts.h"

#include <span>
#include <vector>
#include <wx/listctrl.h>

struct OmPinRow {
    OmPinRowTexts texts;
    bool isConnected = false;
    bool isInConflict = false; // the device pin carries another signal too
    bool isFaulty = false;     // the device pin cannot do what the row needs
};

struct OmPinColumn {
    wxString label;
    int width; // pixels at 96 dpi
};

class OmPinListCtrl : public wxListCtrl {
  public:
    OmPinListCtrl(wxWindow* parent, std::span<const OmPinColumn> columns);

    // Selected rows stay selected as far as there still are as many.
    void ShowRows(std::vector<OmPinRow> rows);

    std::vector<int> GetSelectedRows() const;

    // The only selected row; -1 if there is none or more than one.
    int GetSelectedRow() const;

    // Selects this row alone and brings it into view; -1 for none. Tells it as a click does.
    void SelectOnly(int row);
    void SelectAll();

    // Colours of a row, for a light theme or a dark one.
    wxColour GetRowBackground(int row) const;
    wxColour GetRowTextColour(int row) const;

  protected:
    wxString OnGetItemText(long row, long column) const override;
    wxItemAttr* OnGetItemAttr(long row) const override;

  private:
    std::vector<OmPinRow> rows_;
    mutable wxItemAttr attributes_; // of the row asked for last
};
