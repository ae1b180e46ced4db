// One page of the connection settings: the parameters of one kind of cable.
#pragma once

#include "jtag/ConnectionSettings.h"
#include "widgets/DialogLayout.h"

#include <functional>
#include <vector>
#include <wx/panel.h>

class wxButton;
class wxChoice;
class wxGridBagSizer;

class OmCablePage : public wxPanel {
  public:
    using wxPanel::wxPanel;

    // Looks what the machine has and fills the lists, with what `settings` name selected. False,
    // with the text that the user gets to see instead of the page, if a driver or library is
    // missing.
    virtual bool Check(const OmConnectionSettings& settings, wxString& error) = 0;

    // Shows what needs no look at the machine.
    virtual void ShowSettings(const OmConnectionSettings&) {}

    // Takes over what was entered. What is wrong leaves the settings as they were, and is told,
    // with false, only if this is the page that the user sees.
    virtual bool Read(OmConnectionSettings& settings, bool isShown) = 0;

    // The user has said Yes to the warning about adaptive clocking, so that it need not come again.
    virtual bool IsAdaptiveWarningAnswered() const { return false; }

    // What the widest label needs, and the width that all labels get, so that the controls of all
    // pages stand in one column.
    int GetLabelWidth() const;
    void SetLabelWidth(int width);

  protected:
    // A row begins with its label, so that the keyboard meets it first, ...
    void BeginRow(const wxString& label);
    // ... and ends with its control and what stands beside it, if anything.
    void EndRow(wxWindow* control, wxWindow* trailing = nullptr);
    wxButton* MakeButton(const wxString& label, std::function<void()> action);
    wxChoice* MakeChoice(const wxArrayString& entries = wxArrayString());

    // The end of Read at something wrong; an empty text says nothing.
    static bool Refuse(bool isShown, wxWindow& control, const wxString& text);

  private:
    wxGridBagSizer* rows_ = nullptr;
    std::vector<wxStaticText*> labels_;
};

// Replaces the entries; without any, the choice is disabled and shows `hint`.
void FillChoice(wxChoice& choice, const wxArrayString& entries, const wxString& hint);

// Index of the selected entry of an enabled choice, or -1.
int GetSelected(const wxChoice& choice);
