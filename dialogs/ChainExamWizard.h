// Finds out what is on the JTAG chain, in two pages: the connection, then the result. What was
// found is for the owner to apply, and only if the wizard was finished; the connection takes effect
// at once.
#pragma once

#include "dialogs/ChainExamResult.h"

#include <wx/wizard.h>

class OmCableWizardPage;

class OmChainExamWizard : public wxWizard, public OmChainExamResult {
  public:
    explicit OmChainExamWizard(wxWindow* parent);

    // True when finished with the last page.
    bool RunWizard();

  private:
    OmCableWizardPage* firstPage_ = nullptr;
};
