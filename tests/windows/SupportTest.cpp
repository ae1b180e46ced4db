// The helpers of the window tests, tried on small windows.
#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

void ShowDialogWithoutSteps() {
    const ModalSteps user;
    wxDialog dialog(nullptr, wxID_ANY, "Surprise");
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

void ExpectDialogThatNeverComes() {
    ModalSteps user;
    user.ExpectAndPress("Missing", wxID_OK);
}

} // namespace

TEST(WaitFor, ReturnsFalseWhenTimeIsUp) {
    EXPECT_FALSE(WaitFor([] { return false; }, 20));
    EXPECT_TRUE(WaitFor([] { return true; }, 0));
}

TEST(WaitFor, RunsQueuedEvents) {
    bool ran = false;
    wxTheApp->CallAfter([&ran] { ran = true; });
    EXPECT_TRUE(WaitFor([&ran] { return ran; }));
}

TEST(ModalSteps, StepWorksOnRealControlsAndPressesRealButton) {
    wxDialog dialog(nullptr, wxID_ANY, "Number");
    auto* box = new wxTextCtrl(&dialog, 100);
    new wxButton(&dialog, wxID_OK);
    ModalSteps user;
    user.Expect("Number", [](wxDialog& shown) {
        TypeText(shown, 100, "42");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_EQ(box->GetValue(), "42");
}

TEST(ModalSteps, UnexpectedDialogFailsTheTestAndIsCancelled) {
    EXPECT_NONFATAL_FAILURE(ShowDialogWithoutSteps(), "unexpected dialog \"Surprise\"");
}

TEST(ModalSteps, MissingDialogFailsTheTest) {
    EXPECT_NONFATAL_FAILURE(ExpectDialogThatNeverComes(), "did not come: \"Missing\"");
}

TEST(PressButton, RefusesDisabledButton) {
    static wxDialog* dialog = nullptr;
    dialog = new wxDialog(nullptr, wxID_ANY, "Disabled");
    (new wxButton(dialog, wxID_OK))->Disable();
    EXPECT_FATAL_FAILURE(PressButton(*dialog, wxID_OK), "is disabled");
    dialog->Destroy();
}
