// The Intel command sets: status register, word and buffered program, erase, locks.

#include "tests/virtualboard/Bench.h"

#include <gtest/gtest.h>

#include <vector>

using vb_test::Bench;

namespace {

vb::BoardBuilder SlowChip(const char* model = "intel16-64m") {
    return vb::BoardBuilder()
        .Flash(model)
        .Set("word-us", "1000")
        .Set("buffer-us", "2000")
        .Set("sector-us", "3000")
        .Set("lock-us", "500");
}

void Unlock(Bench& bench, uint32_t address) {
    bench.bus.Write(address, 0x60606060);
    bench.bus.Write(address, 0xD0D0D0D0);
    bench.Wait(500);
}

void LoadBuffer(Bench& bench, uint32_t address, const std::vector<uint32_t>& values) {
    bench.bus.Write(address, 0xE8);
    bench.bus.Write(address, static_cast<uint32_t>(values.size() - 1));
    for (uint32_t i = 0; i < values.size(); ++i)
        bench.bus.Write(address + i, values[i]);
}

uint32_t ReadArray(Bench& bench, uint32_t address) {
    bench.bus.Write(0, 0xFFFFFFFF);
    return bench.bus.Read(address);
}

} // namespace

TEST(IntelFlash, ProgramsAWordAndSaysWhenItIsReady) {
    Bench bench(SlowChip());
    Unlock(bench, 0x5000);
    bench.bus.Write(0x5000, 0x40);
    bench.bus.Write(0x5000, 0x1234);
    EXPECT_EQ(bench.bus.Read(0x5000), 0x00u);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x5000), 0x80u); // still the status register
    EXPECT_EQ(ReadArray(bench, 0x5000), 0x1234u);
    EXPECT_EQ(bench.board.Violations().Count(), 0u);
}

TEST(IntelFlash, LockedBlockRefusesAndErrorsStayUntilCleared) {
    Bench bench(SlowChip());
    bench.bus.Write(0x5000, 0x40);
    bench.bus.Write(0x5000, 0x1234);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0), 0x92u); // SR7, SR4, SR1
    bench.bus.Write(0x5000, 0x20);
    bench.bus.Write(0x5000, 0xD0);
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0), 0xB2u); // and SR5
    bench.bus.Write(0, 0x50);
    EXPECT_EQ(bench.bus.Read(0), 0x80u);
    EXPECT_EQ(ReadArray(bench, 0x5000), 0xFFFFu);
}

TEST(IntelFlash, ErasesABlock) {
    Bench bench(SlowChip()); // four blocks of 32 KiB first: block 5 begins at word 0x20000
    bench.Chip().SetWord(0x20000, 0);
    bench.Chip().SetWord(0x2FFFF, 0);
    bench.Chip().SetWord(0x30000, 0);
    Unlock(bench, 0x20000);
    bench.bus.Write(0x20000, 0x20);
    bench.bus.Write(0x20000, 0xD0);
    EXPECT_EQ(bench.bus.Read(0x20000), 0x00u);
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0x20000), 0x80u);
    EXPECT_EQ(ReadArray(bench, 0x20000), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x2FFFF), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x30000), 0u);
}

TEST(IntelFlash, WrongConfirmationIsASequenceError) {
    Bench bench(SlowChip());
    bench.bus.Write(0, 0x20);
    bench.bus.Write(0, 0xFF);
    EXPECT_EQ(bench.bus.Read(0), 0xB0u);
}

TEST(IntelFlash, ProgramsABufferAndReportsItsAvailability) {
    Bench bench(SlowChip());
    Unlock(bench, 0x100);
    bench.bus.Write(0x100, 0xE8);
    EXPECT_EQ(bench.bus.Read(0x100), 0x80u);
    bench.bus.Write(0x100, 2);
    for (uint32_t i = 0; i < 3; ++i)
        bench.bus.Write(0x100 + i, 0x1000 + i);
    bench.bus.Write(0x102, 0xD0);
    EXPECT_EQ(bench.bus.Read(0x100), 0x00u);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0x100), 0x80u);
    EXPECT_EQ(ReadArray(bench, 0x100), 0x1000u);
    EXPECT_EQ(bench.bus.Read(0x102), 0x1002u);
    EXPECT_EQ(bench.bus.Read(0x103), 0xFFFFu);
}

