#include "flash/ChainConformity.h"

#include "setup/DesignSetup.h"

#include <gtest/gtest.h>

namespace {

constexpr char kArmPattern[] = "00000100101110100000010001110111";        // 04BA0477h
constexpr char kAnyVersionPattern[] = "XXXX0100101110100000010001110111"; // xxxx in bits 31 to 28
constexpr uint32_t kArmIdcode = 0x04BA0477;

OmBitVector Idcode(uint32_t value) {
    OmBitVector bits;
    for (unsigned i = 0; i < 32; ++i)
        bits.push_back((value >> i) & 1);
    return bits;
}

OmBsdlData BsdlWith(std::vector<std::string> patterns, const std::string& entity = "CHIP") {
    OmBsdlData bsdl;
    bsdl.entity = entity;
    bsdl.idcodes = std::move(patterns);
    return bsdl;
}

// A device of that IR length and, unless `patterns` is empty, with BSDL data.
OmChainDevice Device(int irLength, std::vector<std::string> patterns = {},
                     const std::string& entity = "CHIP") {
    OmChainDevice device;
    device.IRLen = irLength;
    device.Idcode = Idcode(kArmIdcode);
    if (!patterns.empty())
        device.SetBsdl(std::make_unique<OmBsdlData>(BsdlWith(std::move(patterns), entity)), "");
    return device;
}

OmDesignSetup SetupOf(std::vector<OmChainDevice> devices) {
    OmDesignSetup setup;
    setup.devices = std::move(devices);
    return setup;
}

// The stream is written in the order in which it came out, nearest TDO first.
OmBitVector Stream(const std::string& text) {
    OmBitVector bits;
    for (const char c : text)
        bits.push_back(c == '1');
    return bits;
}

constexpr wchar_t kWrongCount[] =
    L"The detected JTAG chain does not conform to current setup:\n"
    L"number of detected devices is different from what is specified in the setup.";
constexpr wchar_t kWrongIr[] =
    L"The detected JTAG chain does not conform to current setup:\nthe detected IR length and the "
    L"IR "
    L"length set by user (manually or by means of a BSDL file) are different at least for one of "
    L"the devices.";

} // namespace

TEST(ChainConformity, IrStreamIsSplitFromTheDeviceNearestTdo) {
    struct Case {
        std::vector<int> lengths; // device 0 first
        const char* stream;
        bool match;
    };

    const Case cases[] = {
        {{4}, "1000", true},
        {{4}, "10000", false}, // one bit too many
        {{4}, "100", false},   // one too few
        {{4}, "1100", false},  // second capture bit
        {{4}, "0000", false},  // first capture bit
        {{2}, "10", true},
        {{2}, "1", false},           // the second bit lies outside
        {{4, 5}, "100001000", true}, // 5 bits of the last device come first
        {{5, 4}, "100001000", false},
        {{4, 5}, "10000100", false},
        {{4, 5}, "10000", false}, // nothing left for device 0
        {{-1}, "1000", false},
        {{1}, "10", false},
        {{}, "10", false},
        {{4}, "", false},
    };
    for (const Case& c : cases) {
        std::vector<OmChainDevice> devices;
        for (const int length : c.lengths)
            devices.push_back(Device(length));
        EXPECT_EQ(IrLengthsMatch(devices, Stream(c.stream)), c.match)
            << c.lengths.size() << " devices, " << c.stream;
    }
}

