// Edits the sector groups of a flash chip that cannot tell them itself.
#pragma once

#include "setup/SectorLayout.h"
#include "widgets/DialogLayout.h"

class wxButton;
class wxListBox;

class OmEditSectorsDlg : public wxDialog {
  public:
    explicit OmEditSectorsDlg(wxWindow* parent);

    OmFlashSectorLayout layout; // worked on

    bool TransferDataToWindow() override;

  private:
    using Action = void (OmEditSectorsDlg::*)();

    void BuildGroups(wxSizer* content);
    wxSizer* BuildButtons(wxWindow* parent);
    wxButton* AddButton(wxWindow* parent, wxSizer* column, const wxString& label, Action action);

    void Add();
    void Modify();
    void Remove();
    void MoveUp();
    void MoveDown();
    // `upper` and the group behind it; the selection follows to `place` unless groups merged.
    void SwapGroups(int upper, int place);

    bool ReadFields(OmSectorGroup& group);
    int GetSelectedRow() const;
    bool IsLastRow(int row) const;
    void Redraw(int selectedRow);
    void ShowSelectedRow();
    void EnableButtons(int row);

    OmTextRow countRow_;
    OmTextRow sizeRow_;
    wxListBox* list_ = nullptr;
    wxButton* modify_ = nullptr;
    wxButton* remove_ = nullptr;
    wxButton* up_ = nullptr;
    wxButton* down_ = nullptr;
    wxTextCtrl* table_ = nullptr;
};