TEST(IntelFlash, BufferLoadErrors) {
    struct Case {
        const char* why;
        uint32_t address, words, confirm;
    };

    for (const Case& test :
         {Case{"more than the buffer holds", 0x100, 33, 0xD0},
          Case{"crosses a block", 0x3FFF, 2, 0xD0}, Case{"no confirmation", 0x100, 2, 0xFF}}) {
        Bench bench(SlowChip());
        Unlock(bench, test.address);
        LoadBuffer(bench, test.address, std::vector<uint32_t>(test.words, 0xFFFF));
        bench.bus.Write(test.address, test.confirm);
        bench.bus.Write(0, 0x70);
        EXPECT_EQ(bench.bus.Read(0) & 0x30, 0x30u) << test.why;
    }
}

TEST(IntelFlash, IdentifiersAndBlockLocks) {
    Bench bench(SlowChip());
    Unlock(bench, 0x8000);
    bench.bus.Write(0, 0x90);
    EXPECT_EQ(bench.bus.Read(0), 0x89u);
    EXPECT_EQ(bench.bus.Read(1), 0x8817u);
    EXPECT_EQ(bench.bus.Read(0x0002), 1u);
    EXPECT_EQ(bench.bus.Read(0x8002), 0u);
    bench.bus.Write(0x8000, 0x60);
    bench.bus.Write(0x8000, 0x01);
    bench.Wait(500);
    bench.bus.Write(0, 0x90);
    EXPECT_EQ(bench.bus.Read(0x8002), 1u);
}

TEST(IntelFlash, OneUnlockFreesAllBlocksOfTheOtherScheme) {
    Bench bench(SlowChip("intel16-j3"));
    for (uint32_t address : {0x10000u, 0x20000u}) {
        bench.bus.Write(address, 0x60);
        bench.bus.Write(address, 0x01);
        bench.Wait(500);
    }
    bench.bus.Write(0, 0x90);
    EXPECT_EQ(bench.bus.Read(0x00002), 0u); // unlocked at power-up
    EXPECT_EQ(bench.bus.Read(0x10002), 1u);
    Unlock(bench, 0);
    bench.bus.Write(0, 0x90);
    EXPECT_EQ(bench.bus.Read(0x10002), 0u);
    EXPECT_EQ(bench.bus.Read(0x20002), 0u);
}

TEST(IntelFlash, InjectedErrorsShowInTheStatusRegister) {
    struct Case {
        const char* fault;
        uint32_t setup, confirm, status;
    };

    for (const Case& test :
         {Case{"erase-fails", 0x20, 0xD0, 0xA0}, Case{"program-fails", 0x40, 0x00, 0x90},
          Case{"lock-fails", 0x60, 0x01, 0x90}, Case{"lock-fails", 0x60, 0xD0, 0xA0}}) {
        Bench bench(SlowChip("intel16-j3").Line(std::string("fault ") + test.fault + " F1 0"));
        bench.bus.Write(0, test.setup);
        bench.bus.Write(0, test.confirm);
        bench.Wait(13'000);
        EXPECT_EQ(bench.bus.Read(0), test.status) << test.fault;
    }
}

TEST(IntelFlash, StuckBitFailsTheProgram) {
    Bench bench(SlowChip("intel16-j3").Line("fault stuck-bit F1 3 15"));
    bench.bus.Write(3, 0x40);
    bench.bus.Write(3, 0x0000);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(3), 0x90u);
    EXPECT_EQ(ReadArray(bench, 3), 0x8000u);
}

TEST(IntelFlash, StandardChipHasNoBufferAndNoLocks) {
    Bench bench(SlowChip("intel16-std"));
    bench.bus.Write(0, 0xE8);
    EXPECT_EQ(bench.bus.Read(0), 0xFFFFu); // still the array
    bench.bus.Write(7, 0x10);              // the other program command
    bench.bus.Write(7, 0x0707);
    bench.Wait(1000);
    EXPECT_EQ(ReadArray(bench, 7), 0x0707u);
    bench.bus.Write(0, 0x98);
    EXPECT_EQ(bench.bus.Read(0x13), 3u);
}

TEST(IntelFlash, TwoChipsKeepTheirOwnStatus) {
    Bench bench(SlowChip("intel16-j3").Chips(2).Line("fault slow F1 3"));
    bench.bus.Write(0, 0x00400040);
    bench.bus.Write(0, 0x22221111);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0), 0x00800000u);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0), 0x00800080u);
    EXPECT_EQ(ReadArray(bench, 0), 0x22221111u);
}

TEST(IntelFlash, ThirtyTwoBitChip) {
    Bench bench(SlowChip("intel32-128m"));
    bench.bus.Write(0, 0x90909090);
    EXPECT_EQ(bench.bus.Read(1), 0x17u);
    bench.bus.Write(2, 0x40404040);
    bench.bus.Write(2, 0x12345678);
    bench.Wait(1000);
    EXPECT_EQ(ReadArray(bench, 2), 0x12345678u);
}