TEST(ChainConformity, IdcodeIsComparedWithEveryPattern) {
    struct Case {
        OmBitVector detected;
        std::vector<std::string> patterns;
        bool match;
        bool versionOnly;
    };

    const std::string other = "00001111000011110000111100001111";
    const Case cases[] = {
        {Idcode(kArmIdcode), {kArmPattern}, true, false},
        {Idcode(kArmIdcode), {other, kArmPattern}, true, false},
        {Idcode(0x34BA0477), {kAnyVersionPattern}, true, false},
        {Idcode(0x14BA0477), {kArmPattern}, false, true},  // bit 28 alone
        {Idcode(0x84BA0477), {kArmPattern}, false, true},  // bit 31 alone
        {Idcode(0x0CBA0477), {kArmPattern}, false, false}, // bit 27
        {Idcode(0x14BA0475), {kArmPattern}, false, false}, // bit 1 and bit 28
        {Idcode(0x14BA0477), {kArmPattern, other}, false, true},
        {Idcode(kArmIdcode), {}, false, false}, // BSDL data without an IDCODE
        {{}, {kArmPattern}, true, false},
        {{0}, {}, true, false}, // BYPASS only, on both sides
        {{0}, {kArmPattern}, false, false},
        {OmBitVector(31, 1), {kArmPattern}, false, false},
        {Idcode(kArmIdcode), {"0100"}, false, false}, // a pattern of the wrong length
    };
    int number = 0;
    for (const Case& c : cases) {
        bool versionOnly = true;
        EXPECT_EQ(IdcodeMatches(c.detected, BsdlWith(c.patterns), versionOnly), c.match) << number;
        EXPECT_EQ(versionOnly, c.versionOnly) << number;
        ++number;
    }
}

TEST(ChainConformity, DeviceCountsMustAgree) {
    struct Case {
        size_t inSetup;
        size_t found;
        bool atmelBug;
        bool good;
    };

    const Case cases[] = {
        {2, 2, false, true}, {2, 3, false, false}, {2, 1, false, false},
        {3, 1, true, true},  {1, 1, true, true},   {1, 2, true, false},
    };
    for (const Case& c : cases) {
        const OmDesignSetup setup = SetupOf(std::vector<OmChainDevice>(c.inSetup));
        std::wstring errors;
        const OmDetectedChain chain{std::vector<OmBitVector>(c.found), c.atmelBug};
        EXPECT_EQ(CheckDeviceCount(setup, chain, errors), c.good);
        EXPECT_EQ(errors, c.good ? L"" : kWrongCount) << c.inSetup << " " << c.found;
    }
}

TEST(ChainConformity, UnknownIrLengthIsTakenFromTheCaptureWhenOnlyOneFits) {
    OmDesignSetup setup = SetupOf({Device(-1), Device(4)});
    std::wstring errors;
    EXPECT_TRUE(CheckIrLengths(setup, Stream("100010000"), errors));
    EXPECT_EQ(errors, L"");
    EXPECT_EQ(setup.devices[0].GetIRLength(), 5);
    EXPECT_EQ(setup.devices[1].GetIRLength(), 4);
}

TEST(ChainConformity, UnknownIrLengthOnTheFirstDeviceIsNamedEvenIfTheOthersAreFine) {
    // Two unknown devices and three places where a register could begin: no single solution.
    OmDesignSetup setup = SetupOf({Device(-1, {kArmPattern}, "FIRST"), Device(-1), Device(4)});
    std::wstring errors;
    EXPECT_FALSE(CheckIrLengths(setup, Stream("1000101010"), errors));
    EXPECT_EQ(errors,
              L"The IR (Instruction Register) length of Dev1 (FIRST) device is unknown.\nPlease, "
              L"specify either the BSDL file or the IR length for this or some other device(s).");
}

TEST(ChainConformity, WrongIrLengthIsAnError) {
    OmDesignSetup setup = SetupOf({Device(5)});
    std::wstring errors;
    EXPECT_FALSE(CheckIrLengths(setup, Stream("1000"), errors));
    EXPECT_EQ(errors, kWrongIr);
}

