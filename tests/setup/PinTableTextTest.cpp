#include "setup/PinTableText.h"

#include "setup/DevicePins.h"
#include "setup/SignalRows.h"
#include "tests/setup/PinDevice.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

namespace {

const std::vector<OmChainDevice> kDevices{MakePinDevice()};
const OmChainPins kChain(kDevices);

// "line: text" for each problem.
std::vector<std::wstring> Texts(const std::vector<OmPasteProblem>& problems) {
    std::vector<std::wstring> texts;
    for (const OmPasteProblem& problem : problems)
        texts.push_back(std::to_wstring(problem.line) + L": " + problem.text);
    return texts;
}

using Problems = std::vector<std::wstring>;

} // namespace

TEST(PinTableText, SignalsAreLinesOfTheColumns) {
    OmDesignSetup setup = MakePinSetup();
    setup.ce = SignalPin{{0, "SEL", -1}, true};
    setup.addressPins[0] = SignalPin{{0, "ADDR", 0}};
    EXPECT_EQ(FormatSignalTable(setup, kChain, {0, 1, 3}), L"CE\tDev1 (chip)\tB1 / SEL\thigh\n"
                                                           L"OE\t\t\t\n"
                                                           L"A0\tDev1 (chip)\tA0 / ADDR(0)\t\n");
}

TEST(PinTableText, StaticPinsAreLinesOfTheColumns) {
    OmDesignSetup setup;
    setup.staticPins = {StaticPin{{0, "SEL", -1}, 'Z', L"a\tb\nc"}};
    EXPECT_EQ(FormatStaticTable(setup, kChain, {0}), L"Dev1 (chip)\tB1 / SEL\tZ\ta b c\n");
}

TEST(PinTableText, CopiedSignalsCanBePasted) {
    OmDesignSetup setup = MakePinSetup();
    setup.ce = SignalPin{{0, "SEL", -1}, true};
    setup.oe = SignalPin{{0, "NC", -1}, false};
    for (int bit = 0; bit < 16; ++bit)
        setup.dataPins[static_cast<size_t>(bit)] = SignalPin{{0, "DATA", 15 - bit}};
    std::vector<int> all;
    for (int row = 0; row < kSignalRowCount; ++row)
        all.push_back(row);
    const OmSignalPaste paste = ParseSignalTable(FormatSignalTable(setup, kChain, all), kChain);
    EXPECT_EQ(Texts(paste.problems), Problems());
    OmDesignSetup pasted = MakePinSetup();
    ApplyPaste(pasted, paste);
    EXPECT_EQ(pasted, setup);
}

TEST(PinTableText, PinsAreNamedInManyWays) {
    for (const wchar_t* line :
         {L"a3\tDev1 (chip)\tA3 / ADDR(3)", L"A3\tdev1\taddr(3)", L"A3\tCHIP\tA3", L"A3\t\taddr3",
          L" A3 \t Dev1 \t ADDR(3) \t\t more\r\n"}) {
        const OmSignalPaste paste = ParseSignalTable(line, kChain);
        EXPECT_EQ(Texts(paste.problems), Problems()) << line;
        ASSERT_EQ(paste.rows.size(), 1u) << line;
        EXPECT_EQ(paste.rows[0].first, kFirstAddressRow + 3);
        EXPECT_EQ(paste.rows[0].second, (SignalPin{{0, "ADDR", 3}}));
    }
}

TEST(PinTableText, HeadingsAndEmptyLinesArePassedOver) {
    const OmSignalPaste paste = ParseSignalTable(
        L"Flash pin\tJTAG device\tJTAG device pin\tActive\n\n\t\t\nA0\t\tA0\n", kChain);
    EXPECT_EQ(Texts(paste.problems), Problems());
    EXPECT_EQ(paste.rows.size(), 1u);
}

TEST(PinTableText, LineWithoutAPinEmptiesItsRow) {
    const OmSignalPaste paste = ParseSignalTable(L"A0\t\t\t\n", kChain);
    ASSERT_EQ(paste.rows.size(), 1u);
    OmDesignSetup setup = MakePinSetup();
    setup.addressPins[0] = SignalPin{{0, "SEL", -1}};
    ApplyPaste(setup, paste);
    EXPECT_FALSE(setup.addressPins[0].IsConnected());
}

