// CFI tables that are not what the chip is, chips that are asked in other ways, and chips that are
// no such flash at all. The bytes are those of the data sheets and of JESD68.

#include "tests/virtualboard/Bench.h"

#include <gtest/gtest.h>

using vb_test::Bench;

namespace {

struct Byte {
    uint32_t query, value;
};

void ExpectBytes(Bench& bench, std::initializer_list<Byte> bytes) {
    for (const Byte& byte : bytes)
        EXPECT_EQ(bench.bus.Read(byte.query) & 0xFF, byte.value) << std::hex << byte.query;
}

void EnterQuery(Bench& bench) {
    bench.bus.Write(0x55, 0x98);
}

void EraseWith(Bench& bench, uint32_t address, uint32_t command) {
    bench.bus.AmdCommand(0x80);
    bench.bus.AmdUnlock();
    bench.bus.Write(address, command);
    bench.Wait(1'000'000);
}

} // namespace

TEST(CfiQuirks, TopBootChipListsItsBottomFirst) {
    Bench bench(vb::BoardBuilder().Flash("s29gl064n-top").Set("sector-us", "1000"));
    EnterQuery(bench);
    // Two regions: 8 x 8 KiB, 127 x 64 KiB; primary table at 40h, version 1.3, top boot.
    ExpectBytes(bench, {{0x2C, 2},
                        {0x2D, 7},
                        {0x2E, 0},
                        {0x2F, 0x20},
                        {0x30, 0},
                        {0x31, 126},
                        {0x32, 0},
                        {0x33, 0},
                        {0x34, 1},
                        {0x15, 0x40},
                        {0x40, 0x50},
                        {0x41, 0x52},
                        {0x42, 0x49},
                        {0x43, 0x31},
                        {0x44, 0x33},
                        {0x4F, 3}});
    bench.bus.Write(0, 0xF0);
    for (const uint32_t address : {0x0000u, 0x7FFFu, 0x3F8000u, 0x3FF000u})
        bench.Chip().SetWord(address, 0);
    EraseWith(bench, 0, 0x30);        // 64 KiB at the bottom
    EraseWith(bench, 0x3FF000, 0x30); // 8 KiB at the top
    EXPECT_EQ(bench.bus.Read(0x7FFF), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x3FF000), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x3F8000), 0x0000u);
}

TEST(CfiQuirks, OldTablesDoNotTellTheBootBlock) {
    Bench bench(vb::BoardBuilder().Flash("am29lv160-top"));
    EnterQuery(bench);
    ExpectBytes(bench, {{0x2C, 4}, {0x2D, 0}, {0x2F, 0x40}, {0x39, 30}, {0x3C, 1}});
    ExpectBytes(bench, {{0x40, 0x50}, {0x43, 0x31}, {0x44, 0x30}, {0x4F, 0}});
    bench.bus.Write(0, 0xF0);
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(1) & 0x80, 0x80u);
    Bench atmel(vb::BoardBuilder().Flash("at49bv-top"));
    EnterQuery(atmel);
    ExpectBytes(atmel, {{0x44, 0x30}, {0x46, 0}});
}

TEST(CfiQuirks, SstTableSumsToTwiceTheChip) {
    Bench bench(vb::BoardBuilder().Flash("sst39vf1601").Set("sector-us", "100"));
    for (const uint32_t address : {0x55u, 0x555u, 0x5555u}) {
        bench.bus.Write(address, 0x98);
        EXPECT_EQ(bench.bus.Read(0x10), 0xFFFFu) << address;
    }
    bench.bus.Write(0x5555, 0xAA);
    bench.bus.Write(0x2AAA, 0x55);
    bench.bus.Write(0x5555, 0x98);
    // 2^21 bytes; 512 sectors of 4 KiB and 32 blocks of 64 KiB; command set 0701h
    ExpectBytes(bench, {{0x10, 'Q'},
                        {0x13, 1},
                        {0x14, 7},
                        {0x27, 21},
                        {0x2C, 2},
                        {0x2D, 0xFF},
                        {0x2E, 1},
                        {0x2F, 0x10},
                        {0x30, 0},
                        {0x31, 31},
                        {0x33, 0},
                        {0x34, 1}});
    bench.bus.Write(0x5555, 0xF0);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFFFu);
}

