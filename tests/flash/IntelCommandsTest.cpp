#include "flash/IntelCommands.h"

#include "tests/flash/FlashBench.h"

#include <gtest/gtest.h>

TEST(IntelCommands, ReadArrayWritesFfAndReturnsWhenTheCycleIsOver) {
    FlashBench bench;
    IntelReadArray(bench.bus);
    EXPECT_EQ(bench.TakeLog(), R"(
write and read
  00000 ZZZZ 0 1 1
  00000 FFFF 0 1 0
  00000 FFFF 0 1 1 r
)");
}

TEST(IntelCommands, ClearStatusLeavesTheAddressPinsAtTheirSafeValues) {
    FlashBench bench;
    IntelClearStatus(bench.bus);
    EXPECT_EQ(bench.TakeLog(), R"(
write
  FFFFF 5050 0 1 0
  FFFFF 5050 0 1 1
)");
}

TEST(IntelCommands, ReadIdTakesTheShiftedIdentifierWord) {
    FlashBench bench({.shift = 1});
    bench.cable.answers = {0, 0x0089, 0x8922};
    const OmFlashIds ids = IntelReadId(bench.bus);
    EXPECT_EQ(ids.manufacturer, 0x0089u);
    EXPECT_EQ(ids.device, 0x8922u);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write and read
  00000 ZZZZ 0 1 1
  00000 9090 0 1 0
  00000 9090 0 1 1
  00000 ZZZZ 0 1 1 r
sleep 60
write and read
  00000 ZZZZ 0 0 1
  00002 ZZZZ 0 0 1 r
  00002 ZZZZ 0 0 1 r
)") + kIntelReadArrayLog + kIdleLog);
}
