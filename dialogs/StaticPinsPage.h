// The page of the setup dialog with the pins that are held at a level.
#pragma once

#include "dialogs/PinsPage.h"

class OmStaticPinsPage : public OmPinsPage {
  public:
    OmStaticPinsPage(wxWindow* parent, OmSetupSession& session);

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
    void AddNote(wxSizer* column);
    void AddButtons(wxSizer* column);
    void Add();
    bool Append();
    bool StoreIn(int row);
    uint8_t GetValue() const;
    // What was entered; nothing after a warning. `row` is the one it is for, -1 for a new one.
    std::optional<StaticPin> ReadControls(int row) const;

    wxChoice* value_ = nullptr;
    wxTextCtrl* note_ = nullptr;
    wxButton* apply_ = nullptr;
    wxButton* remove_ = nullptr;
    int shownRow_ = -1;
};