TEST(CfiQuirks, ThirtyAndFiftyChangePlacesInTheLaterSst) {
    for (const bool later : {false, true}) {
        SCOPED_TRACE(later);
        Bench bench(vb::BoardBuilder()
                        .Flash(later ? "sst39vf1601c" : "sst39vf1601")
                        .Set("sector-us", "100"));
        const auto erase = [&](uint32_t address, uint32_t command) {
            for (const uint32_t code : {0x80u, command}) {
                bench.bus.Write(0x5555, 0xAA);
                bench.bus.Write(0x2AAA, 0x55);
                bench.bus.Write(code == 0x80 ? 0x5555 : address, code);
            }
            bench.Wait(10'000);
        };
        for (const uint32_t address : {0x8000u, 0x8800u, 0xFFFFu, 0x10000u})
            bench.Chip().SetWord(address, 0);
        erase(0x8000, 0x30);
        EXPECT_EQ(bench.bus.Read(0x8000), 0xFFFFu);
        EXPECT_EQ(bench.bus.Read(0x8800), later ? 0xFFFFu : 0x0000u);
        EXPECT_EQ(bench.bus.Read(0xFFFF), later ? 0xFFFFu : 0x0000u);
        EXPECT_EQ(bench.bus.Read(0x10000), 0x0000u);
        bench.Chip().SetWord(0x8800, 0);
        bench.Chip().SetWord(0xFFFF, 0);
        erase(0x8800, 0x50);
        EXPECT_EQ(bench.bus.Read(0x8800), 0xFFFFu);
        EXPECT_EQ(bench.bus.Read(0xFFFF), later ? 0x0000u : 0xFFFFu);
    }
}

TEST(CfiQuirks, CountsTimesAndBuffersThatAreWrong) {
    Bench half(vb::BoardBuilder().Flash("s29gl064n-short"));
    EnterQuery(half);
    ExpectBytes(half, {{0x27, 23}, {0x2C, 1}, {0x2D, 63}, {0x2E, 0}});
    Bench noTime(vb::BoardBuilder().Flash("m29w128g"));
    EnterQuery(noTime);
    ExpectBytes(noTime, {{0x2A, 6}, {0x1F, 4}, {0x20, 0}, {0x24, 0}});
    Bench typical(vb::BoardBuilder().Flash("s29gl128n"));
    EnterQuery(typical);
    ExpectBytes(typical, {{0x1F, 7}, {0x20, 7}, {0x21, 10}, {0x22, 0}, {0x23, 1}, {0x24, 5}});
}

TEST(CfiQuirks, BufferInEightBitModeIsSmallerThanTheTableSays) {
    Bench bench(vb::BoardBuilder().Flash("m29ew-x8"));
    bench.bus.Write(0xAA, 0x98);
    EXPECT_EQ(bench.bus.Read(0x2A * 2), 10u);
    bench.bus.Write(0, 0xF0);
    bench.bus.AmdUnlock();
    bench.bus.Write(0, 0x25);
    bench.bus.Write(0, 0xFF); // the low byte of 1023
    for (uint32_t i = 0; i < 256; ++i)
        bench.bus.Write(i, 0x00);
    bench.bus.Write(256, 0x00); // the 257th is no confirmation
    EXPECT_EQ(bench.bus.Read(0) & 0x02, 0x02u);
    bench.bus.AmdCommand(0xF0);
    EXPECT_EQ(bench.bus.Read(0), 0xFFu);
}

TEST(CfiQuirks, QueryEntryAt555Alone) {
    Bench bench(vb::BoardBuilder().Flash("s29ns-exact"));
    EnterQuery(bench);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFFFu);
    bench.bus.Write(0x555, 0x98);
    EXPECT_EQ(bench.bus.Read(0x10), 0x51u);
}

TEST(CfiQuirks, ExactUnlockAddressesHaveZerosAboveThem) {
    Bench bench(vb::BoardBuilder().Flash("s29ns-exact"));
    const auto identify = [&](uint32_t first, uint32_t second) {
        bench.bus.Write(first, 0xAA);
        bench.bus.Write(second, 0x55);
        bench.bus.Write(first, 0x90);
        const uint32_t found = bench.bus.Read(1);
        bench.bus.Write(0, 0xF0);
        return found;
    };
    EXPECT_EQ(identify(0x5555, 0x2AAA), 0xFFFFu);
    EXPECT_EQ(identify(0x555, 0x2AA), 0x277Eu);
    EXPECT_EQ(identify(0x10555, 0x102AA), 0x277Eu); // above what it looks at
}

TEST(CfiQuirks, ThreeIdentifiersInARow) {
    Bench bench(vb::BoardBuilder().Flash("s29gl128n"));
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(0x01), 0x227Eu);
    EXPECT_EQ(bench.bus.Read(0x0E), 0x2221u);
    EXPECT_EQ(bench.bus.Read(0x0F), 0x2201u);
}

