// Asks how the data is to be programmed: erase before, verify behind, and where it goes.
#pragma once

#include "dialogs/EraseDlg.h"
#include "dialogs/NewStartControls.h"

#include <optional>

class wxCheckBox;

class OmProgramDlg : public wxDialog {
  public:
    explicit OmProgramDlg(wxWindow* parent);

    // The caller sets all of them.
    bool erase = false;
    bool verify = false;
    bool ignoreAddress = false; // the data is moved to begin at `newStart`
    bool eraseDisabled = false; // in
    OmEraseMode eraseMode = OmEraseMode::EntireFlash;
    const OmFlashSectorLayout* sectorMap = nullptr; // in, not owned, may be empty
    uint32_t chipCount = 1;                         // in
    const OmDataImage* dataImage = nullptr;         // in, not owned
    OmSectorRange selectedSectors;                  // indexes
    uint32_t newStart = 0;

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    void BuildEraseControls(wxWindow* parent, wxSizer* column);
    void OnEraseChecked();
    void UpdateErase();
    wxString DescribeEraseMode() const;
    uint32_t GetDataOffset() const;
    void EditEraseOptions();

    wxCheckBox* eraseCheck_ = nullptr;
    wxButton* eraseOptions_ = nullptr;
    wxTextCtrl* eraseText_ = nullptr;
    wxCheckBox* verifyCheck_ = nullptr;
    std::optional<OmNewStartControls> newStartControls_;
};
