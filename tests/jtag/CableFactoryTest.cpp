#include "jtag/CableFactory.h"

#include "tests/jtag/LogCollector.h"

#include <gtest/gtest.h>

TEST(CableFactory, EveryTypeHasItsLabel) {
    const wchar_t* const labels[] = {
        L"Xilinx Parallel Cable III / IV",
        L"Altera ByteBlaster MV / II",
        L"Lattice Parallel ispDownload",
        L"Wiggler",
        L"Embest EasyICE",
        L"Digilent JTAG-USB",
        L"Generic FTDI FT2232",
        L"Segger J-Link",
        L"Segger J-Link via TCP/IP server",
        L"Altera USB-Blaster",
    };
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
