// What the dialogs are built from: groups, rows of a label, a box and a unit, button rows; and how
// a dialog refuses what was typed.
#pragma once

#include <functional>
#include <string>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/translation.h>

class wxHyperlinkCtrl;
class wxPanel;
class wxStaticText;
class wxTextCtrl;
class wxWindow;

// Shows a warning, puts the focus into `control` and answers false, so that a validation can end
// with it.
bool RefuseInput(wxWindow& control, const wxString& text);

// One text box with the words around it.
struct OmTextRow {
    wxStaticText* label = nullptr;
    wxTextCtrl* box = nullptr;
    wxStaticText* unit = nullptr;

    void Enable(bool enable) const;
    std::wstring GetText() const;
};

// A frame around rows, with a title or without.
struct OmGroup {
    wxWindow* box; // parent of the controls
    wxSizer* rows;
};

// Adds a group to `column`, in which it takes `proportion` of the height that is left.
OmGroup AddGroup(wxWindow* parent, wxSizer* column, const wxString& title, int proportion = 1);

// A border for a control that draws none itself: make it a child of the frame, and fill that with
// it.
wxPanel* MakeFrame(wxWindow* parent);
void FillFrame(wxPanel* frame, wxWindow* child);

// A grid of text rows, to be filled with AddTextRow.
wxFlexGridSizer* MakeTextRows();

// `label` comes directly before its box, so that its mnemonic leads there.
OmTextRow AddTextRow(wxWindow* parent, wxFlexGridSizer* rows, const wxString& label,
                     const wxString& unit);

// A box and its unit in a row of their own, below the check box or radio button they belong to.
OmTextRow AddIndentedBox(wxWindow* parent, wxSizer* column, const wxString& unit);

// A line of text that the user can select but not change. `characters` is its least width.
wxTextCtrl* MakeReadOnlyLine(wxWindow* parent, unsigned characters);

// Shows a text in such a line, and beside the mouse if it may be too long for the line.
void ShowLine(wxTextCtrl& line, const wxString& text);

// Keeps the text of a box of several lines off its edge. Call it before the text is set.
void IndentText(wxTextCtrl& box);

// A link that runs `action` and opens nothing.
wxHyperlinkCtrl* MakeLink(wxWindow* parent, const wxString& label, std::function<void()> action);

// A font whose columns align, in the size that `window` has.
void UseFixedPitch(wxWindow& window);

// Room for `columns` characters in `lines` lines of the window's font.
wxSize MeasureText(const wxWindow& window, unsigned columns, unsigned lines);

// The host's order of the OK and Cancel buttons with these labels.
wxSizer* MakeOkCancelRow(wxWindow* parent, const wxString& okLabel,
                         const wxString& cancelLabel = _("&Cancel"));

// The same with a Help button, which runs `showHelp`.
wxSizer* MakeOkCancelHelpRow(wxWindow* parent, std::function<void()> showHelp);

// A "Close" button that Escape presses too.
wxSizer* MakeCloseRow(wxWindow* parent);

// What a click on a dialog's Close or Cancel button does.
void PressCancel(wxDialog& dialog);

// Puts the content, made of rows with borders, above the buttons, fits the dialog and centres it
// over its parent.
void LayOutDialog(wxDialog* dialog, wxSizer* content, wxSizer* buttons);

// The whole width, with the border that the host uses.
wxSizerFlags RowFlags(int proportion = 0);

// Adds `row` below the check box or radio button it belongs to, and shows that by an indent.
void AddIndented(wxSizer* column, wxSizer* row);
void AddIndented(wxSizer* column, wxWindow* row);
