#include "tests/windows/support/ModalSteps.h"

#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/msgdlg.h>
#include <wx/weakref.h>

namespace {

int installedSteps = 0;

int Refuse(const wxDialog& dialog) {
    const auto* box = dynamic_cast<const wxMessageDialogBase*>(&dialog);
    ADD_FAILURE() << "unexpected dialog \"" << dialog.GetTitle().ToStdString() << "\" "
                  << (box ? box->GetMessage().ToStdString() : std::string());
    return wxID_CANCEL;
}

// The toolkit asks every hook that is registered.
class Refuser : public wxModalDialogHook {
  protected:
    int Enter(wxDialog* dialog) override {
        return installedSteps == 0 ? Refuse(*dialog) : wxID_NONE;
    }
};

void TakeStep(wxDialog& dialog, const ModalSteps::Step& step) {
    const wxString title = dialog.GetTitle();
    wxWeakRef<wxDialog> alive(&dialog);
    step(dialog);
    WaitFor([&] { return !alive || !alive->IsModal(); });
    if (alive && alive->IsModal()) {
        ADD_FAILURE() << "the dialog \"" << title.ToStdString() << "\" is still open";
        alive->EndModal(wxID_CANCEL);
    }
}

} // namespace

void RefuseUnexpectedDialogs() {
    static Refuser refuser;
    refuser.Register();
}

DialogsAllowed::DialogsAllowed() {
    ++installedSteps;
}

DialogsAllowed::~DialogsAllowed() {
    --installedSteps;
}

ModalSteps::ModalSteps() {
    ++installedSteps;
    Register();
}

ModalSteps::~ModalSteps() {
    Unregister();
    --installedSteps;
    for (const Expected& missing : expected_)
        ADD_FAILURE() << "expected dialog did not come: \"" << missing.title.ToStdString() << "\"";
}

void ModalSteps::Expect(const wxString& title, Step step) {
    expected_.push_back({title, std::move(step)});
}

void ModalSteps::ExpectAndPress(const wxString& title, int buttonId) {
    Expect(title, [buttonId](wxDialog& dialog) { PressButton(dialog, buttonId); });
}

void ModalSteps::ExpectBox(const wxString& caption, const wxString& text, long style, int answer) {
    expected_.push_back({caption, {}, text, style, answer});
}

int ModalSteps::AnswerBox(const wxDialog* dialog, const Expected& expected) {
    const auto* box = dynamic_cast<const wxMessageDialogBase*>(dialog);
    if (!box) {
        ADD_FAILURE() << "not a message box: \"" << expected.title.ToStdString() << "\"";
        return wxID_CANCEL;
    }
    EXPECT_EQ(box->GetMessage(), expected.text);
    EXPECT_EQ(box->GetMessageDialogStyle(), expected.style);
    return expected.boxAnswer;
}

// The toolkit asks twice about dialogs that call their base class's ShowModal.
int ModalSteps::Enter(wxDialog* dialog) {
    if (entering_ == dialog)
        return wxID_NONE;
    if (expected_.empty())
        return Refuse(*dialog);
    Expected next = std::move(expected_.front());
    expected_.pop_front();
    EXPECT_EQ(dialog->GetTitle(), next.title);
    if (next.boxAnswer != wxID_NONE)
        return AnswerBox(dialog, next);
    entering_ = dialog;
    dialog->CallAfter([this, dialog, step = std::move(next.step)] {
        entering_ = nullptr;
        TakeStep(*dialog, step);
    });
    return wxID_NONE;
}
