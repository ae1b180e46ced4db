// The chain through the vendor interface: IDCODE, bypass, instruction capture, pins under EXTEST.

#include "tests/virtualboard/TestPod.h"
#include "virtualboard/BoardBuilder.h"
#include "virtualboard/BoardFile.h"
#include "virtualboard/CurrentBoard.h"

#include <gtest/gtest.h>

using vb_test::Bits;
using vb_test::TestPod;
using vb_test::ToNumber;

namespace {

// U1 auxiliary, U2 and U3 with the flash: instruction lengths 4, 5 and 6.
vb::BuiltBoard ThreeDevices() {
    return vb::BoardBuilder().UnusedBefore(1).Devices(2).Build();
}

} // namespace

TEST(Chain, IdcodesComeOutAfterResetFromTheDeviceNearestTdo) {
    ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    const Bits out = pod.ScanDr(Bits(3 * 32 + 4, true));
    EXPECT_EQ(ToNumber(out, 0, 32), 0x1A003F01u);  // U3
    EXPECT_EQ(ToNumber(out, 32, 32), 0x1A002F01u); // U2
    EXPECT_EQ(ToNumber(out, 64, 32), 0x1A001F01u); // U1
    EXPECT_EQ(ToNumber(out, 96, 4), 0xFu);         // what went in first
}

TEST(Chain, BypassIsOneZeroForEachDevice) {
    ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    pod.ScanIr(std::string(15, '1'));
    EXPECT_EQ(pod.ScanDr("10110111"), "10111000");
}

TEST(Chain, InstructionCaptureShowsEachLength) {
    ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    EXPECT_EQ(pod.ScanIr(std::string(15, '1')), "000100001000001");
}

TEST(Chain, UnknownOpcodeSelectsBypass) {
    ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    pod.ScanIr("1010" // U1: no such instruction
               "11111"
               "111111");
    EXPECT_EQ(pod.ScanDr("1111111"), "1111000");
}

TEST(Chain, LongShiftPassesThroughUnchanged) {
    ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    pod.ScanIr(std::string(15, '1'));
    Bits in;
    for (int i = 0; i < 1000; ++i)
        in.push_back(i * i % 7 < 3);
    const Bits out = pod.ScanDr(in);
    const Bits tail(out.begin() + 3, out.end());
    const Bits head(in.begin(), in.end() - 3);
    EXPECT_EQ(tail, head);
}

TEST(Chain, PauseAndGoOnShiftsTheSameRegister) {
    ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    // 16 bits, Exit1, Pause, Exit2, Shift, 16 bits: U3's IDCODE in two halves.
    const auto answer = pod.Exchange({0x4B, 0x02, 0x81,              //
                                      0x39, 0x00, 0x00,        0xFF, //
                                      0x3B, 0x06, 0x7F,              //
                                      0x6B, 0x00, 0x81,              // to Exit1-DR
                                      0x4B, 0x03, 0x84 | 0x00,       // Pause, Pause, Exit2, Shift
                                      0x39, 0x01, 0x00,        0xFF, 0xFF, //
                                      0x87},
                                     5);
    ASSERT_EQ(answer.size(), 5u);
    EXPECT_EQ(answer[0], 0x01);      // bits 0 to 7
    EXPECT_EQ(answer[1] >> 1, 0x3F); // bits 8 to 14
    EXPECT_EQ(answer[2] >> 7, 0);    // bit 15
    EXPECT_EQ(answer[3], 0x00);
    EXPECT_EQ(answer[4], 0x1A);
}

TEST(Chain, ExtestMovesAPinAndTheOtherDeviceSeesIt) {
    vb::DevicePlan plan;
    plan.entity = "VELTEST_PORT";
    plan.idcode = 0x1A001F01;
    plan.ports = {{"X", 2, vb::PinStyle::Separate}}; // cells: control, output, input; twice
    vb::InstallBoard(vb::ReadBoard("device U1 a.bsd\ndevice U2 a.bsd\nnet LINK U1.X(1) U2.X(1)\n",
                                   [&plan](const std::string&) { return vb::WriteBsdl(plan); }));
    vb::Board& board = *vb::CurrentBoard();
    TestPod pod;
    pod.ResetTap();
    pod.ScanIr("00010001"); // PRELOAD
    // U1 on the left: X(1) driven low, the rest released by control cells at 1.
    pod.ScanDr("000001"
               "001001");
    EXPECT_EQ(board.LevelOf("LINK").state, vb::NetState::Core);
    pod.ScanIr("00000000"); // EXTEST
    EXPECT_EQ(board.LevelOf("LINK"), (vb::NetLevel{false, vb::NetState::Driven}));
    const std::string high = "010001"
                             "001001";
    // Inputs that hang on no net read 1. The link's two inputs, bits 11 and 5, follow the update
    // before; output and control cells show their latches.
    EXPECT_EQ(pod.ScanDr(high), "000101"
                                "001101");
    EXPECT_EQ(pod.ScanDr(high), "110101"
                                "101101");
    EXPECT_EQ(board.LevelOf("LINK"), (vb::NetLevel{true, vb::NetState::Driven}));
}

