#include "dialogs/PinMapDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

constexpr char kLabel[] = "Package pin mapping:";

int Show(int selected, const ModalSteps::Step& step) {
    OmPinMapDlg dialog(nullptr);
    dialog.pinMaps = {"BGA", "QFP", "a package with a very long name indeed, as some files have"};
    dialog.selected = selected;
    dialog.displayName = "Dev1 (chip)";
    ModalSteps user;
    user.Expect("Package Pin Mapping", [&step](wxDialog& shown) {
        EXPECT_EQ(shown.GetTitle(), "Dev1 (chip) Package Pin Mapping");
        step(shown);
    });
    dialog.ShowModal();
    return dialog.selected;
}

} // namespace

TEST(PinMapDlg, ListsTheMapsWithThePresentOneSelected) {
    OmPinMapDlg nameless(nullptr);
    EXPECT_EQ(nameless.GetTitle(), "Package Pin Mapping");
    Show(1, [](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "A BSDL file may contain multiple packaging options (called "
                                     "pin\nmappings) for the same silicon. Please select a pin "
                                     "mapping\nthat corresponds to the device's package type."),
                  nullptr);
        wxChoice& choice = ChoiceBehind(shown, kLabel);
        EXPECT_EQ(choice.GetCount(), 3u);
        EXPECT_EQ(choice.GetStringSelection(), "QFP");
        EXPECT_EQ(wxWindow::FindFocus(), &choice);
        ExpectGoodLayout(shown);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(PinMapDlg, TakesTheChosenOne) {
    const RecordingUserInterface boxes;
    EXPECT_EQ(Show(1,
                   [](wxDialog& shown) {
                       Choose(shown, kLabel, "BGA");
                       PressButton(shown, wxID_OK);
                   }),
              0);
}

TEST(PinMapDlg, SomethingMustBeChosen) {
    RecordingUserInterface boxes;
    boxes.Expect(L"Please select from the pin mappings in the drop-down menu.", kWarningBox);
    EXPECT_EQ(Show(-1,
                   [](wxDialog& shown) {
                       PressButton(shown, wxID_OK);
                       PressButton(shown, wxID_CANCEL);
                   }),
              -1);
}
