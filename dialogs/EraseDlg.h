// Asks what to erase: the whole flash, the sectors that the data needs, or selected ones.
#pragma once

#include "jobs/ErasePlan.h"

#include <cstdint>
#include <string>
#include <wx/dialog.h>

class OmDataImage;
class wxButton;
class wxRadioButton;
class wxSizer;
class wxTextCtrl;

class OmEraseDlg : public wxDialog {
  public:
    explicit OmEraseDlg(wxWindow* parent);

    // `sectorMap` is not owned and may be empty. `dataOffset` is how far the image will be moved.
    void Initialise(OmEraseMode newMode, const OmFlashSectorLayout& sectorMap, uint32_t chipCount,
                    const OmDataImage& dataImage, uint32_t dataOffset,
                    const OmSectorRange& selection);

    OmEraseMode mode = OmEraseMode::EntireFlash;
    const OmFlashSectorLayout* sectorMap = nullptr;
    uint32_t chipCount = 1;
    std::wstring sectorsForData;   // empty: no data, or unknown sectors
    OmSectorRange selectedSectors; // indexes

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    wxRadioButton* AddRadio(wxWindow* parent, wxSizer* column, const wxString& label, long style);
    void BuildSelectRow(wxWindow* parent, wxSizer* column);
    void DisableDataSectors(const wxString& reason);
    void ChooseMode();
    void ShowSelection();
    void UpdateEnabled();
    void SelectSectors();

    wxRadioButton* entireRadio_ = nullptr;
    wxRadioButton* dataRadio_ = nullptr;
    wxRadioButton* selectedRadio_ = nullptr;
    wxTextCtrl* dataText_ = nullptr;
    wxButton* selectButton_ = nullptr;
    wxTextCtrl* selectedText_ = nullptr;
};
