// A setup file and a firmware file through every way of programming into every kind of array:
// erase, blank check, program, verify and read back, and the chips' own content compared with what
// objcopy makes of the firmware.
#include "data/DataFiles.h"
#include "flash/CommandSets.h"
#include "tests/road/FirmwareFile.h"
#include "tests/road/RoadFixture.h"

#include <tuple>

namespace {

struct Method {
    const char* name;
    const char* set;
    const char* bufferBytes;
    bool bypass;
    OmCommandSet commandSet;
};

constexpr Method kMethods[] = {
    {"AmdWord", "amd", "0", false, OmCommandSet::AmdWord},
    {"AmdBypass", "amd", "0", true, OmCommandSet::AmdWord},
    {"AmdBuffered", "amd", "32", false, OmCommandSet::AmdBuffered},
    {"IntelStandard", "intel", "0", false, OmCommandSet::IntelStandard},
    {"IntelExtended", "intel", "64", false, OmCommandSet::IntelExtended},
};

struct Bus {
    const char* name;
    unsigned chips;
    const char* widthBits;
};

constexpr Bus kBuses[] = {
    {"OneBy8", 1, "8"},   {"OneBy16", 1, "16"}, {"OneBy32", 1, "32"}, {"TwoBy8", 2, "8"},
    {"TwoBy16", 2, "16"}, {"ThreeBy8", 3, "8"}, {"FourBy8", 4, "8"},
};

using MatrixCase = std::tuple<size_t, size_t, bool>; // method, bus, status

std::string NameOf(const ::testing::TestParamInfo<MatrixCase>& info) {
    const auto& [method, bus, status] = info.param;
    return std::string(kMethods[method].name) + kBuses[bus].name + (status ? "" : "Blind");
}

// A blind item waits for nothing: the flash must be done before the second scan of the next one.
constexpr int32_t kBlindTck = 1000000;

// Two devices carry the flash, one on each side is in BYPASS. Busy times are short, so that an
// erase takes no thousands of polls.
vb::BoardBuilder BoardFor(const Method& method, const Bus& bus) {
    vb::BoardBuilder builder;
    builder.UnusedBefore(1).UnusedAfter(1).Chips(bus.chips);
    builder.Set("set", method.set).Set("width", bus.widthBits).Set("buffer", method.bufferBytes);
    builder.Set("sectors", "16x4K").Set("locks", "single");
    builder.Set("word-us", "15").Set("buffer-us", "15").Set("sector-us", "1000");
    return builder;
}

// Made once for all cases. Its pieces begin and end at bus words of every width, the one of three
// bytes included.
struct FirmwareFile {
    TemporaryFolder folder;
    std::string path = WriteFirmware(folder, {{0, Firmware(768, 1)}, {1536, Firmware(1020, 2)}});
    std::vector<uint8_t> flat = FlattenFirmware(folder, path);
};

const FirmwareFile& TheFirmware() {
    static const FirmwareFile file;
    return file;
}

class ProgramMatrix : public ::testing::TestWithParam<MatrixCase> {
  protected:
    const Method& TheMethod() const { return kMethods[std::get<0>(GetParam())]; }

    const Bus& TheBus() const { return kBuses[std::get<1>(GetParam())]; }
};

// As a user has it: saved once, and loaded by a program that knows nothing of the board.
void GoThroughAFile(OmFlashProgrammer& programmer) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("board.velflash");
    ASSERT_TRUE(programmer.SaveDesignSetup(path));
    programmer.SetDesignSetup(OmDesignSetup());
    ASSERT_TRUE(programmer.LoadDesignSetup(path));
}

std::vector<OmAddressRange> RangesOf(const OmDataImage& image) {
    std::vector<OmAddressRange> ranges;
    for (const OmDataChunk& chunk : image.GetChunks())
        ranges.push_back({chunk.address, static_cast<uint32_t>(chunk.bytes.size())});
    return ranges;
}

} // namespace

TEST_P(ProgramMatrix, FirmwareArrives) {
    ASSERT_TRUE(HaveFirmwareTools()) << "objcopy and srec_cat judge this test: install them";
    const std::vector<uint8_t>& flat = TheFirmware().flat;
    RecordingUserInterface user;
    Road road(BoardFor(TheMethod(), TheBus()));
    road.programmer.setup.UseUnlockBypass = TheMethod().bypass;
    road.programmer.setup.DontCheckStatus = !std::get<2>(GetParam());
    GoThroughAFile(road.programmer);
    ASSERT_EQ(road.programmer.setup.DontCheckStatus, !std::get<2>(GetParam()));
    if (road.programmer.setup.DontCheckStatus)
        road.programmer.settings.ftd2xxFrequency = kBlindTck;
    road.FillFlash(0x00);

    OmDataImage image;
    std::string error;
    ASSERT_TRUE(ReadDataFile(TheFirmware().path, image, error)) << error;
    ASSERT_EQ(image.GetByteCount(), 1788u);

    ASSERT_TRUE(road.PrepareToProgram());
    EXPECT_EQ(road.programmer.commandSet, TheMethod().commandSet);
    EXPECT_EQ(road.programmer.sectors.groups, (std::vector<OmSectorGroup>{{16, 4096}}));

    user.Expect(L"Flash memory is not blank: read 00h at offset 00000h.", kErrorBox);
    EXPECT_FALSE(road.programmer.BlankCheckFlash(road.united, RangesOf(image)));
    const OmSectorRange sectors = road.SectorsOf(image);
    if (CanLockSectors(TheMethod().commandSet)) {
        ASSERT_TRUE(road.programmer.UnlockSectors(road.progress, sectors));
    }
    ASSERT_TRUE(road.programmer.EraseSectors(road.progress, sectors));
    EXPECT_TRUE(road.programmer.BlankCheckFlash(road.united, RangesOf(image)));
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, image));
    EXPECT_TRUE(road.programmer.VerifyFlash(road.united, image));

    OmDataImage readBack;
    EXPECT_TRUE(
        road.programmer.ReadFlash(road.progress, 0, static_cast<uint32_t>(flat.size()), readBack));
    ASSERT_EQ(readBack.GetChunkCount(), 1u);
    EXPECT_TRUE(readBack.GetChunks().front().bytes == flat);
    road.ExpectContent(flat);
    const size_t erased = 4096u * TheBus().chips;
    EXPECT_EQ(road.Content(erased + 1)[erased], 0x00) << "the next sector has lost its data";
    road.ExpectNoViolation();
}

INSTANTIATE_TEST_SUITE_P(AllWays, ProgramMatrix,
                         ::testing::Combine(::testing::Range<size_t>(0, std::size(kMethods)),
                                            ::testing::Range<size_t>(0, std::size(kBuses)),
                                            ::testing::Bool()),
                         NameOf);
