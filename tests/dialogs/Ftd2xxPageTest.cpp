#include "tests/dialogs/CableSettingsFixture.h"
#include "tests/jtag/FakeD2xx.h"

namespace {

const FakeD2xx::Device kHighSpeed{"Pod H A", "H1", 6};
const FakeD2xx::Device kFullSpeed{"Pod C A", "C1", 4};

class Ftd2xxPageTest : public CableSettingsDlgTest {
  protected:
    void UseFtd2xx(const FakeD2xx::Device& device) {
        settings_.cableType = OmCableType::Ftd2xx;
        settings_.ftd2xxDescription = device.description;
        settings_.ftd2xxSerial = device.serial;
        settings_.ftd2xxGpioDir = 0x0710;
        settings_.ftd2xxGpioValue = 0x0300;
    }
};

} // namespace

TEST_F(Ftd2xxPageTest, Ftd2xxPageShowsItsSettings) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed, kFullSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxFrequency = 15000000;
    settings_.ftd2xxGpioSchemeDesc = L"Olimex ARM-USB-OCD";
    Show([](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)), Names({"Pod H A (H1)", "Pod C A (C1)"}));
        EXPECT_EQ(Chosen(shown, kDevice), "Pod H A (H1)");
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kPins)),
                  Names({"Amontec JTAGkey", "Olimex ARM-USB-OCD", "Turtelizer 2"}));
        EXPECT_EQ(Chosen(shown, kPins), "Olimex ARM-USB-OCD");
        EXPECT_EQ(
            EntriesOf(ChoiceBehind(shown, kFrequency)),
            Names({"30 MHz",  "15 MHz",  "10 MHz", "7.5 MHz", "6 MHz",   "5 MHz",   "3.75 MHz",
                   "3 MHz",   "2 MHz",   "1 MHz",  "750 KHz", "500 KHz", "300 KHz", "200 KHz",
                   "150 KHz", "100 KHz", "50 KHz", "10 KHz",  "5 KHz",   "1 KHz"}));
        EXPECT_EQ(Chosen(shown, kFrequency), "15 MHz");
        EXPECT_TRUE(IsEnabled(shown, kAdaptive));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "connection_ftd2xx");
        Choose(shown, kDevice, "Pod C A (C1)");
        Choose(shown, kPins, "Turtelizer 2");
        Choose(shown, kFrequency, "400 KHz");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.ftd2xxDescription, "Pod C A");
    EXPECT_EQ(settings_.ftd2xxSerial, "C1");
    EXPECT_EQ(settings_.ftd2xxFrequency, 400000);
    EXPECT_EQ(settings_.ftd2xxGpioSchemeDesc, L"Turtelizer 2");
    EXPECT_EQ(settings_.ftd2xxGpioDir, 0x0010);
    EXPECT_EQ(settings_.ftd2xxGpioValue, 0x0000);
}

