// While no ModalSteps is installed, every dialog is refused the same way, so that none hangs a run.
void RefuseUnexpectedDialogs();

// Lifts the refusal while it lives, for a test with a modal hook of its own.
class DialogsAllowed {
  public:
    DialogsAllowed();
    ~DialogsAllowed();
    DialogsAllowed(const DialogsAllowed&) = delete;
    DialogsAllowed& operator=(const DialogsAllowed&) = delete;
};

// A user who works through modal dialogs: each dialog that comes up takes the next step, which
// works on its real controls and presses one of its buttons. A dialog that nobody expected fails
// the test and is cancelled.
#pragma once

#include <deque>
#include <functional>
#include <wx/defs.h>
#include <wx/modalhook.h>
#include <wx/string.h>

class ModalSteps : public wxModalDialogHook {
  public:
    using Step = std::function<void(wxDialog&)>;

    ModalSteps();           // installs itself
    ~ModalSteps() override; // fails the test if an expected dialog did not come
    ModalSteps(const ModalSteps&) = delete;
    ModalSteps& operator=(const ModalSteps&) = delete;

    // The next dialog, in order, has this title and takes `step`, which is to leave it closed.
    // Steps for dialogs that it opens itself are expected after it.
    void Expect(const wxString& title, Step step);

    // The same for a dialog that only needs one of its buttons pressed.
    void ExpectAndPress(const wxString& title, int buttonId);

    // A message box of the toolkit, answered without being shown. `style` is the toolkit's;
    // `answer` is a button's id.
    void ExpectBox(const wxString& caption, const wxString& text, long style, int answer);

  protected:
    int Enter(wxDialog* dialog) override;

  private:
    struct Expected {
        wxString title;
        Step step;                 // not for a message box
        wxString text = {};        // of a message box
        long style = 0;            // likewise
        int boxAnswer = wxID_NONE; // likewise; otherwise none
    };

    static int AnswerBox(const wxDialog* dialog, const Expected& expected);

    std::deque<Expected> expected_;
    const wxDialog* entering_ = nullptr; // its step is queued
};