TEST(CfiQuirks, LaterBanksAnswerWithAContinuationCode) {
    Bench eon(vb::BoardBuilder().Flash("en29lv160-top"));
    eon.bus.AmdCommand(0x90);
    EXPECT_EQ(eon.bus.Read(0x000), 0x7Fu);
    EXPECT_EQ(eon.bus.Read(0x100), 0x1Cu);
    EXPECT_EQ(eon.bus.Read(0x001), 0x22C4u);
    Bench pmc(vb::BoardBuilder().Flash("pm39lv040"));
    pmc.bus.AmdCommand(0x90);
    EXPECT_EQ(pmc.bus.Read(0), 0x9Du);
    EXPECT_EQ(pmc.bus.Read(3), 0x7Fu);
}

TEST(CfiQuirks, ChipWithoutATableIgnoresTheQuery) {
    Bench bench(vb::BoardBuilder().Flash("am29lv040"));
    EnterQuery(bench);
    bench.bus.Write(0x555, 0x98);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFu);
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(1), 0x4Fu);
}

TEST(CfiQuirks, PageChipErasesWhatIsNotLoaded) {
    Bench bench(vb::BoardBuilder().Flash("at29c040a"));
    for (const uint32_t address : {0x100u, 0x110u, 0x1FFu, 0x200u})
        bench.Chip().SetWord(address, 0x00);
    bench.bus.Write(0x5555, 0xAA);
    bench.bus.Write(0x2AAA, 0x55);
    bench.bus.Write(0x5555, 0xA0);
    bench.bus.Write(0x110, 0x5A);
    bench.bus.Write(0x111, 0xA5);
    bench.Wait(150);
    EXPECT_EQ(bench.bus.Read(0x111) & 0x80, 0x00u); // DQ7: complement of the last byte's
    bench.Wait(10'000);
    EXPECT_EQ(bench.bus.Read(0x110), 0x5Au);
    EXPECT_EQ(bench.bus.Read(0x111), 0xA5u);
    EXPECT_EQ(bench.bus.Read(0x100), 0xFFu);
    EXPECT_EQ(bench.bus.Read(0x1FF), 0xFFu);
    EXPECT_EQ(bench.bus.Read(0x200), 0x00u);
    bench.bus.Write(0x5555, 0xAA);
    bench.bus.Write(0x2AAA, 0x55);
    bench.bus.Write(0x5555, 0x90);
    EXPECT_EQ(bench.bus.Read(1), 0xA4u);
}

TEST(CfiQuirks, WhereNoFlashAnswersLinesEchoOrFollowTheirResistors) {
    Bench echo(vb::BoardBuilder().Line("fault dead F1"));
    echo.bus.Write(0, 0x1234);
    EXPECT_EQ(echo.bus.Read(0), 0x1234u);
    echo.bus.Write(0, 0x0090);
    EXPECT_EQ(echo.bus.Read(1), 0x0090u);
    vb::BoardBuilder pulled = vb::BoardBuilder().Line("fault dead F1");
    for (unsigned bit = 0; bit < 16; ++bit)
        pulled.Line("pull D" + std::to_string(bit) + (bit < 8 ? " up" : " down"));
    Bench held(pulled);
    held.bus.Write(0, 0x1290);
    EXPECT_EQ(held.bus.Read(0), 0x00FFu);
}

TEST(CfiQuirks, PartitionedIntelChipsHaveTheirCodes) {
    Bench bench(vb::BoardBuilder().Flash("m18"));
    bench.bus.Write(0, 0x98);
    ExpectBytes(bench, {{0x10, 'Q'}, {0x13, 0}, {0x14, 2}, {0x2A, 10}, {0x2D, 31}, {0x30, 4}});
}

TEST(CfiQuirks, EveryNamedChipCanBeWrittenIntoABoardFileAndReadBack) {
    for (const std::string& name : vb::FlashNames()) {
        const vb::FlashParameters flash = vb::FlashByName(name);
        vb::FlashParameters copy;
        const std::string keys = vb::FormatFlashParameters(flash);
        for (size_t start = 0; start < keys.size();) {
            const size_t end = std::min(keys.find(' ', start), keys.size());
            const std::string part = keys.substr(start, end - start);
            const size_t sign = part.find('=');
            vb::SetFlashParameter(copy, part.substr(0, sign), part.substr(sign + 1));
            start = end + 1;
        }
        EXPECT_EQ(vb::FormatFlashParameters(copy), keys) << name;
    }
}
