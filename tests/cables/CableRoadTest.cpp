// A firmware image through every cable into a flash: connect, examine, identify, erase, program,
// verify and read back, and the chip's own content in the end.
#include "tests/cables/BoardPort.h"
#include "tests/cables/CableCases.h"
#include "tests/road/RoadFixture.h"

#include <algorithm>
#include <optional>

namespace {

class CableRoad : public ::testing::TestWithParam<CableCase> {};

// Small, quick chips, so that a parallel pod is done soon as well.
vb::BoardBuilder SmallFlash(const char* set, const char* bufferBytes) {
    vb::BoardBuilder builder;
    builder.UnusedBefore(1).Set("set", set).Set("buffer", bufferBytes).Set("sectors", "16x4K");
    builder.Set("word-us", "15").Set("buffer-us", "15").Set("sector-us", "1000");
    return builder.Set("locks", "none");
}

// The road with this cable in place of the FT2232.
class RoadOver {
  public:
    RoadOver(const CableCase& cable, const vb::BoardBuilder& builder)
        : road(WithEveryPod(builder)) {
        if (cable.parallelPod)
            port.emplace(*road.board, cable.parallelPod);
        road.programmer.settings = SettingsFor(cable);
    }

    Road road;
    std::optional<BoardPort> port;
};

void ProgramAndCheck(Road& road) {
    road.FillFlash(0x00);
    const std::vector<uint8_t> firmware = Firmware(150, 11);
    OmDataImage image;
    image.SetBytes(0x80, firmware);
    ASSERT_TRUE(road.PrepareToProgram());
    ASSERT_TRUE(road.programmer.EraseSectors(road.progress, road.SectorsOf(image)));
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, image));
    EXPECT_TRUE(road.programmer.VerifyFlash(road.united, image));

    OmDataImage readBack;
    EXPECT_TRUE(road.programmer.ReadFlash(road.progress, 0x80, 150, readBack));
    ASSERT_EQ(readBack.GetChunkCount(), 1u);
    EXPECT_TRUE(readBack.GetChunks().front().bytes == firmware);
    std::vector<uint8_t> array(0x10000, 0x00);
    std::fill_n(array.begin(), 0x1000, uint8_t{0xFF}); // the sector
    std::ranges::copy(firmware, array.begin() + 0x80);
    road.ExpectContent(array);
    EXPECT_TRUE(road.programmer.JtagReset());
    road.ExpectNoViolation();
}

} // namespace

TEST_P(CableRoad, FirmwareArrives) {
    const RecordingUserInterface user;
    for (const auto& [set, buffer] : {std::pair{"amd", "32"}, std::pair{"intel", "0"}}) {
        SCOPED_TRACE(set);
        RoadOver over(GetParam(), SmallFlash(set, buffer));
        ProgramAndCheck(over.road);
    }
}

TEST_P(CableRoad, ExaminesTheChain) {
    const RecordingUserInterface user;
    RoadOver over(GetParam(), SmallFlash("amd", "0"));
    std::vector<OmBitVector> chain;
    bool atmelBug = true;
    EXPECT_TRUE(over.road.programmer.ExamineChain(chain, atmelBug));
    EXPECT_EQ(chain.size(), 3u);
    EXPECT_FALSE(atmelBug);
    OmBitVector bits;
    EXPECT_TRUE(over.road.programmer.CaptureChainIr(bits));
    EXPECT_EQ(bits.size(), 4u + 5 + 6);
}

INSTANTIATE_TEST_SUITE_P(Cables, CableRoad, ::testing::ValuesIn(kCableCases), NameOfCable);
