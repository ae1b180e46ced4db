#include "dialogs/ChainSizeDlg.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/spinctrl.h>
#include <wx/uiaction.h>
#include <wx/wx.h>

namespace {

constexpr char kTitle[] = "JTAG Chain Devices Count";

class ChainSizeDlgTest : public testing::Test {
  protected:
    // Shows count_ and takes it back.
    int Show(const ModalSteps::Step& step) {
        OmChainSizeDlg dialog(nullptr);
        dialog.count = count_;
        user_.Expect(kTitle, step);
        const int button = dialog.ShowModal();
        count_ = dialog.count;
        return button;
    }

    static wxSpinCtrl& Spin(wxDialog& shown) { return *FindByClass<wxSpinCtrl>(shown); }

    int count_ = 1;
    RecordingUserInterface boxes_;
    ModalSteps user_;
};

} // namespace

TEST_F(ChainSizeDlgTest, ShowsItsControls) {
    Show([](wxDialog& shown) {
        EXPECT_NE(
            FindByLabel(
                shown,
                "This dialog provides a second method to define a JTAG chain. It is only\nintended "
                "as a backup option when the chain is not connected to the\ncomputer. The best way "
                "is to let the software examine the JTAG chain\nto detect devices and their "
                "idcodes (choose 'Examine the chain' button)."),
            nullptr);
        EXPECT_NE(FindByLabel(shown, "Number of devices in the JTAG chain:"), nullptr);
        EXPECT_EQ(Spin(shown).GetMin(), 1);
        EXPECT_EQ(Spin(shown).GetMax(), 200);
        EXPECT_TRUE(Spin(shown).HasFlag(wxSP_ARROW_KEYS));
        EXPECT_EQ(shown.FindWindow(wxID_OK)->GetLabel(), "&OK");
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "chain_size");
        PressButton(shown, "&Cancel");
    });
}

TEST_F(ChainSizeDlgTest, OkTakesTheCount) {
    count_ = 3;
    EXPECT_EQ(Show([](wxDialog& shown) {
                  EXPECT_EQ(Spin(shown).GetValue(), 3);
                  Spin(shown).SetValue(200);
                  PressButton(shown, wxID_OK);
              }),
              wxID_OK);
    EXPECT_EQ(count_, 200);
}

TEST_F(ChainSizeDlgTest, CancelKeepsTheCount) {
    count_ = 3;
    EXPECT_EQ(Show([](wxDialog& shown) {
                  Spin(shown).SetValue(5);
                  PressButton(shown, wxID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_EQ(count_, 3);
}

TEST_F(ChainSizeDlgTest, EmptyChainIsOfferedOneDevice) {
    count_ = 0;
    Show([](wxDialog& shown) {
        EXPECT_EQ(Spin(shown).GetValue(), 1);
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(count_, 1);
}

TEST_F(ChainSizeDlgTest, IsFilledInByKeysAlone) {
    Show([](wxDialog& shown) {
        PointAt(shown);
        wxUIActionSimulator keys;
        for (const int key : std::vector<int>{'4', '2', WXK_UP, WXK_RETURN}) {
            keys.Char(key);
            RunEvents();
        }
        EXPECT_TRUE(WaitFor([&] { return !shown.IsModal(); }));
    });
    EXPECT_EQ(count_, 43);
}

TEST_F(ChainSizeDlgTest, TypedNumberStaysInTheRange) {
    const struct {
        const char* typed;
        int count;
    } cases[] = {{"999", 200}, {"0", 7}};

    for (const auto& c : cases) {
        count_ = 7;
        Show([&](wxDialog& shown) {
            PointAt(shown);
            wxUIActionSimulator keys;
            keys.Text(c.typed);
            RunEvents();
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(count_, c.count) << c.typed;
    }
}
