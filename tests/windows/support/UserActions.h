// What a user does: waits, chooses commands, presses buttons, types. Each action first checks that
// the user could do it at all.
#pragma once

#include <functional>
#include <wx/string.h>

class wxFrame;
class wxMenuItem;
class wxWindow;

// Runs the event loop until `predicate` holds; false if it does not within the time.
bool WaitFor(const std::function<bool()>& predicate, int milliseconds = 2000);

// Runs the event loop until nothing is pending, idle events included.
void SettleEvents();

// The same as the program's main loop does it: a command that a key or a click starts here can let
// events run in its turn, as flash work does to be aborted.
void RunEvents();

// Chooses a menu command; fails the test if there is none with this id or if it is disabled.
void ChooseMenu(wxFrame& frame, int id);

// After an update as the toolkit does it when a menu opens.
bool IsMenuEnabled(wxFrame& frame, int id);

// Presses a button inside `parent`, found by its id or by its label; fails the test if it is not
// there or disabled.
void PressButton(wxWindow& parent, int id);
void PressButton(wxWindow& parent, const wxString& label);

// A descendant by its label or window class; null if there is none.
wxWindow* FindByLabel(wxWindow& parent, const wxString& label);

template <typename Control>
Control* FindByClass(wxWindow& parent, unsigned index = 0);

// Gives a control a new value as typing would, so that its events are sent.
void TypeText(wxWindow& parent, int id, const wxString& text);

// Moves the pointer onto a window. Without a window manager it decides where typed keys go.
void PointAt(wxWindow& window);

// A key press through the window's own handlers.
void PressKey(wxWindow& window, int keyCode);

// Writes what the screen shows of a window, its title bar included, to a PNG file in the screen's
// own pixels. False if no picture could be taken.
bool SaveScreenshot(wxWindow& window, const wxString& path);

// The same as <name>.png in the folder that the environment variable OM_SCREENSHOTS names; does
// nothing without it.
void TakeScreenshot(wxWindow& window, const std::string& name);

// Every descendant in creation order.
void ForEachDescendant(wxWindow& parent, const std::function<void(wxWindow&)>& visit);

template <typename Control>
Control* FindByClass(wxWindow& parent, unsigned index) {
    Control* found = nullptr;
    ForEachDescendant(parent, [&](wxWindow& window) {
        auto* candidate = dynamic_cast<Control*>(&window);
        if (candidate && !found && index-- == 0)
            found = candidate;
    });
    return found;
}
