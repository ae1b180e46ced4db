#include "tests/windows/support/ModalSteps.h"

#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/weakref.h>

namespace {

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

ModalSteps::ModalSteps() {
    Register();
}

ModalSteps::~ModalSteps() {
    Unregister();
    for (const Expected& missing : expected_)
        ADD_FAILURE() << "expected dialog did not come: \"" << missing.title.ToStdString() << "\"";
}

void ModalSteps::Expect(const wxString& title, Step step) {
    expected_.push_back({title, std::move(step)});
}

void ModalSteps::ExpectAndPress(const wxString& title, int buttonId) {
    Expect(title, [buttonId](wxDialog& dialog) { PressButton(dialog, buttonId); });
}

int ModalSteps::Enter(wxDialog* dialog) {
    if (expected_.empty()) {
        ADD_FAILURE() << "unexpected dialog \"" << dialog->GetTitle().ToStdString() << "\"";
        return wxID_CANCEL;
    }
    Expected next = std::move(expected_.front());
    expected_.pop_front();
    EXPECT_EQ(dialog->GetTitle(), next.title);
    dialog->CallAfter([dialog, step = std::move(next.step)] { TakeStep(*dialog, step); });
    return wxID_NONE;
}
