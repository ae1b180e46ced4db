#include "dialogs/ChainExamWizard.h"

#include "dialogs/ChainWizardPages.h"
#include "widgets/Help.h"
#include "widgets/Icons.h"

OmChainExamWizard::OmChainExamWizard(wxWindow* parent) {
    SetExtraStyle(wxWIZARD_EX_HELPBUTTON); // looked at by Create
    Create(parent, wxID_ANY, _("Examine the JTAG Chain"), GetWizardPicture(), wxDefaultPosition,
           wxCAPTION | wxSYSTEM_MENU | wxCLOSE_BOX | wxRESIZE_BORDER);
    firstPage_ = new OmCableWizardPage(this, *this);
    auto* chainPage = new OmChainWizardPage(this, *this);
    firstPage_->Chain(chainPage);
    // Both pages, so that neither is cut and the wizard does not change its size.
    GetPageAreaSizer()->Add(firstPage_);
    GetPageAreaSizer()->Add(chainPage);
    Bind(wxEVT_WIZARD_HELP, [](wxWizardEvent&) { ShowHelpTopic("welcome.htm"); });
}

bool OmChainExamWizard::RunWizard() {
    return wxWizard::RunWizard(firstPage_);
}