TEST_F(Ftd2xxPageTest, SlowerDeviceHasOtherFrequenciesAndNoAdaptiveClocking) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed, kFullSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxFrequency = 15000000;
    settings_.ftd2xxAdaptiveClocking = true;
    Show([](wxDialog& shown) {
        EXPECT_TRUE(CheckBox(shown, kAdaptive).GetValue());
        Choose(shown, kDevice, "Pod C A (C1)");
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kFrequency)),
                  Names({"6 MHz", "3 MHz", "2 MHz", "1 MHz", "750 KHz", "600 KHz", "500 KHz",
                         "400 KHz", "300 KHz", "200 KHz", "150 KHz", "100 KHz", "50 KHz", "25 KHz",
                         "10 KHz", "5 KHz", "1 KHz"}));
        EXPECT_EQ(Chosen(shown, kFrequency), "6 MHz"); // 15 MHz is not there
        EXPECT_FALSE(IsEnabled(shown, kAdaptive));
        EXPECT_FALSE(CheckBox(shown, kAdaptive).GetValue());
        Choose(shown, kDevice, "Pod H A (H1)");
        EXPECT_TRUE(IsEnabled(shown, kAdaptive));
        EXPECT_TRUE(CheckBox(shown, kAdaptive).GetValue());
        EXPECT_EQ(Chosen(shown, kFrequency), "6 MHz");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(Ftd2xxPageTest, AdaptiveClockingIsWarnedAbout) {
    constexpr wchar_t kWarning[] =
        L"Use Adaptive Clocking ONLY IF a target device in a JTAG chain and a JTAG adapter support "
        L"this feature! Otherwise, the software will hang up with no error messages (!) upon "
        L"attempt to shift data into a JTAG chain.\n\nIgnore this warning and continue?";
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kHighSpeed);
    boxes_.Expect(kWarning, kLossQuestionBox, OmAnswer::No, L"Warning");
    Show([](wxDialog& shown) {
        ClickCheck(shown, kAdaptive);
        PressOk(shown);
        EXPECT_TRUE(shown.IsModal());
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_FALSE(adaptiveWarningAnswered_);
    boxes_.Expect(kWarning, kLossQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_EQ(Show([](wxDialog& shown) {
                  ClickCheck(shown, kAdaptive);
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_TRUE(adaptiveWarningAnswered_);
    EXPECT_TRUE(settings_.ftd2xxAdaptiveClocking);
}

TEST_F(Ftd2xxPageTest, AdaptiveClockingOfAnotherCableIsNotWarnedAbout) {
    settings_.ftd2xxAdaptiveClocking = true;
    EXPECT_EQ(Show(PressOk), wxID_OK);
    EXPECT_TRUE(settings_.ftd2xxAdaptiveClocking);
    EXPECT_FALSE(adaptiveWarningAnswered_);
}

TEST_F(Ftd2xxPageTest, UnpluggedFtd2xxIsRefusedOnItsOwnPageOnly) {
    FakeD2xx d2xx;
    d2xx.devices.clear();
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxFrequency = 15000000;
    ExpectRefused("There are no FTDI FT2232 devices found.", [](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)),
                  Names({"press this button to refresh -->"}));
        EXPECT_FALSE(ChoiceBehind(shown, kDevice).IsThisEnabled());
        EXPECT_FALSE(ChoiceBehind(shown, kFrequency).IsThisEnabled());
        EXPECT_FALSE(IsEnabled(shown, kAdaptive));
        TakeScreenshot(shown, "connection_ftd2xx_unplugged");
    });
    EXPECT_EQ(Show([](wxDialog& shown) {
                  Choose(shown, kConnection, "Wiggler");
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_EQ(settings_.ftd2xxDescription, "Pod H A");
    EXPECT_EQ(settings_.ftd2xxFrequency, 15000000);
}

TEST_F(Ftd2xxPageTest, UnknownFtd2xxMustBeSelected) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kFullSpeed);
    ExpectRefused("Please select a device from the list.",
                  [](wxDialog& shown) { EXPECT_EQ(Chosen(shown, kDevice), ""); });
}

TEST_F(Ftd2xxPageTest, UpdateListFindsWhatWasPluggedIn) {
    FakeD2xx d2xx;
    d2xx.devices.clear();
    UseFtd2xx(kFullSpeed);
    EXPECT_EQ(Show([&](wxDialog& shown) {
                  d2xx.devices = {kHighSpeed, kFullSpeed};
                  PressButton(shown, "Update list");
                  EXPECT_EQ(Chosen(shown, kDevice), "Pod C A (C1)");
                  EXPECT_TRUE(ChoiceBehind(shown, kFrequency).IsThisEnabled());
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_EQ(d2xx.loaded, 0);
}

TEST_F(Ftd2xxPageTest, SchemeThatIsGoneComesBack) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxGpioDir = 0x0510;
    settings_.ftd2xxGpioSchemeDesc = L"My pod";
    EXPECT_EQ(Show([](wxDialog& shown) {
                  EXPECT_EQ(Chosen(shown, kPins), "My pod");
                  PressOk(shown);
              }),
              wxID_OK);
    ASSERT_EQ(GetStaticPinsSchemes().size(), 4u);
    EXPECT_EQ(GetStaticPinsSchemes()[3],
              (OmFtd2xxStaticPinsScheme{L"My pod", 0x0510, 0x0300, false}));
}

TEST_F(Ftd2xxPageTest, SchemeThatDiffersInTheJtagPinsIsThePredefinedOne) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxGpioDir = 0x071B;
    settings_.ftd2xxGpioSchemeDesc = L"My pod";
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kPins), "Amontec JTAGkey");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.ftd2xxGpioDir, 0x0710);
    EXPECT_EQ(GetStaticPinsSchemes().size(), 3u);
}

TEST_F(Ftd2xxPageTest, DefaultPinStatesGetANameThatCanBeStored) {
    FakeD2xx d2xx;
    settings_.cableType = OmCableType::Ftd2xx;
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kPins), "(unnamed)");
        PressButton(shown, wxID_CANCEL);
    });
}