TEST(ChainConformity, MismatchesAreListedInChainOrder) {
    const OmDesignSetup setup =
        SetupOf({Device(4, {kArmPattern}, "ONE"), Device(4), Device(4, {kArmPattern}, "THREE")});
    const OmDetectedChain chain{{Idcode(0x24BA0477), Idcode(1), Idcode(0x00000001)}, false};
    EXPECT_EQ(
        CheckIdcodes(setup, chain, nullptr),
        L"The detected IDCODE of the Dev1 (ONE) device and the IDCODE from the specified BSDL "
        L"file have different version fields.\n\n"
        L"The BSDL file specified for the Dev3 (THREE) device does not conform to this "
        L"device's detected IDCODE.\n\n");
}

TEST(ChainConformity, BypassAgainstAnIdcodeIsAMismatch) {
    const wchar_t text[] = L"The BSDL file specified for the Dev1 (CHIP) device does not conform "
                           L"to this device's detected IDCODE.\n\n";
    const OmDesignSetup setup = SetupOf({Device(4, {kArmPattern})});
    EXPECT_EQ(CheckIdcodes(setup, {{{0}}, false}, nullptr), text);

    OmDesignSetup without = SetupOf({Device(4)});
    without.devices[0].SetBsdl(std::make_unique<OmBsdlData>(BsdlWith({})), "");
    EXPECT_EQ(CheckIdcodes(without, {{Idcode(kArmIdcode)}, false}, nullptr), text);
}

TEST(ChainConformity, WalkEndsAtADeviceWithoutADetectedIdcode) {
    OmDesignSetup setup = SetupOf({Device(4, {kArmPattern}), Device(4), Device(4, {kArmPattern})});
    setup.devices[1].Idcode.clear();
    const OmDetectedChain chain{{Idcode(3), Idcode(3), Idcode(kArmIdcode)}, false};
    EXPECT_EQ(CheckIdcodes(setup, chain, nullptr), L"");
}

TEST(ChainConformity, BehindTheAtmelBugOnlyTheDevicesSeenAreCompared) {
    const OmDesignSetup setup =
        SetupOf({Device(4, {kArmPattern}, "HIDDEN"), Device(4, {kArmPattern}, "SEEN")});
    const OmDetectedChain chain{{Idcode(3)}, true};
    EXPECT_EQ(
        CheckIdcodes(setup, chain, nullptr),
        L"The BSDL file specified for the Dev2 (SEEN) device does not conform to this device's "
        L"detected IDCODE.\n\n");
}

TEST(ChainConformity, AcceptedMismatchIsSilentUntilANewOneJoinsIt) {
    OmDesignSetup setup =
        SetupOf({Device(4, {kArmPattern}, "ONE"), Device(4, {kArmPattern}, "TWO")});
    OmDetectedChain chain{{Idcode(kArmIdcode), Idcode(0x14BA0477)}, false};
    OmAcceptedMismatches accepted;
    EXPECT_NE(CheckIdcodes(setup, chain, &accepted), L"");
    ASSERT_EQ(accepted.size(), 1u);
    EXPECT_EQ(accepted[0].idcode, Idcode(0x14BA0477));
    EXPECT_EQ(accepted[0].patterns, std::vector<std::string>{kArmPattern});

    EXPECT_EQ(CheckIdcodes(setup, chain, &accepted), L"");

    chain.idcodes[0] = Idcode(0x74BA0477);
    const std::wstring both = CheckIdcodes(setup, chain, &accepted);
    EXPECT_NE(both.find(L"Dev1 (ONE)"), std::wstring::npos);
    EXPECT_NE(both.find(L"Dev2 (TWO)"), std::wstring::npos);
    EXPECT_EQ(accepted.size(), 2u);
}

TEST(ChainConformity, AcceptanceHoldsForTheSamePatternsOnly) {
    OmDesignSetup setup = SetupOf({Device(4, {kArmPattern})});
    const OmDetectedChain chain{{Idcode(0x14BA0477)}, false};
    OmAcceptedMismatches accepted;
    CheckIdcodes(setup, chain, &accepted);
    setup.devices[0].bsdl->idcodes.push_back("00001111000011110000111100001111");
    EXPECT_NE(CheckIdcodes(setup, chain, &accepted), L"");
}
