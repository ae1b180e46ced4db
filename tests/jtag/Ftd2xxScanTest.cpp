#include "jtag/Ftd2xx.h"

#include "tests/jtag/FakeD2xx.h"
#include "tests/jtag/ScanHelpers.h"
#include "tests/support/VirtualClock.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace {

using Calls = std::vector<std::string>;

// An open cable, its set-up traffic forgotten.
class Ftd2xxScan : public testing::Test {
  protected:
    void SetUp() override {
        bool isHighSpeed = false;
        ASSERT_TRUE(
            cable.Initialize("Dual RS232-HS A", "", 6000000, false, 0x051B, 0x010A, isHighSpeed));
        ForgetTraffic();
        clock.sleptMilliseconds = 0;
    }

    void ForgetTraffic() {
        d2xx.TakeCalls();
        d2xx.TakeWrites();
    }

    FakeD2xx d2xx;
    VirtualClock clock;
    OmFtd2xx cable;
};

struct WalkCase {
    bool instruction;
    int from;
    int to;
    Bytes in;  // the move to Shift
    Bytes out; // the move from Exit1
};

const Bytes kToIdle{0x4B, 0x01, 0x01};
const Bytes kToPause{0x4B, 0x00, 0x00};

const WalkCase kWalks[] = {
    {false, 0, 1, {0x4B, 0x03, 0x82}, kToIdle},  {false, 0, 0, {0x4B, 0x03, 0x82}, kToPause},
    {false, 0, 2, {0x4B, 0x03, 0x82}, kToPause}, {false, 1, 1, {0x4B, 0x02, 0x81}, kToIdle},
    {false, 1, 0, {0x4B, 0x02, 0x81}, kToPause}, {false, 1, 2, {0x4B, 0x02, 0x81}, kToPause},
    {false, 2, 1, {0x4B, 0x01, 0x81}, kToIdle},  {false, 2, 0, {0x4B, 0x01, 0x81}, kToPause},
    {false, 7, 9, {0x4B, 0x01, 0x81}, kToPause}, {true, 0, 1, {0x4B, 0x04, 0x86}, kToIdle},
    {true, 0, 0, {0x4B, 0x04, 0x86}, kToPause},  {true, 0, 2, {0x4B, 0x04, 0x86}, kToPause},
    {true, 1, 1, {0x4B, 0x03, 0x83}, kToIdle},   {true, 1, 0, {0x4B, 0x03, 0x83}, kToPause},
    {true, 1, 2, {0x4B, 0x03, 0x83}, kToPause},  {true, 2, 1, {0x4B, 0x01, 0x81}, kToIdle},
    {true, 2, 0, {0x4B, 0x01, 0x81}, kToPause},  {true, -1, -1, {0x4B, 0x01, 0x81}, kToPause},
};

struct LengthCase {
    const char* in; // leftmost is shifted first
    Bytes body;
    Bytes answer;
    const char* out;
};

// Vectors of one length with these flags.
OmScanList Batch(const std::string& bits, const std::vector<bool>& captures) {
    OmScanList vectors;
    for (const bool capture : captures)
        vectors.push_back({Shifted(bits), capture});
    return vectors;
}

} // namespace

TEST_F(Ftd2xxScan, ResetTapIsSixClocksOfTms) {
    cable.ResetTap();
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{{0x4B, 0x05, 0x9F}}));
    EXPECT_EQ(d2xx.calls, Calls{"FT_Write 3"});
}

TEST_F(Ftd2xxScan, WalksFromEveryStartToEveryEnd) {
    for (const WalkCase& row : kWalks) {
        d2xx.Answer({0x7F, 0xFF}); // the low bits below a group mean nothing
        OmBitVector out{9, 9};
        if (row.instruction)
            cable.ScanIR({1, 0, 1, 1}, &out, row.from, row.to);
        else
            cable.ScanDR({1, 0, 1, 1}, &out, row.from, row.to);
        const Bytes program =
            row.in + Bytes{0x3B, 0x02, 0x05, 0x6B, 0x00, 0x81} + row.out + Bytes{0x87};
        EXPECT_EQ(d2xx.TakeWrites(), std::vector<Bytes>{program})
            << row.instruction << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{1, 1, 0, 1})) << row.instruction << row.from << row.to;
    }
}

