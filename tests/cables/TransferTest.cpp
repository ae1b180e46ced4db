// How a cable's figure for one transfer becomes the size of a batch, and the transfers that the
// board counts for it. All over a chain of 200 bits.
#include "tests/cables/BoardPort.h"
#include "tests/cables/CableBench.h"

#include <optional>

namespace {

class Transfers : public ::testing::TestWithParam<CableCase> {};

// Of vectors of 200 bits in 1,014 bytes: an MPSSE program of 39 bytes each, or 53 bytes of pairs.
struct Figures {
    CableFamily family;
    float reading;
    float blind;
    float status;
};

constexpr Figures kFigures[] = {
    {CableFamily::Parallel, -1.0f, -1.0f, -1.0f},
    {CableFamily::Ftd2xx, 26.0f, 26.0f, 26.0f},
    {CableFamily::UsbBlaster, -1.0f, -1.0f, -1.0f},
    {CableFamily::JLink, 19.132076f, 19.132076f, -1.0f},
    {CableFamily::Digilent, 19.132076f, 19.132076f, -1.0f},
};

// What the work on further words costs on top of that on one word.
struct Cost {
    uint64_t scans;
    uint64_t writes;
    uint64_t reads;

    bool operator==(const Cost&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Cost& cost) {
    return stream << cost.scans << " scans, " << cost.writes << " writes, " << cost.reads
                  << " reads";
}

struct CostRow {
    CableFamily family;
    Cost reading; // 520 words in place of one
    Cost blind;   // 58 words of eight scans, and one closing a batch
    Cost status;  // 27 words of twelve scans, the last of each captured
};

constexpr CostRow kCosts[] = {
    // One word at a time, each read by the scan that sets the next address.
    {CableFamily::Parallel, {519, 0, 0}, {513, 0, 0}, {312, 0, 0}},
    {CableFamily::UsbBlaster, {519, 519, 519}, {513, 513, 0}, {312, 312, 26}},
    // Batches of 260 words, of 29 and of 13; each is one write, and one read if it is read.
    {CableFamily::Ftd2xx, {520, 1, 1}, {457, 1, 0}, {312, 2, 2}},
    // Batches of 153 words, of 19 and of one; a blind head is a call of its own.
    {CableFamily::JLink, {522, 6, 3}, {459, 3, 0}, {312, 52, 26}},
    {CableFamily::Digilent, {522, 6, 3}, {459, 3, 0}, {312, 52, 26}},
};

template <typename Row, size_t count>
const Row& RowOf(const Row (&rows)[count], CableFamily family) {
    return *std::find_if(std::begin(rows), std::end(rows),
                         [family](const Row& row) { return row.family == family; });
}

// One 16-bit chip that is done before its first status read, after 200 bits.
vb::BoardBuilder QuickChip() {
    vb::BoardBuilder builder;
    builder.Set("set", "amd").Set("buffer", "0").Set("sectors", "16x4K").Set("locks", "none");
    return builder.Set("word-us", "0").Devices(1).Padding(162);
}

class RoadOver {
  public:
    explicit RoadOver(const CableCase& cable) : road(WithEveryPod(QuickChip())) {
        if (cable.parallelPod)
            port.emplace(*road.board, cable.parallelPod);
        road.programmer.settings = SettingsFor(cable);
        EXPECT_EQ(road.built.ExtestBits(), 200u);
    }

    template <typename Action>
    Cost CostOf(Action action) {
        road.board->ClearStatistics();
        EXPECT_TRUE(action());
        const vb::Traffic& traffic = road.board->PodTraffic();
        return {road.board->Chain().DataScans(), traffic.writeCalls, traffic.readCalls};
    }

    Cost CostOfReading(uint32_t words) {
        OmDataImage image;
        return CostOf(
            [&] { return road.programmer.ReadFlash(road.progress, 0, 2 * words, image); });
    }

    Cost CostOfProgramming(size_t words) {
        road.FillFlash(0xFF);
        OmDataImage image;
        image.SetBytes(0, Firmware(2 * words, 7));
        road.programmer.waitScans = 0;
        const Cost cost =
            CostOf([&] { return road.programmer.ProgramFlash(road.progress, image); });
        road.ExpectContent(Firmware(2 * words, 7));
        return cost;
    }

    Road road;
    std::optional<BoardPort> port;
};

Cost operator-(const Cost& more, const Cost& few) {
    return {more.scans - few.scans, more.writes - few.writes, more.reads - few.reads};
}

} // namespace

TEST_P(Transfers, CableTellsWhatFitsOne) {
    OpenCable bench(GetParam());
    const Figures& figures = RowOf(kFigures, GetParam().family);
    float reading = 0;
    float blind = 0;
    float status = 0;
    bench.Hal().GetVectorsPerTransfer(200, &reading, &blind, &status);
    EXPECT_FLOAT_EQ(reading, figures.reading);
    EXPECT_FLOAT_EQ(blind, figures.blind);
    EXPECT_FLOAT_EQ(status, figures.status);
    float alone = 0;
    bench.Hal().GetVectorsPerTransfer(200, nullptr, nullptr, &alone);
    EXPECT_FLOAT_EQ(alone, figures.status);
    bench.Hal().GetVectorsPerTransfer(200, nullptr, nullptr, nullptr);
}

TEST_P(Transfers, ReadsGoOutInBatchesThatFillThem) {
    const RecordingUserInterface user;
    RoadOver over(GetParam());
    ASSERT_TRUE(over.road.PrepareToProgram());
    const Cost one = over.CostOfReading(1);
    EXPECT_EQ(over.CostOfReading(520) - one, RowOf(kCosts, GetParam().family).reading);
}

TEST_P(Transfers, BlindProgrammingGoesOutInBatchesThatFillThem) {
    const RecordingUserInterface user;
    RoadOver over(GetParam());
    over.road.programmer.setup.DontCheckStatus = true;
    ASSERT_TRUE(over.road.PrepareToProgram());
    const Cost one = over.CostOfProgramming(1);
    EXPECT_EQ(over.CostOfProgramming(58) - one, RowOf(kCosts, GetParam().family).blind);
}

TEST_P(Transfers, ProgrammingWithStatusGoesOutInBatchesThatFillThem) {
    const RecordingUserInterface user;
    RoadOver over(GetParam());
    ASSERT_TRUE(over.road.PrepareToProgram());
    const Cost one = over.CostOfProgramming(1);
    EXPECT_EQ(over.CostOfProgramming(27) - one, RowOf(kCosts, GetParam().family).status);
}

INSTANTIATE_TEST_SUITE_P(Cables, Transfers, ::testing::ValuesIn(kCableCases), NameOfCable);
