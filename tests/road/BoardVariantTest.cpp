// Boards that are wired otherwise, and chips that say less of themselves: each is erased,
// programmed and verified.
#include "flash/FlashInfo.h"
#include "tests/road/RoadFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>

namespace {

struct Variant {
    const char* name;
    std::function<void(vb::BoardBuilder&)> build;
    OmCommandSet commandSet;
};

using Builder = vb::BoardBuilder;

const Variant kVariants[] = {
    {"OneDevice", [](Builder& b) { b.Devices(1); }, OmCommandSet::AmdBuffered},
    {"ThreeDevices", [](Builder& b) { b.Devices(3).UnusedBefore(2).UnusedAfter(2); },
     OmCommandSet::AmdBuffered},
    {"SeparateCells", [](Builder& b) { b.Cells(vb::PinStyle::Separate); },
     OmCommandSet::AmdBuffered},
    {"DisableByZero", [](Builder& b) { b.DisableValue(false); }, OmCommandSet::AmdBuffered},
    {"LongRegister", [](Builder& b) { b.Padding(400); }, OmCommandSet::AmdBuffered},
    {"InvertedChipEnable", [](Builder& b) { b.InvertedChipEnable(); }, OmCommandSet::AmdBuffered},
    {"TiedChipEnable", [](Builder& b) { b.TiedChipEnable(); }, OmCommandSet::AmdBuffered},
    {"ResetHeldByAStaticPin", [](Builder& b) { b.StaticReset(); }, OmCommandSet::AmdBuffered},
    {"NoIdcode", [](Builder& b) { b.Idcode(0, 0); }, OmCommandSet::AmdBuffered},
    {"NarrowMode", [](Builder& b) { b.Flash("amd16-in-x8").Set("sectors", "16x4K"); },
     OmCommandSet::AmdBuffered},
    {"NarrowModeTwice", [](Builder& b) { b.Set("width", "8").Set("shift", "2"); },
     OmCommandSet::AmdBuffered},
    {"FifteenDecodedBits", [](Builder& b) { b.Set("decode", "15").Set("sectors", "16x8K"); },
     OmCommandSet::AmdBuffered},
    {"AlternativeCommandSet", [](Builder& b) { b.Set("cfi", "alternative"); },
     OmCommandSet::AmdBuffered},
    {"AmdWithoutCfi", [](Builder& b) { b.Set("cfi", "none"); }, OmCommandSet::AmdWord},
    // Ends ahead of the sector map.
    {"AmdShortTable", [](Builder& b) { b.Set("cfi", "short"); }, OmCommandSet::AmdBuffered},
    {"IntelWithoutCfi",
     [](Builder& b) {
         b.Flash("intel16-std").Set("sectors", "16x4K").Set("cfi", "none").Set("word-us", "1");
     },
     OmCommandSet::IntelStandard},
};

class BoardVariant : public ::testing::TestWithParam<Variant> {};

} // namespace

TEST_P(BoardVariant, IsProgrammed) {
    RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Set("sectors", "16x4K").Set("sector-us", "1000");
    GetParam().build(builder);
    Road road(builder);
    const bool noTable =
        road.built.flash.cfi == vb::CfiKind::None || road.built.flash.cfi == vb::CfiKind::Short;
    if (noTable)
        road.programmer.setup.sectors.Insert(16, 4096, -1);
    if (!road.programmer.setup.ce.IsConnected())
        user.Expect(L"It is usual, although not always necessary, for all three CE (Chip Enable), "
                    L"OE (Output Enable) and WE (Write Enable) flash control pins to be connected "
                    L"to certain pins of JTAG chain devices.\n\n"
                    L"Ignore this warning and proceed anyway?",
                    kWarningQuestionBox, OmAnswer::Yes, L"Setup Integrity Check Warning");
    road.FillFlash(0x00);
    const std::vector<uint8_t> bytes = Firmware(600, 11);
    OmDataImage image;
    image.SetBytes(4000, bytes); // over a sector's end
    ASSERT_TRUE(road.PrepareToProgram());
    EXPECT_EQ(road.programmer.commandSet, GetParam().commandSet);
    ASSERT_TRUE(road.programmer.EraseSectors(road.progress, road.SectorsOf(image)));
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, image));
    EXPECT_TRUE(road.programmer.VerifyFlash(road.united, image));
    std::vector<uint8_t> expected(4000 + bytes.size(), 0xFF);
    std::ranges::copy(bytes, expected.begin() + 4000);
    road.ExpectContent(expected);
    road.ExpectNoViolation();
}

INSTANTIATE_TEST_SUITE_P(Boards, BoardVariant, ::testing::ValuesIn(kVariants),
                         [](const auto& variant) { return std::string(variant.param.name); });

TEST(Board, SetupFromAFileDrivesIt) {
    const RecordingUserInterface user;
    const TemporaryFolder folder;
    const std::string path = folder.Path("board.velflash");
    Road road(vb::BoardBuilder().Set("sectors", "4x4K").StaticReset().InvertedChipEnable());
    ASSERT_TRUE(road.programmer.SaveDesignSetup(path));
    road.programmer.SetDesignSetup(OmDesignSetup());
    ASSERT_TRUE(road.programmer.LoadDesignSetup(path));
    ASSERT_TRUE(road.PrepareToProgram());
    const std::vector<uint8_t> bytes = Firmware(64, 12);
    OmDataImage image;
    image.SetBytes(0, bytes);
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, image));
    road.ExpectContent(bytes);
    road.ExpectNoViolation();
}

