// The page of the setup dialog that connects flash pins to pins of the chain.
#pragma once

#include "dialogs/PinsPage.h"

class wxStaticText;

class OmSignalPinsPage : public OmPinsPage {
  public:
    OmSignalPinsPage(wxWindow* parent, OmSetupSession& session);

  protected:
    std::vector<OmPinRow> MakeRows() const override;
    void ShowSelection() override;
    void Apply() override;
    void Remove() override;
    void Enter() override;
    std::wstring FormatRows(const std::vector<int>& rows) const override;
    void PasteText(const std::wstring& text) override;

  private:
    void AddEditor(wxSizer* column);
    void AddButtons(wxSizer* column);
    void ShowRow(int row);
    void ShowLevel(int row);
    bool Store();
    void Fill();

    int shownRow_ = -1; // whose pin the controls show
    wxStaticText* name_ = nullptr;
    wxChoice* level_ = nullptr;
    wxButton* apply_ = nullptr;
    wxButton* remove_ = nullptr;
    wxButton* fill_ = nullptr;
};
