#include "setup/DevicePins.h"

#include "tests/setup/PinDevice.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::wstring> Texts(const OmDevicePins& pins) {
    std::vector<std::wstring> texts;
    for (const OmPinChoice& pin : pins.GetChoices())
        texts.push_back(pin.text);
    return texts;
}

OmChainDevice MakeDeviceWithPort(const char* direction, int first, int last) {
    auto data = std::make_unique<OmBsdlData>();
    data->AddPort("P", direction, first, last);
    OmChainDevice device;
    device.SetBsdl(std::move(data), "");
    return device;
}

std::wstring Found(const std::wstring& text) {
    const OmDevicePins pins(MakePinDevice());
    const OmPinChoice* pin = pins.FindByText(text);
    return pin ? pin->text : L"(none)";
}

} // namespace

TEST(DevicePins, ListPortsInTheirOrderWithPackagePins) {
    const OmDevicePins pins(MakePinDevice());
    const std::vector<std::wstring> texts = Texts(pins);
    ASSERT_EQ(texts.size(), 16u + 24u + 3u); // no linkage port
    EXPECT_EQ(texts[0], L"D0 / DATA(0)");
    EXPECT_EQ(texts[15], L"D15 / DATA(15)");
    EXPECT_EQ(texts[16], L"A23 / ADDR(23)"); // as the range runs
    EXPECT_EQ(texts[39], L"A0 / ADDR(0)");
    EXPECT_EQ(texts[40], L"B1 / SEL");
    EXPECT_EQ(texts[41], L"B2 / IN");
    EXPECT_EQ(texts[42], L"NC"); // in no pin map
}

TEST(DevicePins, WithoutAPinMapTheTextIsThePort) {
    OmChainDevice device = MakePinDevice();
    device.PinMapping.clear();
    const std::vector<std::wstring> texts = Texts(OmDevicePins(device));
    EXPECT_EQ(texts[3], L"DATA(3)");
    EXPECT_EQ(texts[40], L"SEL");
}

TEST(DevicePins, UseThePinMapThatIsChosen) {
    OmChainDevice device = MakePinDevice();
    device.PinMapping = "QFP";
    EXPECT_EQ(Texts(OmDevicePins(device))[40], L"100 / SEL");
}

TEST(DevicePins, DeviceWithoutBsdlDataHasNone) {
    EXPECT_TRUE(OmDevicePins(OmChainDevice()).GetChoices().empty());
}

TEST(DevicePins, DeviceWithNothingButLinkageHasNone) {
    EXPECT_TRUE(OmDevicePins(MakeDeviceWithPort("linkage", 0, 7)).GetChoices().empty());
}

TEST(DevicePins, RangeOfOneBitIsOnePin) {
    EXPECT_EQ(Texts(OmDevicePins(MakeDeviceWithPort("in", 5, 5))),
              (std::vector<std::wstring>{L"P(5)"}));
}

TEST(DevicePins, AbsurdRangeIsListedInPart) {
    EXPECT_EQ(OmDevicePins(MakeDeviceWithPort("in", 0, 2147483647)).GetChoices().size(), 65536u);
    EXPECT_EQ(OmDevicePins(MakeDeviceWithPort("in", 2147483647, 0)).GetChoices().size(), 65536u);
}

TEST(DevicePins, KnowWhatTheBoundaryRegisterCanDo) {
    const OmDevicePins pins(MakePinDevice());

    const struct {
        const char* port;
        int bit;
        bool drives;
        bool senses;
    } cases[] = {{"DATA", 3, true, true},
                 {"ADDR", 3, true, false},
                 {"SEL", -1, true, false},
                 {"IN", -1, false, true},
                 {"NC", -1, false, false}};

    for (const auto& c : cases) {
        const OmPinChoice* pin = pins.Find(c.port, c.bit);
        ASSERT_NE(pin, nullptr) << c.port;
        EXPECT_EQ(pin->canDrive, c.drives) << c.port;
        EXPECT_EQ(pin->canSense, c.senses) << c.port;
    }
}

