// Every MPSSE command of AN_108, by hand-written bytes against a chain of one device in BYPASS:
// what is shifted in comes out one bit later.

#include "tests/virtualboard/TestPod.h"
#include "virtualboard/BoardBuilder.h"
#include "virtualboard/CurrentBoard.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

using vb_test::TestPod;
using Bytes = std::vector<uint8_t>;

namespace {

class Mpsse : public testing::Test {
  protected:
    void SetUp() override { Plug(""); }

    void Plug(const std::string& line) {
        pod_.reset();
        vb::BoardBuilder().Devices(1).Line(line).Build().Install();
        pod_ = std::make_unique<TestPod>();
        pod_->ResetTap();
        pod_->ScanIr("1111"); // BYPASS
    }

    // With the TAP in Shift-DR, BYPASS holding its captured 0, and TDI low.
    Bytes InShift(const Bytes& command, size_t answers) {
        pod_->Send({0x4B, 0x02, 0x01});
        Bytes program = command;
        program.push_back(0x87);
        Bytes answer = pod_->Exchange(program, answers);
        pod_->Send({0x4B, 0x02, 0x03}); // to Run-Test/Idle
        return answer;
    }

    uint64_t Cycles() { return vb::CurrentBoard()->Clock().Cycles(); }

    std::unique_ptr<TestPod> pod_;
};

} // namespace

TEST_F(Mpsse, DataShiftingCommands) {
    struct Case {
        Bytes command;
        Bytes answer;
    };

    // BYPASS delays by one bit. 1011 0001 = B1h, low bit first: 1,0,0,0,1,1,0,1; out comes a 0 and
    // then 1,0,0,0,1,1,0 = 62h. High bit first: 1,0,1,1,0,0,0,1; out 0,1,0,1,1,0,0,0 = 58h.
    // A command that writes on the rising edge is one bit later still: TDI was low before.
    const Case kCases[] = {
        {{0x39, 0x00, 0x00, 0xB1}, {0x62}}, // bytes, low bit first, out on fall, in on rise
        {{0x3D, 0x00, 0x00, 0xB1}, {0x62}}, // in on fall: the same bits
        {{0x38, 0x00, 0x00, 0xB1}, {0xC4}}, // out on rise: one late
        {{0x3C, 0x00, 0x00, 0xB1}, {0xC4}}, // out on rise, in on fall
        {{0x31, 0x00, 0x00, 0xB1}, {0x58}}, // high bit first
        {{0x34, 0x00, 0x00, 0xB1}, {0x2C}}, // high bit first, out on rise
        {{0x39, 0x01, 0x00, 0xB1, 0xFF}, {0x62, 0xFF}},
        {{0x3B, 0x07, 0xB1}, {0x62}}, // eight bits
        {{0x3E, 0x07, 0xB1}, {0xC4}}, // out on rise
        {{0x33, 0x07, 0xB1}, {0x58}},
        {{0x36, 0x07, 0xB1}, {0x2C}},
        {{0x19, 0x00, 0x00, 0xB1}, {}}, // out only
        {{0x18, 0x00, 0x00, 0xB1}, {}},
        {{0x11, 0x00, 0x00, 0xB1}, {}},
        {{0x10, 0x00, 0x00, 0xB1}, {}},
        {{0x1B, 0x03, 0xB1}, {}},
        {{0x1A, 0x03, 0xB1}, {}},
        {{0x13, 0x03, 0xB1}, {}},
        {{0x12, 0x03, 0xB1}, {}},
        {{0x28, 0x01, 0x00}, {0x00, 0x00}}, // in only: TDI stays low
        {{0x2C, 0x01, 0x00}, {0x00, 0x00}},
        {{0x20, 0x00, 0x00}, {0x00}},
        {{0x24, 0x00, 0x00}, {0x00}},
        {{0x2A, 0x07}, {0x00}},
        {{0x2E, 0x07}, {0x00}},
        {{0x22, 0x07}, {0x00}},
        {{0x26, 0x07}, {0x00}},
        {{0x1B, 0x00, 0x01, 0x28, 0x00, 0x00}, {0xFF}}, // and high after a 1 was left on it
        {{0x4B, 0x03, 0x80, 0x28, 0x00, 0x00}, {0xFF}},
        {{0x4A, 0x03, 0x80, 0x28, 0x00, 0x00}, {0xFF}},
    };
    for (const Case& test : kCases)
        EXPECT_EQ(InShift(test.command, test.answer.size() + 4), test.answer)
            << std::hex << int{test.command[0]};
}

