// The two pages of the chain wizard.
#pragma once

#include <wx/wizard.h>

class OmCableSettingsPanel;
class OmChainExamWizard;
class wxHtmlWindow;
class wxSizer;
class wxSpinCtrl;
class wxStaticBoxSizer;
class wxStaticText;

// The connection. Next opens it anew, and stays here if that fails.
class OmCableWizardPage : public wxWizardPageSimple {
  public:
    explicit OmCableWizardPage(OmChainExamWizard* wizard);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    OmChainExamWizard* wizard_;
    OmCableSettingsPanel* panel_;
};

// Examines the chain when it is shown. Without a chain there is no way on.
class OmChainWizardPage : public wxWizardPageSimple {
  public:
    explicit OmChainWizardPage(OmChainExamWizard* wizard);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    void BuildHiddenGroup(wxSizer* column);
    void EnableNext(bool enable);
    void ShowHiddenGroup(bool show, const wxString& label);

    OmChainExamWizard* wizard_;
    wxHtmlWindow* report_ = nullptr;
    wxStaticBoxSizer* hiddenGroup_ = nullptr; // about devices that cannot be detected
    wxStaticText* label_ = nullptr;
    wxSpinCtrl* precedingCount_ = nullptr;
};