TEST_F(Ftd2xxScan, ScansOfManyLengths) {
    const LengthCase cases[] = {
        {"1", {0x6B, 0x00, 0x81}, {0x80}, "1"},
        {"0", {0x6B, 0x00, 0x01}, {0x7F}, "0"},
        {"10", {0x3B, 0x00, 0x01, 0x6B, 0x00, 0x01}, {0x80, 0x80}, "11"},
        {"11000000", {0x3B, 0x06, 0x03, 0x6B, 0x00, 0x01}, {0x81, 0x00}, "00000010"},
        {"110000101", {0x3B, 0x07, 0x43, 0x6B, 0x00, 0x81}, {0x81, 0x80}, "100000011"},
        {"1000000001",
         {0x3B, 0x07, 0x01, 0x3B, 0x00, 0x00, 0x6B, 0x00, 0x81},
         {0x0F, 0x80, 0x7F},
         "1111000010"},
        {"111111110111",
         {0x3B, 0x07, 0xFF, 0x3B, 0x02, 0x06, 0x6B, 0x00, 0x81},
         {0x00, 0xBF, 0x80},
         "000000001011"},
    };
    for (const LengthCase& row : cases) {
        d2xx.Answer(row.answer);
        OmBitVector out;
        cable.ScanDR(Shifted(row.in), &out, 1, 1);
        const Bytes program = Bytes{0x4B, 0x02, 0x81} + row.body + Bytes{0x4B, 0x01, 0x01, 0x87};
        EXPECT_EQ(d2xx.TakeWrites(), std::vector<Bytes>{program}) << row.in;
        EXPECT_EQ(InShiftOrder(out), row.out) << row.in;
        EXPECT_TRUE(d2xx.queue.empty()) << row.in;
    }
}

TEST_F(Ftd2xxScan, ScanIsOneCheckOneWriteAndOneRead) {
    d2xx.Answer({0x00, 0x00});
    OmBitVector out;
    cable.ScanDR(OmBitVector(9, 0), &out, 1, 1);
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 13", "FT_Read 2"}));
}

TEST_F(Ftd2xxScan, OnlyExactlyOneIsShiftedAsOne) {
    d2xx.Answer({0x00, 0x00});
    OmBitVector out;
    cable.ScanDR({'X', 1, 'Z', 2, 0xFF, '1'}, &out, 1, 1);
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{{0x4B, 0x02, 0x81, 0x3B, 0x04, 0x02, 0x6B, 0x00,
                                                0x01, 0x4B, 0x01, 0x01, 0x87}}));
}

TEST_F(Ftd2xxScan, BatchOfOneBitVectors) {
    d2xx.Answer({0xFF, 0x7F});
    OmCapturedList captured{{1, 1}};
    cable.ScanVectors({{{1}, true}, {{0}, false}, {{0}, true}}, &captured);
    EXPECT_EQ(d2xx.writes,
              (std::vector<Bytes>{{0x4B, 0x02, 0x81, 0x6B, 0x00, 0x81, 0x4B, 0x01, 0x01, //
                                   0x4B, 0x02, 0x81, 0x4B, 0x00, 0x01, 0x4B, 0x01, 0x01, //
                                   0x4B, 0x02, 0x81, 0x6B, 0x00, 0x01, 0x4B, 0x01, 0x01, //
                                   0x87}}));
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 28", "FT_Read 2"}));
    EXPECT_EQ(captured, (OmCapturedList{{1}, {0}}));
}

TEST_F(Ftd2xxScan, BatchOfNineBitVectors) {
    d2xx.Answer({0xA5, 0x80});
    OmCapturedList captured;
    cable.ScanVectors({{Shifted("110000101"), true}, {Shifted("000000010"), false}}, &captured);
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{{0x4B, 0x02, 0x81, 0x39, 0x00, 0x00, 0x43, //
                                                0x6B, 0x00, 0x81, 0x4B, 0x01, 0x01,       //
                                                0x4B, 0x02, 0x81, 0x19, 0x00, 0x00, 0x80, //
                                                0x4B, 0x00, 0x01, 0x4B, 0x01, 0x01, 0x87}}));
    EXPECT_EQ(captured, (OmCapturedList{{1, 0, 1, 0, 0, 1, 0, 1, 1}}));
}