TEST_F(Mpsse, ShortAnswersStandAtTheTopOrTheBottom) {
    // First fill the answer register with ones, then read three bits: 1, 0, 1.
    EXPECT_EQ(InShift({0x39, 0x00, 0x00, 0xFF, 0x39, 0x00, 0x00, 0xFF, 0x3B, 0x02, 0x02}, 3),
              (Bytes{0xFE, 0xFF, 0xBF}));
    EXPECT_EQ(InShift({0x3B, 0x02, 0x05}, 1)[0] >> 5, 0x02); // low bit first: bits 5 to 7
    EXPECT_EQ(InShift({0x33, 0x02, 0xA0}, 1)[0] & 7, 0x02);  // high bit first: bits 2 to 0
}

TEST_F(Mpsse, TmsCommandsReadTheirOneBitAtTheTop) {
    for (uint8_t command : {0x6A, 0x6B, 0x6E, 0x6F}) {
        pod_->Send({0x4B, 0x02, 0x81, 0x1B, 0x00, 0x01}); // Shift-DR, a 1 into BYPASS
        const Bytes answer = pod_->Exchange({command, 0x00, 0x01, 0x87}, 2);
        ASSERT_EQ(answer.size(), 1u);
        EXPECT_EQ(answer[0] >> 7, 1) << int{command};
        pod_->Send({0x4B, 0x01, 0x01});
    }
}

TEST_F(Mpsse, TmsOnTheRisingEdgeComesOneCycleLate) {
    pod_->Send({0x4A, 0x02, 0x01}); // TMS 1, 0, 0 written late: 0 (as before), 1, 0
    EXPECT_EQ(vb::CurrentBoard()->Chain().State(), vb::TapState::CaptureDr);
}

TEST_F(Mpsse, WhileTmsIsHighBytesWalkTheTap) {
    pod_->Send({0x4B, 0x00, 0x01}); // Select-DR-Scan, TMS stays high
    pod_->Send({0x8E, 0x01});       // two clocks: Select-IR-Scan, Test-Logic-Reset
    EXPECT_EQ(vb::CurrentBoard()->Chain().State(), vb::TapState::TestLogicReset);
    EXPECT_EQ(pod_->Exchange({0x39, 0x00, 0x00, 0x55, 0x87}, 1), (Bytes{0xFF})); // TDO pulled up
}

TEST_F(Mpsse, PortsAndTdoPin) {
    EXPECT_EQ(pod_->Exchange({0x80, 0x5A, 0xFB, 0x81, 0x87}, 1), (Bytes{0x5E})); // TDO pulled up
    EXPECT_EQ(pod_->Exchange({0x82, 0x50, 0xF0, 0x83, 0x87}, 1), (Bytes{0x5F}));
    pod_->Send({0x80, 0x0A, 0x0B, 0x4B, 0x02, 0x81});
    EXPECT_EQ(pod_->Exchange({0x81, 0x87}, 1)[0] & 0x04, 0x00); // BYPASS shows its 0
}

TEST_F(Mpsse, BitBangedTckClocksTheTap) {
    const uint64_t before = Cycles();
    pod_->Send({0x80, 0x08, 0x0B, 0x80, 0x09, 0x0B, 0x80, 0x08, 0x0B}); // TMS high, one rise of TCK
    EXPECT_EQ(Cycles() - before, 1u);
    EXPECT_EQ(vb::CurrentBoard()->Chain().State(), vb::TapState::SelectDr);
}

TEST_F(Mpsse, PinsThatAreNoOutputsDriveNothing) {
    // TDI as an input is pulled up: ones go in, whatever the data.
    EXPECT_EQ(InShift({0x80, 0x08, 0x09, 0x39, 0x01, 0x00, 0x00, 0x00, 0x80, 0x08, 0x0B}, 2),
              (Bytes{0xFE, 0xFF}));
    const uint64_t before = Cycles(); // and with TCK an input nothing moves at all
    EXPECT_EQ(pod_->Exchange({0x80, 0x08, 0x0A, 0x39, 0x00, 0x00, 0x00, 0x87}, 1), (Bytes{0xFF}));
    EXPECT_EQ(Cycles(), before);
}

TEST_F(Mpsse, BuffersOfThePodMustBeOpened) {
    Plug("pod FT2232H needs-low=0x0010 needs-high=0x0200");
    const uint64_t before = Cycles();
    const Bytes clock = {0x8E, 0x00};
    for (const Bytes& closed :
         {Bytes{0x80, 0x08, 0x1B, 0x82, 0x00, 0x02}, Bytes{0x80, 0x18, 0x1B, 0x82, 0x02, 0x02},
          Bytes{0x80, 0x08, 0x0B, 0x82, 0x02, 0x02}, Bytes{0x80, 0x08, 0x1B, 0x82, 0x02, 0x00}}) {
        pod_->Send(closed);
        pod_->Send(clock);
        EXPECT_EQ(Cycles(), before);
    }
    pod_->Send({0x80, 0x08, 0x1B, 0x82, 0x02, 0x02});
    pod_->Send(clock);
    EXPECT_EQ(Cycles(), before + 1);
}

