#include "jtag/CableFactory.h"

#include "tests/jtag/LogCollector.h"

#include <gtest/gtest.h>
#include <iterator>

TEST(CableFactory, EveryTypeHasItsLabel) {
    const char* const labels[] = {
        "Xilinx Parallel Cable III / IV",
        "Altera ByteBlaster MV / II",
        "Lattice Parallel ispDownload",
        "Wiggler",
        "Embest EasyICE",
        "Digilent JTAG-USB",
        "Generic FTDI FT2232",
        "Segger J-Link",
        "Segger J-Link via TCP/IP server",
        "Altera USB-Blaster",
    };
    ASSERT_EQ(static_cast<int>(std::size(labels)), kCableTypeCount);
    for (int type = 0; type < kCableTypeCount; ++type)
        EXPECT_STREQ(GetCableLabel(static_cast<OmCableType>(type)), labels[type]);
}

TEST(CableFactory, TypeOutOfRangeHasNoLabel) {
    EXPECT_EQ(GetCableLabel(static_cast<OmCableType>(10)), nullptr);
    EXPECT_EQ(GetCableLabel(static_cast<OmCableType>(-1)), nullptr);
}

TEST(CableFactory, TypeOutOfRangeLogsOnlyTheFailure) {
    for (const int type : {10, -1, 1000}) {
        LogCollector log;
        OmConnectionSettings settings;
        settings.cableType = static_cast<OmCableType>(type);
        EXPECT_EQ(CreateCable(settings), nullptr);
        EXPECT_EQ(log.text, L"*** FAILED *** (CreateCable failed)\n") << type;
    }
}