TEST_F(Ftd2xxScan, BatchOfTwelveBitVectors) {
    // Three bytes a captured vector: eight bits, three in the top of the next byte, the last one.
    d2xx.Answer({0x01, 0xBF, 0x80, 0xFF, 0x5F, 0x7F});
    OmCapturedList captured;
    cable.ScanVectors(Batch("111111110111", {true, true}), &captured);
    const Bytes one{0x4B, 0x02, 0x81, 0x39, 0x00, 0x00, 0xFF, 0x3B,
                    0x02, 0x06, 0x6B, 0x00, 0x81, 0x4B, 0x01, 0x01};
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{one + one + Bytes{0x87}});
    ASSERT_EQ(captured.size(), 2U);
    EXPECT_EQ(BitsToText(captured[0], OmBitOrder::LowestFirst), "100000001011");
    EXPECT_EQ(BitsToText(captured[1], OmBitOrder::LowestFirst), "111111110100");
}

TEST_F(Ftd2xxScan, LongVectorsGiveTheByteCountLowByteFirst) {
    const OmBitVector bits(8 * 300 + 1, 1);
    cable.ScanVectors({{bits, false}}, nullptr);
    ASSERT_EQ(d2xx.writes.size(), 1U);
    const Bytes& program = d2xx.writes[0];
    EXPECT_EQ(program.size(), 312U);
    EXPECT_EQ(Bytes(program.begin(), program.begin() + 7),
              (Bytes{0x4B, 0x02, 0x81, 0x19, 0x2B, 0x01, 0xFF}));
}

TEST_F(Ftd2xxScan, EveryMixOfFlagsGivesOneEntryForEachFlag) {
    for (unsigned mask = 0; mask < 16; ++mask) {
        std::vector<bool> captures;
        OmCapturedList expected;
        for (unsigned i = 0; i < 4; ++i) {
            captures.push_back((mask >> i & 1) != 0);
            if (!captures.back())
                continue;
            d2xx.Answer({static_cast<uint8_t>(1 << i), 0x00, 0x80});
            OmBitVector bits(12, 0);
            bits[i] = 1;
            bits[11] = 1;
            expected.push_back(bits);
        }
        OmCapturedList captured;
        cable.ScanVectors(Batch("111111110111", captures), &captured);
        EXPECT_EQ(captured, expected) << mask;
        ASSERT_EQ(d2xx.writes.size(), 1U);
        for (unsigned i = 0; i < 4; ++i) {
            const uint8_t* vector = &d2xx.writes[0][16 * size_t{i}];
            EXPECT_EQ(vector[3], captures[i] ? 0x39 : 0x19) << mask;
            EXPECT_EQ(vector[7], captures[i] ? 0x3B : 0x1B) << mask;
            EXPECT_EQ(vector[10], captures[i] ? 0x6B : 0x4B) << mask;
        }
        EXPECT_EQ(d2xx.Count("FT_Write"), 1) << mask;
        EXPECT_EQ(d2xx.Count("FT_Read"), mask ? 1 : 0) << mask;
        EXPECT_EQ(d2xx.writes[0].size(), mask ? 65U : 64U) << mask;
        ForgetTraffic();
    }
}

TEST_F(Ftd2xxScan, BlindBatchIsWrittenAndNotRead) {
    OmCapturedList captured{{1}};
    cable.ScanVectors(Batch("10", {false, false}), &captured);
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{{0x4B, 0x02, 0x81, 0x1B, 0x00, 0x01, //
                                                0x4B, 0x00, 0x01, 0x4B, 0x01, 0x01, //
                                                0x4B, 0x02, 0x81, 0x1B, 0x00, 0x01, //
                                                0x4B, 0x00, 0x01, 0x4B, 0x01, 0x01}}));
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 24"}));
    EXPECT_TRUE(captured.empty());
}

