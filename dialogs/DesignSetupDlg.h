// Edits a setup: the chain, the flash array, and the pins between them. Works on a copy, which
// counts only after wxID_OK.
#pragma once

#include "setup/SetupSession.h"
#include "widgets/DialogLayout.h"

#include <vector>

class OmFlashArrayPage;
class OmSetupChainPage;
class OmSignalPinsPage;
class OmStaticPinsPage;
class wxNotebook;

class OmDesignSetupDlg : public wxDialog {
  public:
    explicit OmDesignSetupDlg(wxWindow* parent);

    OmDesignSetup setup; // in and out; in whatever state after a cancel

    // Replaces the chain by one device an IDCODE (empty for a device without one). Asks first if
    // that costs pins.
    void ApplyChain(const std::vector<OmBitVector>& devices, const OmBitVector& irBits);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    void BuildPages();
    void OnKey(wxKeyEvent& event);
    void ShowChangedChain(const OmDroppedPins& dropped);
    void ShowChangedPins();
    bool ConfirmWhatIsOdd();
    void MarkPage(wxWindow* page);

    OmSetupSession session_;
    wxNotebook* notebook_ = nullptr;
    OmSetupChainPage* chain_ = nullptr;
    OmFlashArrayPage* flashArray_ = nullptr;
    OmSignalPinsPage* signals_ = nullptr;
    OmStaticPinsPage* statics_ = nullptr;
};
