// What the two pages with pins of the setup dialog have in common: a table, the controls that
// choose a pin for a row, the lines that tell conflicts, and the keys.
#pragma once

#include "dialogs/PinChooser.h"
#include "dialogs/PinListCtrl.h"

#include <wx/panel.h>

class wxButton;

class OmPinsPage : public wxPanel {
  public:
    // Shows the pins of the setup; the selection stays.
    void ShowPins();

    // The same after a change of the chain. `selectFirst` selects the first row alone.
    void ShowChain(bool selectFirst);

  protected:
    OmPinsPage(wxWindow* parent, OmSetupSession& session);

    using Action = void (OmPinsPage::*)();

    // --- pieces of the layout
    wxButton* AddButton(wxSizer* row, const wxString& label, Action action);
    void AddList(wxSizer* column, std::span<const OmPinColumn> columns);
    void AddConflictLines(wxSizer* column);
    void AddEditButtons(wxSizer* row);

    // --- what the pages differ in
    virtual std::vector<OmPinRow> MakeRows() const = 0;
    virtual void ShowSelection() = 0;
    virtual void Apply() = 0;
    virtual void Remove() = 0;

    // Enter in a box: takes what was entered, and makes ready for the next row.
    virtual void Enter() = 0;
    virtual std::wstring FormatRows(const std::vector<int>& rows) const = 0;
    virtual void PasteText(const std::wstring& text) = 0;

    void Copy();
    void Paste();
    void Undo();

    OmSetupSession& session_;
    OmPinChooser chooser_;
    OmPinListCtrl* list_ = nullptr;

  private:
    void OnKey(wxKeyEvent& event);
    bool OnListKey(const wxKeyEvent& event);
    bool OnListControlKey(int key);
    void EditSelected();
    void ShowConflicts();

    wxTextCtrl* error_ = nullptr;
    wxTextCtrl* details_ = nullptr;
    wxButton* undo_ = nullptr;
};