// The ATmega masks TDI while its IDCODE is selected, so the device ahead of it is not seen; but it
// is there, and takes its bits in every scan.
TEST(Board, FlashBehindAnAtmegaIsProgrammed) {
    const RecordingUserInterface user;
    Road road(vb::BoardBuilder()
                  .Set("sectors", "4x4K")
                  .UnusedBefore(2)
                  .Idcode(1, 0x1940503F)
                  .Line("fault idcode-masks-tdi U2"));
    std::vector<OmBitVector> chain;
    bool atmelBug = false;
    ASSERT_TRUE(road.programmer.ExamineChain(chain, atmelBug));
    EXPECT_TRUE(atmelBug);
    EXPECT_EQ(chain.size(), road.built.chain.size() - 1);
    ASSERT_TRUE(road.PrepareToProgram());
    const std::vector<uint8_t> bytes = Firmware(64, 14);
    OmDataImage image;
    image.SetBytes(0, bytes);
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, image));
    road.ExpectContent(bytes);
}

TEST(Board, ForeignIdcodeIsAskedAboutOnce) {
    RecordingUserInterface user;
    Road road(vb::BoardBuilder().Devices(1).Set("sectors", "4x4K"));
    std::string& pattern = road.programmer.setup.devices[0].bsdl->idcodes[0];
    pattern[0] = pattern[0] == '1' ? '0' : '1'; // bit 31
    user.Expect(L"The detected IDCODE of the Dev1 (VELTEST_IO1) device and the IDCODE from the "
                L"specified BSDL file have different version fields.\n\n"
                L"Ignore this warning and proceed anyway?",
                kWarningQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_TRUE(road.PrepareToProgram());
    EXPECT_TRUE(road.PrepareToProgram());
}

TEST(Board, JtagResetGivesThePinsBack) {
    const RecordingUserInterface user;
    Road road(vb::BoardBuilder().Set("sectors", "4x4K"));
    ASSERT_TRUE(road.PrepareToProgram());
    OmDataImage image;
    ASSERT_TRUE(road.programmer.ReadFlash(road.progress, 0, 2, image));
    EXPECT_EQ(road.board->LevelOf("WE").state, vb::NetState::Driven);
    EXPECT_TRUE(road.programmer.JtagReset());
    EXPECT_EQ(road.board->LevelOf("WE").state, vb::NetState::Core);
    road.ExpectNoViolation();
}

TEST(Board, ChipEraseTakesEverySector) {
    const RecordingUserInterface user;
    for (const char* set : {"amd", "intel"}) {
        Road road(vb::BoardBuilder()
                      .Set("set", set)
                      .Set("locks", "none")
                      .Set("sectors", "2x8K,2x16K")
                      .Set("sector-us", "500")
                      .Set("chip-us", "2000"));
        ASSERT_TRUE(road.PrepareToProgram());
        road.FillFlash(0x5A);
        EXPECT_TRUE(road.programmer.EraseChip(road.progress)) << set;
        road.ExpectContent(std::vector<uint8_t>(49152, 0xFF));
    }
}

TEST(Board, InfoReadsTheChipsTable) {
    const RecordingUserInterface user;
    Road road(vb::BoardBuilder().Chips(2).Set("buffer", "64").Set("sectors", "8x8K,127x64K"));
    ASSERT_TRUE(road.programmer.Prepare(kPrepareFlashCommands));
    road.programmer.commandSet = OmCommandSet::IntelStandard; // what was known is found anew
    road.programmer.sectors.groups = {{1, 128}};
    road.programmer.sectorsValid = true;
    OmFlashReport report;
    ASSERT_TRUE(road.programmer.GetFlashInfo(report));
    using Values = std::vector<std::wstring>;
    EXPECT_EQ(report.heading.values, (Values{L"Chip 1 / D15-D0", L"Chip 2 / D31-D16"}));
    EXPECT_EQ(report.commandSet.values, (Values{L"AMD (Buffered Prog.)"}));
    ASSERT_EQ(report.chips.size(), 3u);
    EXPECT_TRUE(report.chips[0].values[0].starts_with(L"01h ("));
    EXPECT_EQ(report.chips[1].values, (Values{L"7Eh", L"7Eh"}));
    EXPECT_EQ(report.chips[2].values, (Values{L"Yes", L"Yes"}));
    ASSERT_EQ(report.cfi.size(), 18u);
    EXPECT_EQ(report.cfi[0].values[0], L"AMD/Fujitsu Std");
    EXPECT_EQ(report.cfi[16].values[0], L"64 Bytes");
    EXPECT_EQ(report.cfi[17].values[0], L"8 x 8192 Bytes,\n127 x 65536 Bytes");
    EXPECT_EQ(road.programmer.commandSet, OmCommandSet::AmdBuffered);
    EXPECT_TRUE(road.programmer.sectorsValid);
    EXPECT_EQ(road.programmer.sectors.groups,
              (std::vector<OmSectorGroup>{{8, 8192}, {127, 65536}}));
}