TEST_F(Mpsse, LoopbackReturnsWhatGoesOut) {
    EXPECT_EQ(pod_->Exchange({0x84, 0x39, 0x00, 0x00, 0xB1, 0x3B, 0x03, 0x05, 0x85, 0x87}, 2),
              (Bytes{0xB1, 0x5B}));
}

TEST_F(Mpsse, DivisorSetsTheFrequency) {
    struct Case {
        Bytes command;
        uint32_t hertz;
    };

    for (const Case& test :
         {Case{{0x8A, 0x86, 0x00, 0x00}, 30'000'000}, Case{{0x8A, 0x86, 0x02, 0x00}, 10'000'000},
          Case{{0x8B, 0x86, 0x00, 0x00}, 6'000'000}, Case{{0x8A, 0x86, 0x2B, 0x01}, 100'000}}) {
        pod_->Send(test.command);
        EXPECT_EQ(vb::CurrentBoard()->Clock().Frequency(), test.hertz);
    }
}

TEST_F(Mpsse, ClocksWithoutData) {
    uint64_t before = Cycles();
    pod_->Send({0x8E, 0x04});
    EXPECT_EQ(Cycles() - before, 5u);
    before = Cycles();
    pod_->Send({0x8F, 0x01, 0x01});
    EXPECT_EQ(Cycles() - before, 8u * 258);
    before = Cycles();
    pod_->Send({0x9C, 0x01, 0x00}); // GPIOL1 is high already
    EXPECT_EQ(Cycles() - before, 0u);
    pod_->Send({0x9D, 0x01, 0x00}); // and does not go low
    EXPECT_EQ(Cycles() - before, 16u);
}

TEST_F(Mpsse, WaitingForAPinThatDoesNotMoveStalls) {
    EXPECT_EQ(pod_->Exchange({0x88, 0x94, 0x81, 0x87}, 1).size(), 1u);
    EXPECT_EQ(pod_->Exchange({0x89, 0x81, 0x87}, 1).size(), 0u);
    EXPECT_EQ(pod_->Exchange({0x81, 0x87}, 1).size(), 0u); // for ever
}

TEST_F(Mpsse, ThreePhaseClockingChangesNoBit) {
    EXPECT_EQ(InShift({0x8C, 0x39, 0x00, 0x00, 0xB1, 0x8D}, 1), (Bytes{0x62}));
}

TEST_F(Mpsse, AdaptiveClockingNeedsAReturnClock) {
    EXPECT_EQ(InShift({0x96, 0x39, 0x00, 0x00, 0xB1, 0x97}, 1), (Bytes{0x62}));
    Plug("pod FT2232H rtck=no");
    EXPECT_TRUE(InShift({0x96, 0x39, 0x00, 0x00, 0xB1}, 1).empty());
}

TEST_F(Mpsse, BadCommandsAreEchoed) {
    for (uint8_t command : {0xAA, 0xAB, 0x00, 0x40, 0x4C, 0x90, 0x98, 0xFF})
        EXPECT_EQ(pod_->Exchange({command, 0x87}, 3), (Bytes{0xFA, command})) << int{command};
    EXPECT_EQ(vb::CurrentBoard()->PodTraffic().badCommands, 8u);
}

TEST_F(Mpsse, TheOlderPartLacksTheHighSpeedCommands) {
    Plug("pod FT2232C");
    FT_Purge(pod_->Handle(), 3); // the echo of the divide-by-five command that the pod was sent
    EXPECT_EQ(vb::CurrentBoard()->Clock().Frequency(), 6'000'000u);
    for (uint8_t command : {0x8A, 0x8B, 0x8C, 0x8D, 0x96, 0x97})
        EXPECT_EQ(pod_->Exchange({command, 0x87}, 4), (Bytes{0xFA, command})) << int{command};
    EXPECT_EQ(InShift({0x39, 0x00, 0x00, 0xB1}, 1), (Bytes{0x62}));
}

TEST_F(Mpsse, ACommandMayComeInPieces) {
    pod_->Send({0x4B, 0x02, 0x01, 0x39});
    pod_->Send({0x01});
    pod_->Send({0x00, 0xB1});
    EXPECT_TRUE(pod_->Receive(2).empty());
    EXPECT_EQ(pod_->Exchange({0xFF, 0x87}, 2), (Bytes{0x62, 0xFF}));
}