TEST(PinTableText, BadLinesSayWhy) {
    const OmSignalPaste paste = ParseSignalTable(L"A0\tDev1\tADDR(0)\n"
                                                 L"A32\tDev1\tADDR(0)\n"
                                                 L"A1\tDev7\tADDR(1)\n"
                                                 L"A2\tDev1\tADDR(99)\n"
                                                 L"A3\tDev1\tse\n"
                                                 L"A0\tDev1\tADDR(4)\n"
                                                 L"CE\tDev1\tSEL\n"
                                                 L"OE\tDev1\tSEL\tlow\n",
                                                 kChain);
    EXPECT_EQ(
        Texts(paste.problems),
        (Problems{L"2: there is no flash pin \"A32\"", L"3: there is no device \"Dev7\"",
                  L"4: Dev1 (chip) has no pin \"ADDR(99)\"", L"5: Dev1 (chip) has no pin \"se\"",
                  L"6: A0 stands in a line above already",
                  L"7: the active level must be \"high\" or \"low\""}));
    EXPECT_EQ(paste.rows.size(), 2u);
}

TEST(PinTableText, DeviceMustBeClear) {
    const std::vector<OmChainDevice> twins{MakePinDevice(), MakePinDevice()};
    const OmChainPins chain(twins);
    const OmSignalPaste paste =
        ParseSignalTable(L"A0\t\tADDR(0)\nA1\tchip\tADDR(1)\nA2\tDev2\tADDR(2)\n", chain);
    EXPECT_EQ(Texts(paste.problems),
              (Problems{L"1: the device is missing", L"2: there is no device \"chip\""}));
    ASSERT_EQ(paste.rows.size(), 1u);
    EXPECT_EQ(paste.rows[0].second.Device, 1);
}

TEST(PinTableText, StaticPinsAreReadWithValueAndNote) {
    const OmStaticPaste paste = ParseStaticTable(L"JTAG device\tJTAG device pin\tPin value\tNote\n"
                                                 L"Dev1\tB1\tz\thold\n"
                                                 L"Dev1\tIN\t1\n"
                                                 L"Dev1\tSEL\t0\n"
                                                 L"Dev1\tNC\t2\n"
                                                 L"Dev1\tDATA\t0\n",
                                                 kChain);
    EXPECT_EQ(paste.pins, (std::vector<StaticPin>{StaticPin{{0, "SEL", -1}, 'Z', L"hold"},
                                                  StaticPin{{0, "IN", -1}, 1, L""}}));
    EXPECT_EQ(Texts(paste.problems), (Problems{L"4: SEL stands in a line above already",
                                               L"5: the pin value must be 0, 1 or Z",
                                               L"6: Dev1 (chip) has no pin \"DATA\""}));
}

TEST(PinTableText, StaticPinThatIsThereGetsTheNewValue) {
    OmDesignSetup setup;
    setup.staticPins = {StaticPin{{0, "SEL", -1}, 0, L"old"}, StaticPin{{0, "IN", -1}, 1, L""}};
    ApplyPaste(setup, ParseStaticTable(L"\tSEL\t1\tnew\n\tNC\tZ\n", kChain));
    EXPECT_EQ(setup.staticPins, (std::vector<StaticPin>{StaticPin{{0, "SEL", -1}, 1, L"new"},
                                                        StaticPin{{0, "IN", -1}, 1, L""},
                                                        StaticPin{{0, "NC", -1}, 'Z', L""}}));
}

TEST(PinTableText, GoodLinesAreTakenWithoutAQuestion) {
    const RecordingUserInterface boxes;
    EXPECT_TRUE(ConfirmPaste(3, {}));
}

TEST(PinTableText, UserDecidesWhetherTheGoodLinesAreTaken) {
    for (const OmAnswer answer : {OmAnswer::Yes, OmAnswer::No}) {
        RecordingUserInterface boxes;
        boxes.Expect(L"Some lines cannot be used:\n\nLine 2: why.\n\nDo you wish to take 3 other "
                     L"lines?",
                     kWarningQuestionBox, answer);
        EXPECT_EQ(ConfirmPaste(3, {{2, L"why"}}), answer == OmAnswer::Yes);
    }
}

TEST(PinTableText, NothingUsableIsOnlyTold) {
    RecordingUserInterface boxes;
    boxes.Expect(L"There is no table of pins in the clipboard.", kWarningBox);
    EXPECT_FALSE(ConfirmPaste(0, {}));
    boxes.Expect(L"None of the lines can be used:\n\nLine 1: why.\n", kWarningBox);
    EXPECT_FALSE(ConfirmPaste(0, {{1, L"why"}}));
}

TEST(PinTableText, OnlySoManyProblemsAreListed) {
    RecordingUserInterface boxes;
    EXPECT_TRUE(boxes.shown.empty());
    std::wstring listed;
    for (int line = 1; line <= 20; ++line)
        listed += L"Line " + std::to_wstring(line) + L": why.\n";
    boxes.Expect(L"None of the lines can be used:\n\n" + listed + L"... and 5 more.\n",
                 kWarningBox);
    std::vector<OmPasteProblem> problems;
    for (size_t line = 1; line <= 25; ++line)
        problems.push_back({line, L"why"});
    EXPECT_FALSE(ConfirmPaste(0, problems));
}