TEST(DevicePins, FindIgnoresCaseAndKnowsBitsOnly) {
    const OmDevicePins pins(MakePinDevice());
    EXPECT_NE(pins.Find("data", 15), nullptr);
    EXPECT_EQ(pins.Find("data", 16), nullptr);
    EXPECT_EQ(pins.Find("data", -1), nullptr);
    EXPECT_EQ(pins.Find("VCC", 1), nullptr);
}

TEST(DevicePins, TypedTextNamesAPin) {
    const struct {
        const wchar_t* text;
        const wchar_t* found;
    } cases[] = {
        {L"D3 / DATA(3)", L"D3 / DATA(3)"},
        {L"d3", L"D3 / DATA(3)"},
        {L" DATA(3) ", L"D3 / DATA(3)"},
        {L"data3", L"D3 / DATA(3)"},
        {L"data 3", L"D3 / DATA(3)"},
        {L"addr(12)", L"A12 / ADDR(12)"},
        {L"sel", L"B1 / SEL"},
        {L"se", L"B1 / SEL"}, // the only one that it can become
        {L"B1", L"B1 / SEL"},
        {L"b", L"(none)"}, // B1 or B2
        {L"data", L"(none)"},
        {L"data99", L"(none)"},
        {L"", L"(none)"},
        {L"   ", L"(none)"},
        {L"VCC(1)", L"(none)"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(Found(c.text), c.found) << c.text;
}

// "A1" is the ball A1 and also bit 1 of a port A.
TEST(DevicePins, PackagePinGoesBeforePort) {
    auto data = std::make_unique<OmBsdlData>();
    data->AddPort("A", "out", 0, 1);
    data->AddPort("X", "out", -1, -1);
    data->AddPinMapEntry("M", "X", -1, "A1");
    OmChainDevice device;
    device.SetBsdl(std::move(data), "");
    const OmDevicePins pins(device);
    EXPECT_EQ(pins.FindByText(L"a1")->text, L"A1 / X");
    EXPECT_EQ(pins.FindByText(L"a(1)")->text, L"A(1)");
}

TEST(DevicePins, NameMustBeComplete) {
    const OmDevicePins pins(MakePinDevice());
    EXPECT_EQ(pins.FindByName(L"se"), nullptr);
    EXPECT_NE(pins.FindByName(L"SEL"), nullptr);
}

TEST(DevicePins, FilterLeavesWhatTheTextCanBecome) {
    const OmDevicePins pins(MakePinDevice());
    EXPECT_EQ(pins.Filter(L"").size(), 43u);
    EXPECT_EQ(pins.Filter(L"data1").size(), 7u); // 1, 10 to 15
    EXPECT_EQ(pins.Filter(L"a2").size(), 5u);    // balls A2, A20 to A23
    EXPECT_EQ(pins.Filter(L"ddr").size(), 24u);  // inside the name of a port
    EXPECT_TRUE(pins.Filter(L"zzz").empty());
}

TEST(ChainPins, FormatPins) {
    const std::vector<OmChainDevice> devices{MakePinDevice()};
    const OmChainPins pins(devices);
    EXPECT_EQ(pins.FormatPin({0, "data", 3}), L"D3 / DATA(3)");
    EXPECT_EQ(pins.FormatPin({0, "VCC", 1}), L"VCC(1)"); // cannot be chosen
    EXPECT_EQ(pins.FormatPin({7, "X", -1}), L"X");       // no such device
}

TEST(ChainPins, AreWorkedOutAnewAfterForget) {
    std::vector<OmChainDevice> devices{MakePinDevice()};
    OmChainPins pins(devices);
    EXPECT_EQ(pins.FormatPin({0, "SEL", -1}), L"B1 / SEL");
    devices[0].PinMapping = "QFP";
    pins.Forget();
    EXPECT_EQ(pins.FormatPin({0, "SEL", -1}), L"100 / SEL");
}
