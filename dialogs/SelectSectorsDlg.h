// Lets the user tick the sectors to erase, lock or unlock.
#pragma once

#include "setup/SectorLayout.h"
#include "widgets/DialogLayout.h"

class wxButton;
class wxCheckListBox;
class wxStaticText;

enum class OmSelectSectorsMode {
    Plain = 0, // an empty selection is allowed
    Lock = 1,
    Unlock = 2,
};

class OmSelectSectorsDlg : public wxDialog {
  public:
    explicit OmSelectSectorsDlg(wxWindow* parent);

    const OmFlashSectorLayout* sectorMap = nullptr; // not owned
    uint32_t chipCount = 1;
    OmSectorRange selection; // indexes
    OmSelectSectorsMode mode = OmSelectSectorsMode::Plain;

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    wxSizer* BuildRangeRow();
    wxSizer* BuildCountRow();
    void FillList();
    void ShowMode();
    void ShowCount();
    bool ReadAddress(wxTextCtrl* box, uint32_t& address, const wxString& warning);
    void SelectRange();
    void Tick(uint32_t first, uint32_t count);
    void DeselectAll();

    wxStaticText* note_ = nullptr;
    wxTextCtrl* fromBox_ = nullptr;
    wxTextCtrl* toBox_ = nullptr;
    wxCheckListBox* list_ = nullptr;
    wxStaticText* unlistedNote_ = nullptr; // shown if the list is not complete
    wxStaticText* countText_ = nullptr;
};
