#include "tests/monkey/Hands.h"

#include "tests/monkey/Inputs.h"
#include "tests/windows/support/UserActions.h"

#include <wx/bookctrl.h>
#include <wx/checklst.h>
#include <wx/htmllbox.h>
#include <wx/hyperlink.h>
#include <wx/listctrl.h>
#include <wx/spinctrl.h>
#include <wx/uiaction.h>
#include <wx/wx.h>

namespace {

using Deed = std::string (*)(wxWindow&, Dice&);

void Send(wxWindow& window, wxEventType type, int value) {
    wxCommandEvent event(type, window.GetId());
    event.SetEventObject(&window);
    event.SetInt(value);
    window.GetEventHandler()->ProcessEvent(event);
}

// A row of a list, or none.
int SomeRow(unsigned count, Dice& dice) {
    return static_cast<int>(dice.Below(count + 1)) - 1;
}

std::string Shortened(const wxString& text) {
    return "\"" + text.Left(40).ToStdString(wxConvUTF8) + "\"";
}

std::string Paste(wxWindow& window, Dice& dice) {
    auto* box = dynamic_cast<wxTextCtrl*>(&window);
    if (!box || !box->IsEditable())
        return {};
    const wxString text = PickText(dice);
    box->SetValue(text);
    return "types " + Shortened(text);
}

std::string TickRow(wxWindow& window, Dice& dice) {
    auto* list = dynamic_cast<wxCheckListBox*>(&window);
    if (!list || list->GetCount() == 0)
        return {};
    const unsigned row = dice.Below(list->GetCount());
    list->Check(row, !list->IsChecked(row));
    Send(*list, wxEVT_CHECKLISTBOX, static_cast<int>(row));
    return "ticks row " + std::to_string(row);
}

std::string SelectListRow(wxWindow& window, Dice& dice) {
    auto* list = dynamic_cast<wxListBox*>(&window);
    if (!list)
        return {};
    const int row = SomeRow(list->GetCount(), dice);
    list->SetSelection(row);
    Send(*list, dice.OneIn(6) && row >= 0 ? wxEVT_LISTBOX_DCLICK : wxEVT_LISTBOX, row);
    return "selects row " + std::to_string(row);
}

std::string ChooseEntry(wxWindow& window, Dice& dice) {
    auto* choice = dynamic_cast<wxChoice*>(&window);
    if (!choice || choice->GetCount() == 0)
        return {};
    const int row = static_cast<int>(dice.Below(choice->GetCount()));
    choice->SetSelection(row);
    Send(*choice, wxEVT_CHOICE, row);
    return "chooses " + Shortened(choice->GetString(static_cast<unsigned>(row)));
}

std::string Toggle(wxWindow& window, Dice&) {
    auto* check = dynamic_cast<wxCheckBox*>(&window);
    if (!check)
        return {};
    check->SetValue(!check->GetValue());
    Send(*check, wxEVT_CHECKBOX, check->GetValue());
    return "clicks " + Shortened(check->GetLabel());
}

std::string ChooseRadio(wxWindow& window, Dice&) {
    auto* radio = dynamic_cast<wxRadioButton*>(&window);
    if (!radio)
        return {};
    radio->SetValue(true);
    Send(*radio, wxEVT_RADIOBUTTON, 1);
    return "clicks " + Shortened(radio->GetLabel());
}

std::string Spin(wxWindow& window, Dice& dice) {
    auto* spin = dynamic_cast<wxSpinCtrl*>(&window);
    if (!spin)
        return {};
    spin->SetValue(static_cast<int>(dice.Throw()));
    Send(*spin, wxEVT_SPINCTRL, spin->GetValue());
    return "spins to " + std::to_string(spin->GetValue());
}

std::string SelectItem(wxWindow& window, Dice& dice) {
    auto* list = dynamic_cast<wxListCtrl*>(&window);
    if (!list || list->GetItemCount() == 0)
        return {};
    const long row = static_cast<long>(dice.Below(static_cast<size_t>(list->GetItemCount())));
    const bool select = !dice.OneIn(3);
    list->SetItemState(row, select ? wxLIST_STATE_SELECTED : 0, wxLIST_STATE_SELECTED);
    return "selects item " + std::to_string(row);
}

// A list that is drawn row by row.
std::string SelectDrawnRow(wxWindow& window, Dice& dice) {
    auto* list = dynamic_cast<wxVListBox*>(&window);
    if (!list || dice.OneIn(3))
        return {};
    const int row = SomeRow(static_cast<unsigned>(list->GetItemCount()), dice);
    list->SetSelection(row);
    Send(*list, wxEVT_LISTBOX, row);
    return "selects row " + std::to_string(row);
}

// Links of the list of chain devices: those that it shows, and some that it does not.
std::string FollowChainLink(wxWindow& window, Dice& dice) {
    static constexpr const char* kPrefixes[] = {"bsdl_", "pinmap_", "irlen_", "bsdl", "", "x_"};
    static constexpr const char* kDevices[] = {"0",  "1", "2",           "3", "",
                                               "-1", "x", "99999999999", "1x"};
    auto* list = dynamic_cast<wxHtmlListBox*>(&window);
    if (!list)
        return {};
    const std::string target = std::string(dice.Pick(kPrefixes)) + dice.Pick(kDevices);
    wxHtmlLinkEvent event(list->GetId(), wxHtmlLinkInfo(target));
    event.SetEventObject(list);
    list->GetEventHandler()->ProcessEvent(event);
    return "follows " + target;
}

// What is typed into a table acts on its rows.
std::string PressListKey(wxWindow& window, Dice& dice) {
    struct Key {
        int code;
        int modifiers;
    };

    static constexpr Key kKeys[] = {{WXK_DELETE, wxMOD_NONE}, {WXK_RETURN, wxMOD_NONE},
                                    {'A', wxMOD_CONTROL},     {'C', wxMOD_CONTROL},
                                    {'V', wxMOD_CONTROL},     {'X', wxMOD_CONTROL},
                                    {'Z', wxMOD_CONTROL},     {WXK_DOWN, wxMOD_SHIFT}};
    if (!dynamic_cast<wxListCtrl*>(&window) || !dice.OneIn(2))
        return {};
    const Key& key = dice.Pick(kKeys);
    window.SetFocus();
    wxUIActionSimulator().Char(key.code, key.modifiers);
    return "presses key " + std::to_string(key.code);
}

std::string TurnPage(wxWindow& window, Dice& dice) {
    auto* book = dynamic_cast<wxBookCtrlBase*>(&window);
    if (!book || book->GetPageCount() == 0)
        return {};
    const size_t page = dice.Below(book->GetPageCount());
    book->SetSelection(page);
    return "turns to page " + std::to_string(page);
}

std::string FollowLink(wxWindow& window, Dice&) {
    auto* link = dynamic_cast<wxHyperlinkCtrl*>(&window);
    if (!link)
        return {};
    wxHyperlinkEvent event(link, link->GetId(), link->GetURL());
    link->GetEventHandler()->ProcessEvent(event);
    return "follows " + Shortened(link->GetLabel());
}

bool EndsDialog(int id) {
    return id == wxID_OK || id == wxID_CANCEL || id == wxID_YES || id == wxID_NO;
}

std::string Press(wxWindow& window, Dice&) {
    auto* button = dynamic_cast<wxAnyButton*>(&window);
    if (!button || EndsDialog(button->GetId()))
        return {};
    const std::string deed = "presses " + Shortened(button->GetLabel());
    Send(*button, wxEVT_BUTTON, 0);
    return deed;
}

constexpr Deed kDeeds[] = {Paste,       TickRow,  SelectListRow, SelectDrawnRow, FollowChainLink,
                           ChooseEntry, Toggle,   ChooseRadio,   Spin,           PressListKey,
                           SelectItem,  TurnPage, FollowLink,    Press};

std::vector<wxWindow*> UsableControls(wxWindow& dialog) {
    std::vector<wxWindow*> controls;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        if (window.IsEnabled() && window.IsShownOnScreen())
            controls.push_back(&window);
    });
    return controls;
}