TEST(Chain, DeviceThatMasksTdiSendsOnesBehindItsIdcode) {
    vb::BoardBuilder()
        .Devices(2)
        .UnusedBefore(1)
        .Line("fault idcode-masks-tdi U2")
        .Build()
        .Install();
    TestPod pod;
    pod.ResetTap();
    const Bits out = pod.ScanDr(Bits(128, false));
    EXPECT_EQ(ToNumber(out, 0, 32), 0x1A003F01u);
    EXPECT_EQ(ToNumber(out, 32, 32), 0x1A002F01u);
    EXPECT_EQ(ToNumber(out, 64, 64), ~uint64_t{0}); // U1 cannot be seen
}

TEST(Chain, DeviceThatMasksTdiStillPassesInstructionsOn) {
    vb::BoardBuilder()
        .Devices(2)
        .UnusedBefore(1)
        .Line("fault idcode-masks-tdi U2")
        .Build()
        .Install();
    TestPod pod;
    pod.ResetTap();
    EXPECT_EQ(pod.ScanIr("101000000000000000000").substr(0, 6), "000000");
    pod.ScanIr(std::string(15, '1')); // BYPASS everywhere: the fault is gone
    EXPECT_EQ(pod.ScanDr("10110111"), "10111000");
}

TEST(Chain, CellTypesDecideWhatIsCapturedUnderExtest) {
    const std::string bsdl = "entity CELLS is\n"
                             "port (X, Y : inout bit);\n"
                             "attribute INSTRUCTION_LENGTH of CELLS : entity is 2;\n"
                             "attribute INSTRUCTION_OPCODE of CELLS : entity is\n"
                             "\"EXTEST (00), SAMPLE (01), BYPASS (11)\";\n"
                             "attribute BOUNDARY_LENGTH of CELLS : entity is 4;\n"
                             "attribute BOUNDARY_REGISTER of CELLS : entity is\n"
                             "\"0 (BC_2, *, control, 0), 1 (BC_2, X, output3, X, 0, 0, Z),\" &\n"
                             "\"2 (BC_1, *, control, 0), 3 (BC_1, Y, output3, X, 2, 0, Z)\";\n"
                             "end CELLS;\n";
    for (const bool faulty : {false, true}) {
        vb::InstallBoard(vb::ReadBoard(std::string("device U1 cells\n") +
                                           (faulty ? "fault control-captures-enabled U1\n" : ""),
                                       [bsdl](const std::string&) { return bsdl; }));
        TestPod pod;
        pod.ResetTap();
        pod.ScanIr("01");
        pod.ScanDr("1111");
        pod.ScanIr("00");
        // BC_2 shows its own latch. BC_1 shows the core, which releases its pins; with the fault
        // every control cell shows the value that drives.
        EXPECT_EQ(pod.ScanDr("0000"), faulty ? "0101" : "0011");
        EXPECT_EQ(pod.ScanDr("0000"), faulty ? "0101" : "0000");
    }
}

TEST(Chain, StuckTdoAndNoPower) {
    struct Case {
        const char* line;
        bool level;
    };

    for (const Case& test : {Case{"fault tdo-stuck 0", false}, Case{"fault tdo-stuck 1", true},
                             Case{"fault no-power", true}}) {
        vb::BoardBuilder().Line(test.line).Build().Install();
        TestPod pod;
        pod.ResetTap();
        EXPECT_EQ(pod.ScanDr(Bits(100, !test.level)), Bits(100, test.level)) << test.line;
    }
}

TEST(Chain, CountsScansAndCycles) {
    vb::Board& board = vb::BoardBuilder().Devices(1).Build().Install();
    TestPod pod;
    board.ClearStatistics();
    pod.ResetTap();
    pod.ScanIr("1111");
    pod.ScanDr("1010101010101");
    EXPECT_EQ(board.Chain().InstructionScans(), 1u);
    EXPECT_EQ(board.Chain().DataScans(), 1u);
    // Six for the reset; then the way to the shift state, the bits, and two to Run-Test/Idle.
    EXPECT_EQ(board.Clock().Cycles(), 6u + (4 + 4 + 2) + (3 + 13 + 2));
}

TEST(Chain, TraceHoldsEveryCycleWithItsStateAndLevels) {
    vb::Board& board = ThreeDevices().Install();
    TestPod pod;
    pod.ResetTap();
    std::vector<vb::TckCycle> trace;
    board.Chain().SetTrace(&trace);
    pod.ScanDr("1" // whole bytes, a rest of one bit and the last bit
               "0"
               "00000011");
    board.Chain().SetTrace(nullptr);
    pod.ScanDr("1");
    std::string text;
    for (const vb::TckCycle& cycle : trace)
        text += std::string(vb::TapStateName(cycle.state)) + (cycle.tms ? " 1" : " 0") +
                (cycle.tdi ? "1\n" : "0\n");
    std::string shifts = "Shift-DR 01\nShift-DR 01\n";
    for (int i = 0; i < 7; ++i)
        shifts += "Shift-DR 00\n";
    EXPECT_EQ(text, "Run-Test/Idle 11\nSelect-DR-Scan 01\nCapture-DR 01\n" + shifts +
                        "Shift-DR 11\nExit1-DR 10\nUpdate-DR 00\n");
}