TEST_F(Ftd2xxScan, WithoutAListFlagsAskForNothing) {
    cable.ScanVectors(Batch("10", {true}), nullptr);
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{{0x4B, 0x02, 0x81, 0x1B, 0x00, 0x01, //
                                                0x4B, 0x00, 0x01, 0x4B, 0x01, 0x01}}));
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 12"}));
}

TEST_F(Ftd2xxScan, EmptyBatchSendsNothing) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({}, &captured);
    EXPECT_TRUE(captured.empty());
    EXPECT_TRUE(d2xx.calls.empty());
}

TEST_F(Ftd2xxScan, BatchSplitsIntoRunsThatFitTheBuffer) {
    // 12 bits cost 16 bytes, so that a run holds 3750 vectors.
    OmScanList vectors = Batch("111111110111", std::vector<bool>(3751, false));
    cable.ScanVectors(vectors, nullptr);
    EXPECT_EQ(d2xx.TakeCalls(),
              (Calls{"FT_GetQueueStatus", "FT_Write 60000", "FT_GetQueueStatus", "FT_Write 16"}));

    vectors[3749].capture = true; // the last of the first run
    vectors[3750].capture = true; // the first of the second
    d2xx.Answer({0x00, 0x00, 0x80, 0xFF, 0x00, 0x00});
    OmCapturedList captured;
    cable.ScanVectors(vectors, &captured);
    EXPECT_EQ(d2xx.TakeCalls(), (Calls{"FT_GetQueueStatus", "FT_Write 60001", "FT_Read 3",
                                       "FT_GetQueueStatus", "FT_Write 17", "FT_Read 3"}));
    ASSERT_EQ(captured.size(), 2U);
    EXPECT_EQ(BitsToText(captured[0], OmBitOrder::LowestFirst), "000000000001");
    EXPECT_EQ(BitsToText(captured[1], OmBitOrder::LowestFirst), "111111110000");
}

TEST_F(Ftd2xxScan, BatchOfExactlyOneRunIsOneWrite) {
    cable.ScanVectors(Batch("111111110111", std::vector<bool>(3750, false)), nullptr);
    EXPECT_EQ(d2xx.Count("FT_Write"), 1);
}

TEST_F(Ftd2xxScan, LongestScanFitsAndALongerOneIsRefusedUnsent) {
    // Three bytes for each eight bits: 21842 groups, ten bytes around them.
    const size_t longest = 8 * 21842 + 1;
    for (const bool instruction : {false, true}) {
        d2xx.queue.assign(21843, 0xFF);
        OmBitVector out;
        const auto scan = [&](size_t bits) {
            if (instruction)
                cable.ScanIR(OmBitVector(bits, 1), &out, 1, 1);
            else
                cable.ScanDR(OmBitVector(bits, 1), &out, 1, 1);
        };
        scan(longest);
        EXPECT_EQ(d2xx.TakeWrites().at(0).size(), 65536U);
        EXPECT_EQ(out, OmBitVector(longest, 1));
        EXPECT_EQ(MessageOf([&] { scan(longest + 1); }),
                  L"The JTAG chain is too long for this cable.");
        EXPECT_TRUE(d2xx.writes.empty());
    }
}

TEST_F(Ftd2xxScan, LongestBatchVectorFitsARunAndALongerOneIsRefusedUnsent) {
    const size_t longest = 8 * 59988 + 1; // 12 bytes around 59988
    cable.ScanVectors({{OmBitVector(longest, 1), false}}, nullptr);
    EXPECT_EQ(d2xx.TakeWrites().at(0).size(), 60000U);
    EXPECT_EQ(MessageOf([&] {
                  cable.ScanVectors({{OmBitVector(longest + 1, 1), false}}, nullptr);
              }),
              L"The JTAG chain is too long for this cable.");
    EXPECT_TRUE(d2xx.writes.empty());
}