void PressEscape(wxDialog& dialog) {
    wxKeyEvent escape(wxEVT_CHAR_HOOK);
    escape.m_keyCode = WXK_ESCAPE;
    escape.SetEventObject(&dialog);
    dialog.GetEventHandler()->ProcessEvent(escape);
}

// A button of the dialog that ends it; null if there is none with that id.
wxWindow* FindUsable(wxDialog& dialog, int id) {
    wxWindow* button = dialog.FindWindow(id);
    return button && button->IsEnabled() && button->IsShownOnScreen() ? button : nullptr;
}

} // namespace

std::string PlayWithSomeControl(wxDialog& dialog, Dice& dice) {
    std::vector<wxWindow*> controls = UsableControls(dialog);
    if (controls.empty())
        return {};
    wxWindow& control = *dice.Pick(controls);
    for (const Deed deed : kDeeds)
        if (std::string what = deed(control, dice); !what.empty())
            return what;
    return {};
}

std::string TryToEnd(wxDialog& dialog, Dice& dice) {
    static constexpr int kButtons[] = {wxID_OK,      wxID_OK,     wxID_OK,  wxID_OK,
                                       wxID_FORWARD, wxID_CANCEL, wxID_YES, wxID_NO};
    switch (dice.Below(8)) {
    case 0:
        PressEscape(dialog);
        return "presses Escape";
    case 1:
        dialog.Close();
        return "closes it";
    case 2:
        wxUIActionSimulator().Char(WXK_RETURN);
        return "presses Enter";
    default:
        break;
    }
    wxWindow* button = FindUsable(dialog, dice.Pick(kButtons));
    if (!button)
        return "finds no button";
    const std::string deed = "presses " + Shortened(button->GetLabel());
    Send(*button, wxEVT_BUTTON, 0);
    return deed;
}

void Cancel(wxDialog& dialog) {
    PressEscape(dialog);
    if (wxWindow* button = dialog.IsModal() ? FindUsable(dialog, wxID_CANCEL) : nullptr)
        Send(*button, wxEVT_BUTTON, 0);
    if (wxWindow* button = dialog.IsModal() ? FindUsable(dialog, wxID_NO) : nullptr)
        Send(*button, wxEVT_BUTTON, 0);
}
