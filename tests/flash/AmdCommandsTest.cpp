#include "flash/AmdCommands.h"

#include "tests/flash/FlashBench.h"

#include <gtest/gtest.h>

TEST(AmdCommands, ResetWritesF0AndReturnsWhenTheCycleIsOver) {
    FlashBench bench;
    AmdReset(bench.bus);
    EXPECT_EQ(bench.TakeLog(), R"(
write and read
  55555 ZZZZ 0 1 1
  55555 F0F0 0 1 0
  55555 F0F0 0 1 1 r
)");
}

TEST(AmdCommands, AbortResetGoesIntoTheGivenBatch) {
    FlashBench bench;
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    AmdAbortReset(batch);
    EXPECT_TRUE(batch.scans.empty());
    EXPECT_EQ(bench.TakeLog(), R"(
write
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 F0F0 0 1 0
  55555 F0F0 0 1 1
)");
}

TEST(AmdCommands, ReadIdTakesManufacturerFromWord0AndDeviceFromWord1) {
    FlashBench bench;
    bench.cable.answers = {0, 0x0001, 0x227E};
    const OmFlashIds ids = AmdReadId(bench.bus);
    EXPECT_EQ(ids.manufacturer, 0x0001u);
    EXPECT_EQ(ids.device, 0x227Eu);
    EXPECT_EQ(bench.TakeLog(), R"(
write and read
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 9090 0 1 0
  00000 9090 0 1 1
  00000 ZZZZ 0 1 1 r
sleep 60
write and read
  00000 ZZZZ 0 0 1
  00001 ZZZZ 0 0 1 r
  00001 ZZZZ 0 0 1 r
write and read
  55555 ZZZZ 0 1 1
  55555 F0F0 0 1 0
  55555 F0F0 0 1 1 r
write and read
  00000 ZZZZ 1 1 1 r
)");
}

TEST(AmdCommands, CommandAddressesFollowTheAddressShift) {
    FlashBench bench({.shift = 2});
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    AppendAmdUnlock(batch);
    batch.Run();
    EXPECT_EQ(bench.TakeLog(), R"(
write
  55554 ZZZZ 0 1 1
  55554 AAAA 0 1 0
  AAAA8 AAAA 0 1 1
  AAAA8 5555 0 1 0
)");
}
