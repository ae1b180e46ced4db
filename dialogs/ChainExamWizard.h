// Finds out what is on the JTAG chain, in two pages: the connection, then the result. What was
// found is for the owner to apply, and only if the wizard was finished; the connection takes effect
// at once.
#pragma once

#include "jtag/BitVector.h"

#include <vector>
#include <wx/wizard.h>

class OmCableWizardPage;

class OmChainExamWizard : public wxWizard {
  public:
    explicit OmChainExamWizard(wxWindow* parent);

    // True when finished with the last page.
    bool RunWizard();

    std::vector<OmBitVector> devices; // IDCODEs from TDI on; empty for one added by hand
    OmBitVector irBits;               // captured instruction registers of the whole chain
    // The user has said Yes to the warning about adaptive clocking, in a wizard that was cancelled
    // too.
    bool adaptiveClockingAccepted = false;

  private:
    OmCableWizardPage* firstPage_ = nullptr;
};
