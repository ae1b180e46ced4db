#include "jtag/UsbBlaster.h"

#include "tests/jtag/FakeUsbBlaster.h"
#include "tests/jtag/ScanHelpers.h"
#include "tests/support/VirtualClock.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;

class UsbBlasterScan : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(cable.Initialize("USB-Blaster", ""));
        d2xx.TakeCalls();
        d2xx.TakeWrites();
        clock.sleptMilliseconds = 0;
    }

    FakeUsbBlaster d2xx;
    VirtualClock clock;
    OmUsbBlaster cable;
};

struct WalkCase {
    bool instruction;
    int from;
    int to;
    const char* in; // pin states as characters
    const char* out;
};

constexpr WalkCase kWalks[] = {
    {false, 0, 1, "<=>?<=<=<", ">?<=<"}, {false, 0, 0, "<=>?<=<=<", "<=<"},
    {false, 0, 2, "<=>?<=<=<", "<=<"},   {false, 1, 1, ">?<=<=<", ">?<=<"},
    {false, 1, 0, ">?<=<=<", "<=<"},     {false, 1, 2, ">?<=<=<", "<=<"},
    {false, 2, 1, ">?<=<", ">?<=<"},     {false, 2, 0, ">?<=<", "<=<"},
    {false, 9, 9, ">?<=<", "<=<"},       {true, 0, 1, "<=>?>?<=<=<", ">?<=<"},
    {true, 0, 0, "<=>?>?<=<=<", "<=<"},  {true, 0, 2, "<=>?>?<=<=<", "<=<"},
    {true, 1, 1, ">?>?<=<=<", ">?<=<"},  {true, 1, 0, ">?>?<=<=<", "<=<"},
    {true, 1, 2, ">?>?<=<=<", "<=<"},    {true, 2, 1, ">?<=<", ">?<=<"},
    {true, 2, 0, ">?<=<", "<=<"},        {true, -1, -1, ">?<=<", "<=<"},
};

const Bytes kFromIdle = Pins(">?<=<=<");
const Bytes kToIdle = Pins(">?<=<");

struct LengthCase {
    const char* in; // leftmost is shifted first
    Bytes body;
    Bytes answer;
    const char* out;
};

} // namespace

TEST_F(UsbBlasterScan, ResetTapIsFiveHighClocksAndALowOne) {
    cable.ResetTap();
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{Pins(">?>?>?>?>?<=<")});
    EXPECT_EQ(d2xx.calls, Calls{"FT_Write 13"});
}

TEST_F(UsbBlasterScan, WalksFromEveryStartToEveryEnd) {
    for (const WalkCase& row : kWalks) {
        d2xx.Answer({0xFE, 0x01}); // only bit 0 counts
        OmBitVector out{9, 9, 9};
        if (row.instruction)
            cable.ScanIR({0, 1}, &out, row.from, row.to);
        else
            cable.ScanDR({0, 1}, &out, row.from, row.to);
        const Bytes program = Pins(row.in) + Bytes{0x2C, 0x6D, 0x3E, 0x7F} + Pins(row.out);
        EXPECT_EQ(d2xx.TakeWrites(), std::vector<Bytes>{program})
            << row.instruction << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{0, 1})) << row.instruction << row.from << row.to;
    }
}

TEST_F(UsbBlasterScan, ScansOfManyLengths) {
    const LengthCase cases[] = {
        {"1", {0x3E, 0x7F}, {0x01}, "1"},
        {"0", {0x2E, 0x6F}, {0x00}, "0"},
        {"10000010",
         {0x3C, 0x7D, 0x2C, 0x6D, 0x2C, 0x6D, 0x2C, 0x6D, //
          0x2C, 0x6D, 0x2C, 0x6D, 0x3C, 0x7D, 0x2E, 0x6F},
         {1, 1, 0, 0, 0, 0, 0, 1},
         "11000001"},
        {"110000101", {0xC1, 0x43, 0x3E, 0x7F}, {0xA5, 0x00}, "101001010"},
        {"11111111010",
         {0xC1, 0xFF, 0x2C, 0x6D, 0x3C, 0x7D, 0x2E, 0x6F},
         {0x80, 1, 0, 1},
         "00000001101"},
    };
    for (const LengthCase& row : cases) {
        d2xx.Answer(row.answer);
        OmBitVector out;
        cable.ScanDR(Shifted(row.in), &out, 1, 1);
        const Bytes program = kFromIdle + row.body + kToIdle;
        EXPECT_EQ(d2xx.TakeWrites(), std::vector<Bytes>{program}) << row.in;
        EXPECT_EQ(InShiftOrder(out), row.out) << row.in;
        EXPECT_TRUE(d2xx.queue.empty()) << row.in;
    }
}

