#include "tests/dialogs/DesignSetupFixture.h"

namespace {

constexpr wchar_t kQuestion[] = L"\n\nIgnore this message and close the dialog?";
constexpr wchar_t kCaption[] = L"Integrity Check Message";

class DesignSetupClosingTest : public DesignSetupTest {
  protected:
    DesignSetupClosingTest() {
        setup_.ChipCount = 1;
        setup_.WordSize = 2;
        setup_.AddrCmdShift = 0;
        for (int bit = 0; bit < 16; ++bit)
            setup_.dataPins[static_cast<size_t>(bit)] = SignalPin{{0, "DATA", bit}};
    }

    void ExpectQuestion(const std::wstring& text, OmAnswer answer) {
        boxes_.Expect(text + kQuestion, kWarningQuestionBox, answer, kCaption);
    }

    // Presses OK, answers No, and cancels. What the question leaves behind is for `look`.
    void Refuse(const std::wstring& text, const Step& look) {
        ExpectQuestion(text, OmAnswer::No);
        Look([&look](OmDesignSetupDlg& shown) {
            PressButton(shown, wxID_OK);
            EXPECT_TRUE(shown.IsShown());
            look(shown);
        });
    }
};

} // namespace

TEST_F(DesignSetupClosingTest, WholeSetupClosesWithoutAQuestion) {
    EXPECT_EQ(Edit([](OmDesignSetupDlg&) {}), wxID_OK);
    EXPECT_EQ(setup_.dataPins.size(), 16u);
    EXPECT_TRUE(setup_.addressPins.empty());
}

TEST_F(DesignSetupClosingTest, NoKeepsTheDialogOpen) {
    setup_.ce = SignalPin{{0, "DATA", 0}};
    Refuse(L"ERROR: the same pin of a JTAG chain device is connected to drive/sense more then one "
           L"signal (the pin is listed multiple times in the Signal or Static pins lists).",
           [](OmDesignSetupDlg& shown) {
               EXPECT_EQ(Notebook(shown).GetSelection(), kChainPage);
               EXPECT_EQ(shown.setup.dataPins.size(), 32u); // can still be edited
           });
}

TEST_F(DesignSetupClosingTest, YesClosesWithWhatThereIs) {
    setup_.ce = SignalPin{{0, "DATA", 0}};
    ExpectQuestion(L"ERROR: the same pin of a JTAG chain device is connected to drive/sense more "
                   L"then one signal (the pin is listed multiple times in the Signal or Static "
                   L"pins lists).",
                   OmAnswer::Yes);
    EXPECT_EQ(Edit([](OmDesignSetupDlg&) {}), wxID_OK);
    EXPECT_EQ(setup_.ce.PortName, "DATA");
    EXPECT_EQ(setup_.dataPins.size(), 16u);
    EXPECT_TRUE(setup_.addressPins.empty());
}

TEST_F(DesignSetupClosingTest, MissingOrganisationIsShown) {
    setup_.ChipCount = -1;
    Refuse(L"Please select DATA bus organization.", [](OmDesignSetupDlg& shown) {
        EXPECT_EQ(Notebook(shown).GetSelection(), kFlashArrayPage);
        EXPECT_EQ(wxWindow::FindFocus(), &ChoiceBehind(shown, "&DATA bus organization:"));
    });
}

TEST_F(DesignSetupClosingTest, MissingWidthIsShown) {
    setup_.AddrCmdShift = -1;
    Refuse(L"Please select the maximum data width that a single chip is capable of.",
           [](OmDesignSetupDlg& shown) {
               EXPECT_EQ(Notebook(shown).GetSelection(), kFlashArrayPage);
               EXPECT_EQ(
                   wxWindow::FindFocus(),
                   &ChoiceBehind(shown, "The &maximum data width a single chip is capable of:"));
           });
}

TEST_F(DesignSetupClosingTest, BusWidthThatDoesNotFitIsAskedAbout) {
    setup_.WordSize = 1;
    Refuse(L"WARNING: the list of connected flash data pins on the Signal pins tab does not "
           L"correspond with a data bus width selected on the Flash array tab.",
           [](OmDesignSetupDlg&) {});
}

TEST_F(DesignSetupClosingTest, SkippedAddressPinsAreAskedAbout) {
    setup_.addressPins[1] = SignalPin{{0, "ADDR", 1}};
    Refuse(L"WARNING: one or more flash address pins have been skipped on the Signal pins list.",
           [](OmDesignSetupDlg&) {});
}
