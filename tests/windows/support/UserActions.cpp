#include "tests/windows/support/UserActions.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>
#include <wx/uiaction.h>
#include <wx/wx.h>

#include <wx/evtloop.h>

namespace {

void Press(wxWindow* window, const std::string& what) {
    auto* button = dynamic_cast<wxAnyButton*>(window);
    ASSERT_NE(button, nullptr) << "no button " << what;
    ASSERT_TRUE(button->IsThisEnabled()) << "button " << what << " is disabled";
    wxCommandEvent event(wxEVT_BUTTON, button->GetId());
    event.SetEventObject(button);
    button->GetEventHandler()->ProcessEvent(event);
}

} // namespace

bool WaitFor(const std::function<bool()>& predicate, int milliseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!predicate()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        wxTheApp->Yield(true);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

void SettleEvents() {
    for (int round = 0; round < 3; ++round) {
        wxTheApp->Yield(true);
        wxTheApp->ProcessPendingEvents();
        while (wxTheApp->ProcessIdle())
            ;
    }
}

void RunEvents() {
    wxEventLoopBase& loop = *wxEventLoopBase::GetActive();
    for (int round = 0; round < 3; ++round) {
        while (loop.Pending())
            loop.Dispatch();
        wxTheApp->ProcessPendingEvents();
        while (loop.ProcessIdle())
            ;
    }
}

bool IsMenuEnabled(wxFrame& frame, int id) {
    frame.UpdateWindowUI();
    frame.GetMenuBar()->UpdateMenus();
    const wxMenuItem* item = frame.GetMenuBar()->FindItem(id);
    return item && item->IsEnabled();
}

void ChooseMenu(wxFrame& frame, int id) {
    ASSERT_NE(frame.GetMenuBar()->FindItem(id), nullptr) << "no menu command " << id;
    ASSERT_TRUE(IsMenuEnabled(frame, id)) << "menu command " << id << " is disabled";
    wxCommandEvent event(wxEVT_MENU, id);
    event.SetEventObject(&frame);
    frame.GetEventHandler()->ProcessEvent(event);
}

void ForEachDescendant(wxWindow& parent, const std::function<void(wxWindow&)>& visit) {
    for (wxWindow* child : parent.GetChildren()) {
        visit(*child);
        ForEachDescendant(*child, visit);
    }
}

wxWindow* FindByLabel(wxWindow& parent, const wxString& label) {
    wxWindow* found = nullptr;
    ForEachDescendant(parent, [&](wxWindow& window) {
        if (!found && window.GetLabel() == label)
            found = &window;
    });
    return found;
}

void PressButton(wxWindow& parent, int id) {
    Press(parent.FindWindow(id), std::to_string(id));
}

void PressButton(wxWindow& parent, const wxString& label) {
    Press(FindByLabel(parent, label), label.ToStdString());
}

void TypeText(wxWindow& parent, int id, const wxString& text) {
    auto* control = dynamic_cast<wxTextCtrl*>(parent.FindWindow(id));
    ASSERT_NE(control, nullptr) << "no text box " << id;
    ASSERT_TRUE(control->IsThisEnabled()) << "text box " << id << " is disabled";
    control->SetValue(text);
}

void PointAt(wxWindow& window) {
    const wxRect area = window.GetScreenRect();
    wxUIActionSimulator().MouseMove(area.GetPosition() + area.GetSize() / 2);
    SettleEvents();
}

void PressKey(wxWindow& window, int keyCode) {
    wxKeyEvent event(wxEVT_KEY_DOWN);
    event.m_keyCode = keyCode;
    event.SetEventObject(&window);
    window.GetEventHandler()->ProcessEvent(event);
}

bool SaveScreenshot(wxWindow& window, const wxString& path) {
    SettleEvents();
    window.Update();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    SettleEvents();
    const int scale = static_cast<int>(window.GetContentScaleFactor());
    const wxRect area = window.GetScreenRect();
    const wxString command = wxString::Format(
        "import -silent -window root -crop %dx%d+%d+%d +repage '%s'", scale * area.width,
        scale * area.height, scale * area.x, scale * area.y, path);
    return std::system(command.utf8_str()) == 0;
}

void TakeScreenshot(wxWindow& window, const std::string& name) {
    const char* folder = std::getenv("OM_SCREENSHOTS");
    if (!folder)
        return;
    EXPECT_TRUE(SaveScreenshot(window, wxString(folder) + "/" + name + ".png"));
}
