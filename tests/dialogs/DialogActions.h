// What a user does in a dialog, with controls named by the labels that the user sees. Each action
// first checks that the user could do it at all.
#pragma once

#include "tests/windows/support/UserActions.h"

#include <string>
#include <vector>
#include <wx/string.h>

class wxCheckBox;
class wxChoice;
class wxListBox;
class wxListCtrl;
class wxRadioButton;
class wxTextCtrl;
class wxWindow;

// The first text box, or choice, that can be seen after the control with this label.
wxTextCtrl& BoxBehind(wxWindow& dialog, const wxString& label);

wxChoice& ChoiceBehind(wxWindow& dialog, const wxString& label);

// Chooses an entry.
void Choose(wxWindow& dialog, const wxString& label, const wxString& entry);

std::vector<std::string> EntriesOf(const wxChoice& choice);

// Types into the first text box after the control with this label.
void Type(wxWindow& dialog, const wxString& label, const wxString& text);

std::string TextBehind(wxWindow& dialog, const wxString& label);

wxCheckBox& CheckBox(wxWindow& dialog, const wxString& label);
wxRadioButton& Radio(wxWindow& dialog, const wxString& label);

// A click on a check box or a radio button.
void ClickCheck(wxWindow& dialog, const wxString& label);
void ClickRadio(wxWindow& dialog, const wxString& label);

// A click on a link.
void ClickLink(wxWindow& dialog, const wxString& label);

// Selects a row as a click does; wxNOT_FOUND takes the selection away.
void SelectRow(wxListBox& list, int row);

// The same in a list of columns.
void SelectRow(wxListCtrl& list, long row, bool select = true);

bool IsEnabled(wxWindow& dialog, const wxString& label);

// Every control stands inside its parent, every label has room for all that it shows, and no two
// controls answer to the same mnemonic.
void ExpectGoodLayout(wxWindow& dialog);
