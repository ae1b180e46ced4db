// A user who works through the dialogs of a command: presses the default button of each dialog,
// reads each message box, and takes a picture of all that comes up.
#pragma once

#include "platform/UserInterface.h"

#include <functional>
#include <map>
#include <string>
#include <wx/modalhook.h>
#include <wx/timer.h>

class UnattendedUser : public OmUserInterface, public wxModalDialogHook, public wxTimer {
  public:
    // Pictures go into `folder`. Stands in front of the installed user interface until destroyed.
    explicit UnattendedUser(const wxString& folder);
    ~UnattendedUser() override;
    UnattendedUser(const UnattendedUser&) = delete;
    UnattendedUser& operator=(const UnattendedUser&) = delete;

    // What to fill into the dialog of this title before its default button is pressed, and the name
    // of its picture.
    void Prepare(const wxString& title, const wxString& picture,
                 std::function<void(wxDialog&)> fill = {});

    // Names of the pictures of the next progress dialog and the next message box; empty for none.
    void PictureProgressAs(const wxString& name) { progressPicture_ = name; }

    void PictureBoxAs(const wxString& name) { boxPicture_ = name; }

    bool TakePicture(const wxString& name);

    // Questions are answered No without showing them; messages are shown and closed.
    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override;

    void BeginBusyCursor() override { window_->BeginBusyCursor(); }

    void EndBusyCursor() override { window_->EndBusyCursor(); }

    std::wstring lastMessage;
    bool allPicturesTaken = true;

  protected:
    int Enter(wxDialog* dialog) override;
    void Notify() override;

  private:
    struct Plan {
        wxString picture;
        std::function<void(wxDialog&)> fill;
    };

    void WorkOn(wxDialog& dialog);
    void CloseBox();
    void LookAtProgress();

    wxString folder_;
    OmUserInterface* window_; // the program's own, not owned
    std::map<wxString, Plan> plans_;
    wxString progressPicture_;
    wxString boxPicture_;
    int ticksWithProgress_ = 0;
    int ticksWithBox_ = -1; // -1 while no box is up
};