TEST_F(Ftd2xxScan, RefusesWhatIsNoScan) {
    OmBitVector out;
    OmCapturedList captured;
    const wchar_t* const empty = L"A JTAG scan of no bits was asked for.";
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({}, &out, 1, 1); }), empty);
    EXPECT_EQ(MessageOf([&] { cable.ScanIR({}, &out, 1, 1); }), empty);
    EXPECT_EQ(MessageOf([&] { cable.ScanVectors({{{}, true}}, &captured); }), empty);
    EXPECT_EQ(MessageOf([&] {
                  cable.ScanVectors({{{1, 0}, true}, {{1}, true}}, &captured);
              }),
              L"The JTAG scans of one batch differ in length.");
    EXPECT_TRUE(d2xx.writes.empty());
}

TEST_F(Ftd2xxScan, EachFailedCallIsAConnectionErrorAndTheNextAttemptWorks) {
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

TEST_F(Ftd2xxScan, FailureInALaterRunIsAConnectionErrorToo) {
    d2xx.Fail("FT_Write", 1);
    EXPECT_EQ(MessageOf([this] {
                  cable.ScanVectors(Batch("111111110111", std::vector<bool>(3751, false)), nullptr);
              }),
              L"JTAG connection error");
}

TEST_F(Ftd2xxScan, ShortWriteIsAConnectionError) {
    d2xx.writeShortfall = 1;
    EXPECT_EQ(MessageOf([this] { cable.ResetTap(); }), L"JTAG connection error");
}

TEST_F(Ftd2xxScan, ShortReadsAreWaitedFor) {
    d2xx.Answer({0xFF, 0x00, 0x80});
    d2xx.readLimit = 1;
    OmBitVector out;
    cable.ScanDR(OmBitVector(12, 0), &out, 1, 1);
    EXPECT_EQ(InShiftOrder(out), "111111110001");
    EXPECT_EQ(d2xx.calls,
              (Calls{"FT_GetQueueStatus", "FT_Write 16", "FT_Read 3", "FT_Read 2", "FT_Read 1"}));
    EXPECT_EQ(clock.sleptMilliseconds, 20U);
}

TEST_F(Ftd2xxScan, ReadGivesUpAfter31Rounds) {
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({1, 0}, &out, 1, 1); }), L"JTAG connection error");
    EXPECT_EQ(d2xx.Count("FT_Read"), 31);
    EXPECT_EQ(clock.sleptMilliseconds, 300U);
}

TEST_F(Ftd2xxScan, BytesThatComeInTheLastRoundAreTaken) {
    d2xx.readLimit = 1;
    d2xx.queue.assign(31, 0xFF);
    OmBitVector out;
    cable.ScanDR(OmBitVector(8 * 30 + 1, 0), &out, 1, 1); // 31 bytes
    EXPECT_EQ(d2xx.Count("FT_Read"), 31);
    EXPECT_EQ(out, OmBitVector(8 * 30 + 1, 1));
}

TEST_F(Ftd2xxScan, ReadThatClaimsTooManyBytesIsAConnectionError) {
    d2xx.Answer({0xFF, 0xFF});
    d2xx.readOverrun = 1;
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({1, 0}, &out, 1, 1); }), L"JTAG connection error");
}

TEST_F(Ftd2xxScan, VectorsPerTransferFollowFromTheBytesOfOneVector) {
    struct {
        uint32_t bits;
        float vectors;
    } const cases[] = {
        {1, 112.666664F},   // 9 bytes
        {8, 84.5F},         // 12: a rest of seven
        {9, 78.0F},         // 13: one whole byte
        {12, 63.375F},      // 16: one whole byte and a rest
        {1000, 7.2949640F}, // 139: 124 whole bytes and a rest
    };

    for (const auto& row : cases) {
        float reading = 0;
        float blind = 0;
        float status = 0;
        cable.GetVectorsPerTransfer(row.bits, &reading, &blind, &status);
        EXPECT_FLOAT_EQ(reading, row.vectors) << row.bits;
        EXPECT_FLOAT_EQ(blind, row.vectors) << row.bits;
        EXPECT_FLOAT_EQ(status, row.vectors) << row.bits;
    }
    cable.GetVectorsPerTransfer(100, nullptr, nullptr, nullptr);
}
