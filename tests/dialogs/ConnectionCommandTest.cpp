// The Connection command, through the menu of the real main window.
#include "jtag/StaticPinsSchemes.h"
#include "tests/dialogs/FlashCommandsFixture.h"
#include "tests/jtag/FakeD2xx.h"
#include "tests/jtag/FakePortDriver.h"

namespace {

class ConnectionCommandTest : public FlashCommandsTest {
  protected:
    ConnectionCommandTest() {
        GetStaticPinsSchemes() = LoadStaticPinsSchemes();
        programmer_.settings = OmConnectionSettings();
        programmer_.adaptiveWarningAnswered = false;
    }

    ~ConnectionCommandTest() override {
        programmer_.settings = OmConnectionSettings();
        programmer_.adaptiveWarningAnswered = false;
    }

    FakePortDriver ports_;
};

} // namespace

TEST_F(ConnectionCommandTest, OkWithoutAChangeOpensTheCableAnew) {
    ASSERT_TRUE(programmer_.OpenCable());
    dialogs_.ExpectAndPress("JTAG Connection", wxID_OK);
    ChooseMenu(*frame_, kIdConnection);
    EXPECT_EQ(cablesMade_, 2);
    EXPECT_EQ(target_.cablesOpen, 1);
    EXPECT_FALSE(frame_->IsSetupModified());
}

TEST_F(ConnectionCommandTest, CancelKeepsTheOpenCable) {
    ASSERT_TRUE(programmer_.OpenCable());
    dialogs_.Expect("JTAG Connection", [](wxDialog& shown) {
        Choose(shown, "Connec&tion:", "Wiggler");
        PressButton(shown, wxID_CANCEL);
    });
    ChooseMenu(*frame_, kIdConnection);
    EXPECT_EQ(cablesMade_, 1);
    EXPECT_EQ(programmer_.settings.cableType, OmCableType::XilinxParallelCable3);
}

TEST_F(ConnectionCommandTest, OkTakesTheSettings) {
    dialogs_.Expect("JTAG Connection", [](wxDialog& shown) {
        Choose(shown, "Connec&tion:", "Wiggler");
        PressButton(shown, wxID_OK);
    });
    ChooseMenu(*frame_, kIdConnection);
    EXPECT_EQ(programmer_.settings.cableType, OmCableType::Wiggler);
    EXPECT_EQ(target_.cablesOpen, 1);
}

TEST_F(ConnectionCommandTest, FailedConnectionIsToldAndTheSettingsStay) {
    programmer_.createCable = [](OmConnectionSettings&) { return nullptr; };
    dialogs_.ExpectAndPress("JTAG Connection", wxID_OK);
    user_.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
    ChooseMenu(*frame_, kIdConnection);
    EXPECT_EQ(programmer_.cable, nullptr);
}

TEST_F(ConnectionCommandTest, WarningAnsweredInTheDialogDoesNotComeAgain) {
    FakeD2xx d2xx;
    programmer_.settings.cableType = OmCableType::Ftd2xx;
    programmer_.settings.ftd2xxDescription = d2xx.devices[0].description;
    programmer_.settings.ftd2xxSerial = d2xx.devices[0].serial;
    dialogs_.Expect("JTAG Connection", [](wxDialog& shown) {
        ClickCheck(shown, "Adaptive Clocking");
        PressButton(shown, wxID_OK);
    });
    user_.Expect(L"Use Adaptive Clocking ONLY IF a target device in a JTAG chain and a JTAG "
                 L"adapter support this feature! Otherwise, the software will hang up with no "
                 L"error messages (!) upon attempt to shift data into a JTAG chain.\n\nIgnore this "
                 L"warning and continue?",
                 kLossQuestionBox, OmAnswer::Yes, L"Warning");
    ChooseMenu(*frame_, kIdConnection);
    EXPECT_TRUE(programmer_.adaptiveWarningAnswered);
    programmer_.settings.ftd2xxIsHighSpeed = true;
    EXPECT_TRUE(programmer_.ConfirmAdaptiveClocking());
}

TEST_F(ConnectionCommandTest, SchemesAreKeptWhenTheWindowCloses) {
    GetStaticPinsSchemes().push_back({L"My pod", 0x0510, 0x0100, false});
    CloseWindow();
    EXPECT_EQ(wxConfigBase::Get()->Read("/Ftd2xxSchemeDesc_1", ""), "My pod");
    OpenWindow();
}
