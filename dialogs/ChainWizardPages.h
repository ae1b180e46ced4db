// The two pages of the chain wizard. The wizard and the result outlive them.
#pragma once

#include <wx/wizard.h>

class OmCableSettingsPanel;
struct OmChainExamResult;
class wxHtmlWindow;
class wxSizer;
class wxSpinCtrl;
class wxStaticBoxSizer;
class wxStaticText;

// The connection. Next opens it anew, and stays here if that fails.
class OmCableWizardPage : public wxWizardPageSimple {
  public:
    explicit OmCableWizardPage(wxWizard* wizard, OmChainExamResult& result);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    OmChainExamResult& result_;
    OmCableSettingsPanel* panel_;
};

// Examines the chain when it is shown. Without a chain there is no way on.
class OmChainWizardPage : public wxWizardPageSimple {
  public:
    explicit OmChainWizardPage(wxWizard* wizard, OmChainExamResult& result);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    void BuildHiddenGroup(wxSizer* column);
    void EnableNext(bool enable);
    void ShowHiddenGroup(bool show, const wxString& label);

    OmChainExamResult& result_;
    wxHtmlWindow* report_ = nullptr;
    wxStaticBoxSizer* hiddenGroup_ = nullptr; // about devices that cannot be detected
    wxStaticText* label_ = nullptr;
    wxSpinCtrl* precedingCount_ = nullptr;
};
