#include "tests/dialogs/DialogActions.h"

#include <gtest/gtest.h>
#include <map>
#include <wx/hyperlink.h>
#include <wx/listctrl.h>
#include <wx/wx.h>

namespace {

template <typename Control>
Control& Find(wxWindow& dialog, const wxString& label) {
    auto* control = dynamic_cast<Control*>(FindByLabel(dialog, label));
    if (!control)
        throw std::runtime_error("no such control: " + label.ToStdString());
    EXPECT_TRUE(control->IsShownOnScreen()) << label.ToStdString() << " is not shown";
    return *control;
}

// Behind in the order of the keyboard.
template <typename Control>
Control& FindBehind(wxWindow& dialog, const wxString& label) {
    bool passed = false;
    Control* found = nullptr;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        if (!window.IsShownOnScreen())
            return;
        auto* candidate = dynamic_cast<Control*>(&window);
        if (candidate && passed && !found)
            found = candidate;
        passed |= !dynamic_cast<wxTextCtrl*>(&window) && window.GetLabel() == label;
    });
    if (!found)
        throw std::runtime_error("no control after: " + label.ToStdString());
    return *found;
}

void ExpectUsable(const wxWindow& window, const wxString& label) {
    EXPECT_TRUE(window.IsThisEnabled()) << label.ToStdString() << " is disabled";
}

void SendCommand(wxWindow& window, wxEventType type, int value) {
    wxCommandEvent event(type, window.GetId());
    event.SetEventObject(&window);
    event.SetInt(value);
    window.GetEventHandler()->ProcessEvent(event);
}

// The letter that Alt reaches the control by; 0 if there is none.
wxChar GetMnemonic(const wxString& label) {
    wxString rest = label;
    rest.Replace("&&", "");
    const int mark = rest.Find('&');
    return mark == wxNOT_FOUND ? wxChar(0) : wxChar(wxTolower(rest[mark + 1]));
}

void ExpectUniqueMnemonics(wxWindow& dialog) {
    std::map<wxChar, std::string> owners;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        const wxString label = window.GetLabel();
        const bool hasMnemonic = !dynamic_cast<wxTextCtrl*>(&window) && window.IsShownOnScreen();
        const wxChar mnemonic = hasMnemonic ? GetMnemonic(label) : wxChar(0);
        if (mnemonic == 0)
            return;
        EXPECT_EQ(owners.count(mnemonic), 0u)
            << "\"" << label.ToStdString() << "\" and \"" << owners[mnemonic] << "\"";
        owners[mnemonic] = label.ToStdString();
    });
}

std::string Describe(const wxWindow& window) {
    return "\"" + window.GetLabel().ToStdString() + "\" (" +
           wxString(window.GetClassInfo()->GetClassName()).ToStdString() + ")";
}

void ExpectRoom(wxWindow& window) {
    const wxSize best = window.GetBestSize();
    const wxSize size = window.GetSize();
    EXPECT_GE(size.x, best.x) << window.GetLabel().ToStdString() << " is clipped";
    EXPECT_GE(size.y, best.y) << window.GetLabel().ToStdString() << " is clipped";
}

// The toolkit's own parts of a control keep rules of their own.
void ExpectInsideParent(const wxWindow& window) {
    const wxWindow& parent = *window.GetParent();
    if (dynamic_cast<const wxControl*>(&parent) && !dynamic_cast<const wxStaticBox*>(&parent))
        return;
    const wxSize room = parent.GetClientSize();
    EXPECT_LE(window.GetRect().GetRight(), room.x) << Describe(window) << " reaches beyond";
    EXPECT_LE(window.GetRect().GetBottom(), room.y) << Describe(window) << " reaches beyond";
}

bool ShowsWholeLabel(wxWindow& window) {
    return dynamic_cast<wxStaticText*>(&window) || dynamic_cast<wxAnyButton*>(&window) ||
           dynamic_cast<wxCheckBox*>(&window) || dynamic_cast<wxRadioButton*>(&window) ||
           dynamic_cast<wxHyperlinkCtrl*>(&window);
}

} // namespace

wxTextCtrl& BoxBehind(wxWindow& dialog, const wxString& label) {
    return FindBehind<wxTextCtrl>(dialog, label);
}

wxChoice& ChoiceBehind(wxWindow& dialog, const wxString& label) {
    return FindBehind<wxChoice>(dialog, label);
}

void Choose(wxWindow& dialog, const wxString& label, const wxString& entry) {
    wxChoice& choice = ChoiceBehind(dialog, label);
    ExpectUsable(choice, label);
    EXPECT_TRUE(choice.SetStringSelection(entry)) << "no entry " << entry.ToStdString();
    SendCommand(choice, wxEVT_CHOICE, choice.GetSelection());
}

std::vector<std::string> EntriesOf(const wxChoice& choice) {
    std::vector<std::string> entries;
    for (const wxString& entry : choice.GetStrings())
        entries.push_back(entry.ToStdString());
    return entries;
}

void Type(wxWindow& dialog, const wxString& label, const wxString& text) {
    wxTextCtrl& box = BoxBehind(dialog, label);
    ExpectUsable(box, label);
    box.SetValue(text);
}

std::string TextBehind(wxWindow& dialog, const wxString& label) {
    return BoxBehind(dialog, label).GetValue().ToStdString();
}

wxCheckBox& CheckBox(wxWindow& dialog, const wxString& label) {
    return Find<wxCheckBox>(dialog, label);
}

wxRadioButton& Radio(wxWindow& dialog, const wxString& label) {
    return Find<wxRadioButton>(dialog, label);
}

void ClickCheck(wxWindow& dialog, const wxString& label) {
    wxCheckBox& check = CheckBox(dialog, label);
    ExpectUsable(check, label);
    check.SetValue(!check.GetValue());
    SendCommand(check, wxEVT_CHECKBOX, check.GetValue());
}

void ClickRadio(wxWindow& dialog, const wxString& label) {
    wxRadioButton& radio = Radio(dialog, label);
    ExpectUsable(radio, label);
    radio.SetValue(true);
    SendCommand(radio, wxEVT_RADIOBUTTON, 1);
}

void ClickLink(wxWindow& dialog, const wxString& label) {
    auto& link = Find<wxHyperlinkCtrl>(dialog, label);
    ExpectUsable(link, label);
    wxHyperlinkEvent event(&link, link.GetId(), link.GetURL());
    EXPECT_TRUE(link.GetEventHandler()->ProcessEvent(event)) << "the link would open a browser";
}

void SelectRow(wxListBox& list, int row) {
    list.SetSelection(row);
    SendCommand(list, wxEVT_LISTBOX, row);
}

void SelectRow(wxListCtrl& list, long row, bool select) {
    list.SetItemState(row, select ? wxLIST_STATE_SELECTED : 0, wxLIST_STATE_SELECTED);
}

bool IsEnabled(wxWindow& dialog, const wxString& label) {
    return Find<wxControl>(dialog, label).IsThisEnabled();
}

void ExpectGoodLayout(wxWindow& dialog) {
    ExpectUniqueMnemonics(dialog);
    ForEachDescendant(dialog, [](wxWindow& window) {
        if (!window.IsShownOnScreen())
            return;
        ExpectInsideParent(window);
        if (ShowsWholeLabel(window))
            ExpectRoom(window);
    });
}
