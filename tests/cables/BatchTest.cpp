// Batches of DR scans: what comes back for which flags, and what goes over the wire for it.
#include "tests/cables/CableBench.h"
#include "tests/cables/ScanExpectations.h"

namespace {

class Batches : public ::testing::TestWithParam<CableCase> {};

class UsbBatches : public ::testing::TestWithParam<CableCase> {};

// Vectors of one length whose flags are the bits of `mask`, first vector in bit 0, as far as it
// goes.
OmScanList VectorsOf(size_t bits, size_t count, uint64_t mask) {
    OmScanList vectors;
    for (size_t i = 0; i < count; ++i)
        vectors.push_back(
            {Pattern(bits, static_cast<uint32_t>(i + 1)), i < 64 && (mask >> i & 1) != 0});
    return vectors;
}

// Behind a reset every scan captures the IDCODEs anew.
OmCapturedList ExpectedCaptures(const OmScanList& vectors) {
    OmCapturedList captures;
    for (const OmScanVector& vector : vectors)
        if (vector.capture)
            captures.push_back(CapturedData().Shift(vector.bits));
    return captures;
}

Trace ExpectedBatchTrace(const CableCase& cable, const OmScanList& vectors) {
    Trace all;
    for (const OmScanVector& vector : vectors) {
        const Trace one = ExpectedTrace(cable, {OmScanRegister::Data, 1, 1}, vector.bits);
        all.insert(all.end(), one.begin(), one.end());
    }
    return all;
}

} // namespace

TEST_P(Batches, EveryMixOfFlagsGivesOneEntryForEachFlag) {
    OpenCable bench(GetParam());
    for (const size_t bits : {1, 2, 8, 9, 12, 100})
        for (unsigned mask = 0; mask < 16; ++mask) {
            const OmScanList vectors = VectorsOf(bits, 4, mask);
            OmCapturedList captured{{1}, {0, 1}};
            Trace trace;
            bench.Hal().ResetTap();
            bench.Chain().SetTrace(&trace);
            bench.Hal().ScanVectors(vectors, &captured);
            bench.Chain().SetTrace(nullptr);
            EXPECT_EQ(captured, ExpectedCaptures(vectors)) << bits << " bits, flags " << mask;
            EXPECT_EQ(FirstDifference(trace, ExpectedBatchTrace(bench.cable, vectors)), "")
                << bits << " bits, flags " << mask;
        }
}

TEST_P(Batches, WithoutAListNothingIsReadWhateverTheFlagsSay) {
    OpenCable bench(GetParam());
    for (const unsigned mask : {0u, 1u, 6u, 16u, 31u}) {
        const OmScanList vectors = VectorsOf(100, 5, mask);
        bench.Hal().ResetTap();
        const uint64_t reads = bench.Reads();
        Trace trace;
        bench.Chain().SetTrace(&trace);
        bench.Hal().ScanVectors(vectors, nullptr);
        bench.Chain().SetTrace(nullptr);
        EXPECT_EQ(bench.Reads(), reads) << mask;
        EXPECT_EQ(FirstDifference(trace, ExpectedBatchTrace(bench.cable, vectors)), "") << mask;
    }
}

TEST_P(Batches, WithoutAFlagNothingIsRead) {
    OpenCable bench(GetParam());
    bench.Hal().ResetTap();
    const uint64_t reads = bench.Reads();
    OmCapturedList captured{{1}};
    bench.Hal().ScanVectors(VectorsOf(100, 5, 0), &captured);
    EXPECT_TRUE(captured.empty());
    EXPECT_EQ(bench.Reads(), reads);
}

TEST_P(Batches, OfNoVectorsDoesNothing) {
    OpenCable bench(GetParam());
    Trace trace;
    bench.Chain().SetTrace(&trace);
    OmCapturedList captured{{1}};
    bench.Hal().ScanVectors({}, &captured);
    bench.Hal().ScanVectors({}, nullptr);
    bench.Chain().SetTrace(nullptr);
    EXPECT_TRUE(captured.empty());
    EXPECT_TRUE(trace.empty());
}

// More than any cable's buffer holds at once.
TEST_P(Batches, OfManyVectorsComeBackInOrder) {
    OpenCable bench(GetParam());
    OmScanList vectors = VectorsOf(113, 2400, 0);
    for (size_t i = 0; i < vectors.size(); i += 7)
        vectors[i].capture = true;
    bench.Hal().ResetTap();
    OmCapturedList captured;
    bench.Hal().ScanVectors(vectors, &captured);
    EXPECT_TRUE(captured == ExpectedCaptures(vectors));
    EXPECT_EQ(bench.Chain().DataScans(), 2400u);
}

// The way of all bulk work on a cable that can: one write for a batch, one read for what is asked
// for, and a leading run of blind vectors by the call without TDO.
TEST_P(UsbBatches, GoOutInAsFewTransfersAsTheCableCan) {
    OpenCable bench(GetParam());

    struct Row {
        unsigned mask;
        uint64_t writes[3]; // FT2232; J-Link and Digilent; USB-Blaster
        uint64_t reads[3];
    };

    const Row rows[] = {
        {0b00000, {1, 1, 5}, {0, 0, 0}}, {0b00001, {1, 1, 5}, {1, 1, 1}},
        {0b00100, {1, 2, 5}, {1, 1, 1}}, {0b10000, {1, 2, 5}, {1, 1, 1}},
        {0b11111, {1, 1, 5}, {1, 1, 5}},
    };
    const CableFamily family = GetParam().family;
    const size_t column = family == CableFamily::Ftd2xx       ? 0
                          : family == CableFamily::UsbBlaster ? 2
                                                              : 1;
    for (const Row& row : rows) {
        bench.Hal().ResetTap();
        bench.board->ClearStatistics();
        OmCapturedList captured;
        bench.Hal().ScanVectors(VectorsOf(100, 5, row.mask), &captured);
        EXPECT_EQ(bench.board->PodTraffic().writeCalls, row.writes[column]) << row.mask;
        EXPECT_EQ(bench.board->PodTraffic().readCalls, row.reads[column]) << row.mask;
        EXPECT_EQ(bench.board->PodTraffic().latencyWaits, 0u) << row.mask;
    }
}

INSTANTIATE_TEST_SUITE_P(Cables, Batches, ::testing::ValuesIn(kCableCases), NameOfCable);

INSTANTIATE_TEST_SUITE_P(Cables, UsbBatches,
                         ::testing::ValuesIn(CablesThat([](const CableCase& cable) {
                             return cable.family != CableFamily::Parallel;
                         })),
                         NameOfCable);