TEST_F(UsbBlasterScan, RunsHoldAtMost63Bytes) {
    d2xx.queue.assign(65, 0xFF);
    OmBitVector out;
    cable.ScanDR(OmBitVector(513, 1), &out, 1, 1);
    const Bytes program =
        kFromIdle + Bytes{0xFF} + Bytes(63, 0xFF) + Bytes{0xC1, 0xFF} + Bytes{0x3E, 0x7F} + kToIdle;
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{program});
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 80", "FT_Read 65"}));
    EXPECT_EQ(out, OmBitVector(513, 1));
}

TEST_F(UsbBlasterScan, WithoutAnOutNothingIsRead) {
    cable.ScanDR(Shifted("11111111010"), nullptr, 1, 1);
    const Bytes program =
        kFromIdle + Bytes{0x81, 0xFF, 0x2C, 0x2D, 0x3C, 0x3D, 0x2E, 0x2F} + kToIdle;
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{program});
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 20"}));
}

TEST_F(UsbBlasterScan, OnlyExactlyOneIsShiftedAsOne) {
    cable.ScanDR({'X', 'Z', 2, 1, 0xFF, 1, 0, '1', 'X', 1, 'Z'}, nullptr, 1, 1);
    const Bytes program =
        kFromIdle + Bytes{0x81, 0x28, 0x2C, 0x2D, 0x3C, 0x3D, 0x2E, 0x2F} + kToIdle;
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{program});
}

TEST_F(UsbBlasterScan, BatchIsOneScanAfterTheOther) {
    d2xx.Answer({0x01});
    OmCapturedList captured{{1, 1}};
    cable.ScanVectors({{{1}, false}, {{0}, true}, {{1}, false}}, &captured);
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{kFromIdle + Bytes{0x3E, 0x3F} + kToIdle,
                                               kFromIdle + Bytes{0x2E, 0x6F} + kToIdle,
                                               kFromIdle + Bytes{0x3E, 0x3F} + kToIdle}));
    EXPECT_EQ(captured, OmCapturedList{{1}});
    EXPECT_EQ(d2xx.Count("FT_Read"), 1);
}

TEST_F(UsbBlasterScan, WithoutAListFlagsAskForNothing) {
    cable.ScanVectors({{{1}, true}}, nullptr);
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 14"}));
}

TEST_F(UsbBlasterScan, EmptyBatchSendsNothing) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({}, &captured);
    EXPECT_TRUE(captured.empty());
    EXPECT_TRUE(d2xx.calls.empty());
}

TEST_F(UsbBlasterScan, TooLongAScanIsRefusedUnsent) {
    // 65522 bytes hold 1023 full runs of 64 bytes, and 50 bytes more in one of 49.
    const size_t longest = 8 * (1023 * 63 + 49) + 1;
    cable.ScanDR(OmBitVector(longest, 1), nullptr, 1, 1);
    EXPECT_EQ(d2xx.TakeWrites().at(0).size(), 65536U);
    EXPECT_EQ(MessageOf([&] { cable.ScanDR(OmBitVector(longest + 1, 1), nullptr, 1, 1); }),
              L"The JTAG chain is too long for this cable.");
    EXPECT_TRUE(d2xx.writes.empty());
}

TEST_F(UsbBlasterScan, RefusesAScanOfNoBits) {
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({}, &out, 1, 1); }),
              L"A JTAG scan of no bits was asked for.");
    EXPECT_TRUE(d2xx.calls.empty());
}

TEST_F(UsbBlasterScan, EachFailedCallIsAConnectionErrorAndTheNextAttemptWorks) {
    const std::function<void()> scans[] = {
        [this] {
            OmBitVector out;
            d2xx.queue.assign(2, 0);
            cable.ScanDR(OmBitVector(9, 1), &out, 1, 1);
        },
        [this] {
            OmBitVector out;
            d2xx.queue.assign(2, 0);
            cable.ScanIR(OmBitVector(9, 1), &out, 1, 1);
        },
        [this] {
            OmCapturedList captured;
            d2xx.queue.assign(2, 0);
            cable.ScanVectors({{OmBitVector(9, 1), true}}, &captured);
        },
    };
    for (const char* call : {"FT_GetQueueStatus", "FT_Write", "FT_Read"}) {
        for (const auto& scan : scans) {
            d2xx.Fail(call);
            EXPECT_EQ(MessageOf(scan), L"JTAG connection error") << call;
            d2xx.Fail("");
            EXPECT_EQ(MessageOf(scan), L"(nothing thrown)") << call;
        }
    }
    d2xx.Fail("FT_Write");
    EXPECT_EQ(MessageOf([this] { cable.ResetTap(); }), L"JTAG connection error");
}

TEST_F(UsbBlasterScan, ReadGivesUpAfter31Rounds) {
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({1, 0}, &out, 1, 1); }), L"JTAG connection error");
    EXPECT_EQ(d2xx.Count("FT_Read"), 31);
    EXPECT_EQ(clock.sleptMilliseconds, 300U);
}
