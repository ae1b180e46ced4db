#include "jtag/PinTableCables.h"

#include "jtag/CableFactory.h"
#include "tests/jtag/FakePortDriver.h"
#include "tests/jtag/LogCollector.h"
#include "tests/jtag/ScanHelpers.h"
#include "tests/support/VirtualClock.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

// An open pod on LPT1 at 378, its set-up traffic forgotten; virtual time stands still, so that no
// wait costs anything.
template <typename Pod>
struct OpenPod {
    OpenPod() {
        EXPECT_TRUE(cable.Initialize(0, 200000));
        port->traffic.clear();
    }

    // Traffic without the addresses: data writes as they are, "?" for a look at the status.
    std::string Take() {
        std::string taken;
        std::swap(taken, port->traffic);
        for (size_t at; (at = taken.find("378=")) != std::string::npos;)
            taken.erase(at, 4);
        for (size_t at; (at = taken.find("379? ")) != std::string::npos;)
            taken.replace(at, 5, "? ");
        return taken;
    }

    VirtualClock clock;
    FakePortDriver port;
    Pod cable;
};

using OpenXilinx = OpenPod<OmXilinxParallelCable3>;

struct PinCase {
    OmCableType type;
    const char* setUp; // traffic of Initialize with a control register of FF
    const char* idle;  // SetPins(0, 0, 0)
    const char* tck;
    const char* tms;
    const char* tdi;
    uint8_t high; // a status register that reads as TDO 1, all other bits against it
    uint8_t low;
};

constexpr PinCase kPods[] = {
    {OmCableType::XilinxParallelCable3, "37A? 37A=DF 378=15 ", "378=10 ", "378=12 ", "378=14 ",
     "378=11 ", 0x10, 0xEF},
    {OmCableType::AlteraByteBlasterMV, "37A? 37A=DF 37A? 37A=CF 378=42 ", "378=00 ", "378=01 ",
     "378=02 ", "378=40 ", 0x7F, 0x80},
    {OmCableType::LatticeParallelIspDownload, "37A? 37A=DF 378=3D ", "378=38 ", "378=3A ",
     "378=3C ", "378=39 ", 0x40, 0xBF},
    {OmCableType::Wiggler, "37A? 37A=DF 37A? 37A=CD 378=9A ", "378=90 ", "378=94 ", "378=92 ",
     "378=98 ", 0x7F, 0x80},
    {OmCableType::EmbestEasyIce, "37A? 37A=DF 37A? 37A=CD 378=9A ", "378=90 ", "378=94 ", "378=92 ",
     "378=98 ", 0x7F, 0x80},
};

struct WalkCase {
    bool instruction;
    int from;
    int to;
    const char* traffic; // of a Xilinx pod shifting 1, 0
};

// Data values: 10 always, TCK 2, TMS 4, TDI 1.
const std::string kShift10 = "11 ? 13 14 ? 16 ";
const std::string kToIdle = "15 17 11 13 11 ";
const std::string kToPause = "11 13 11 ";

} // namespace

TEST(ParallelCable, NeedsThePortDriver) {
    OmWiggler cable;
    EXPECT_STREQ(cable.GetDriverName(), "ompio2");
    EXPECT_EQ(cable.GetJtagHAL(), static_cast<OmJtagHAL*>(&cable));
}

TEST(ParallelCable, StartsWithNothingOpen) {
    LogCollector log;
    {
        OmWiggler cable;
        EXPECT_EQ(cable.driver, nullptr);
        EXPECT_EQ(cable.baseAddress, 0);
        EXPECT_EQ(cable.portIndex, 0U);
        EXPECT_EQ(cable.GetFrequency(), 0U);
        EXPECT_EQ(cable.halfPeriod, -1.0);
    }
    EXPECT_EQ(log.text, L"Creating OmParallelCable\nDestroying OmParallelCable\n");
}

TEST(ParallelCable, HasNoBatching) {
    OmWiggler cable;
    float reading = 0;
    float blind = 0;
    float status = 0;
    cable.GetVectorsPerTransfer(100, &reading, &blind, &status);
    EXPECT_EQ(reading, -1.0F);
    EXPECT_EQ(blind, -1.0F);
    EXPECT_EQ(status, -1.0F);
    cable.GetVectorsPerTransfer(100, nullptr, nullptr, nullptr);
}

TEST(ParallelCable, InitializesThePortItIsGiven) {
    FakePortDriver port;
    port->addresses = {0x378, 0x278, 0xE0BC};
    VirtualClock clock;
    LogCollector log;
    OmXilinxParallelCable3 cable;
    EXPECT_TRUE(cable.Initialize(2, 1000));
    EXPECT_EQ(cable.portIndex, 2U);
    EXPECT_EQ(cable.baseAddress, 0xE0BC);
    EXPECT_EQ(cable.GetFrequency(), 1000U);
    EXPECT_EQ(port->traffic, "E0BE? E0BE=00 E0BC=15 ");
    EXPECT_EQ(log.text, L"Creating OmParallelCable\n"
                        L"Initializing OmParallelCable (2 LPT, 1000 Hz)\n"
                        L"Initializing succeeded, LPT base addr: 0xe0bc\n");
}

TEST(ParallelCable, HalfPeriodHasAFloorAtTheTopOfTheRange) {
    const struct {
        uint32_t frequency;
        double halfPeriod;
    } cases[] = {
        {1000, 500.0}, {100000, 5.0}, {199999, 2.5000125}, {200000, 0.75}, {1000000, 0.75},
    };

    for (const auto& row : cases) {
        FakePortDriver port;
        VirtualClock clock;
        OmWiggler cable;
        EXPECT_TRUE(cable.Initialize(0, row.frequency));
        EXPECT_NEAR(cable.halfPeriod, row.halfPeriod, 1e-7) << row.frequency;
    }
}

TEST(ParallelCable, PortBeyondLpt3IsRefusedBeforeTheDriverIsOpened) {
    FakePortDriver port;
    OmWiggler cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize(3, 200000));
    EXPECT_EQ(log.text, L"Initializing OmParallelCable (3 LPT, 200000 Hz)\n");
    EXPECT_TRUE(port->opened.empty());
}

TEST(ParallelCable, AbsentPortOrNoFrequencyIsFalseWithoutAFailureLine) {
    FakePortDriver port;
    OmWiggler cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize(1, 200000));
    EXPECT_EQ(log.Take(), L"Initializing OmParallelCable (1 LPT, 200000 Hz)\n");
    EXPECT_FALSE(cable.Initialize(0, 0));
    EXPECT_EQ(log.Take(), L"Initializing OmParallelCable (0 LPT, 0 Hz)\n");
    port->absent = true;
    EXPECT_FALSE(cable.Initialize(0, 200000));
    EXPECT_EQ(log.Take(), L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n");
}

TEST(ParallelCable, DriverThatDoesNotOpenAgainIsReported) {
    // Lists the ports once, and is gone when the cable opens it.
    class Vanishing : public OmPortDriverOpener {
      public:
        explicit Vanishing(FakePortDriver& port) : port_(port) { SetPortDriverOpener(this); }

        ~Vanishing() override { SetPortDriverOpener(&port_); }

        Vanishing(const Vanishing&) = delete;
        Vanishing& operator=(const Vanishing&) = delete;

        std::unique_ptr<OmPortDriver> Open(const std::string& name) override {
            return opens_++ == 0 ? port_.Open(name) : nullptr;
        }

      private:
        FakePortDriver& port_;
        int opens_ = 0;
    };

    FakePortDriver port;
    const Vanishing opener(port);
    OmWiggler cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize(0, 200000));
    EXPECT_EQ(log.text, L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
                        L"*** FAILED *** (OpenDriver failed)\n");
}

TEST(ParallelCable, EachFailedCallOfTheSetUpIsReported) {
    const struct {
        int call; // 0 is the enumeration
        const wchar_t* line;
    } cases[] = {
        {1, L"InitParallelPort() failed\n"}, {2, L"InitParallelPort() failed\n"},
        {3, L"EnableJTAG() failed\n"},       {4, L"EnableJTAG() failed\n"},
        {5, L"EnableJTAG() failed\n"},
    };

    for (const auto& row : cases) {
        FakePortDriver port;
        port->failAtCall = row.call;
        VirtualClock clock;
        LogCollector log;
        {
            OmWiggler cable;
            log.Take();
            EXPECT_FALSE(cable.Initialize(0, 200000)) << row.call;
            EXPECT_EQ(log.text,
                      L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n" + std::wstring(row.line))
                << row.call;
            EXPECT_EQ(port->openHandles, 2) << "the enumeration's and the cable's";
        }
        EXPECT_EQ(port->openHandles, 1) << "the cable's is closed";
    }
}

TEST(ParallelCable, SystemThatRefusesThePortIsNamed) {
    FakePortDriver port;
    port->failAtCall = 1; // the first access, after the enumeration
    port->refusalReason = L"no permission to open /dev/parport0";
    OmWiggler cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize(0, 200000));
    EXPECT_EQ(log.text, L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
                        L"*** FAILED *** (no permission to open /dev/parport0)\n"
                        L"InitParallelPort() failed\n");
}

TEST(ParallelCable, InitializingAgainOpensTheDriverAnew) {
    OpenXilinx pod;
    EXPECT_TRUE(pod.cable.Initialize(0, 1000));
    EXPECT_EQ(pod.port->openHandles, 3) << "two enumerations and the cable";
}

TEST(ParallelCable, FactoryOpensEachPodWithItsOwnPins) {
    for (const PinCase& row : kPods) {
        FakePortDriver port;
        port->registers[0x37A] = 0xFF;
        VirtualClock clock;
        LogCollector log;
        OmConnectionSettings settings;
        settings.cableType = row.type;
        const std::unique_ptr<OmCable> created = CreateCable(settings);
        auto* cable = dynamic_cast<OmParallelCable*>(created.get());
        ASSERT_NE(cable, nullptr);
        EXPECT_EQ(port->traffic, row.setUp);
        const auto write = [&](bool tck, bool tms, bool tdi) {
            port->traffic.clear();
            cable->SetPins(tck, tms, tdi);
            return port->traffic;
        };
        EXPECT_EQ(write(false, false, false), row.idle);
        EXPECT_EQ(write(true, false, false), row.tck);
        EXPECT_EQ(write(false, true, false), row.tms);
        EXPECT_EQ(write(false, false, true), row.tdi);
        port->answers = {row.high, row.low};
        EXPECT_EQ(cable->GetTdo(), 1);
        EXPECT_EQ(cable->GetTdo(), 0);
    }
}

TEST(ParallelCable, FactoryLogsThePodsName) {
    const wchar_t* const names[] = {L"XILINX_PARALLEL_CABLE_3", L"ALTERA_BYTEBLASTER_MV",
                                    L"LATTICE_PARALLEL_ISPDOWNLOAD", L"WIGGLER", L"WIGGLER"};
    for (int type = 0; type < 5; ++type) {
        FakePortDriver port;
        VirtualClock clock;
        LogCollector log;
        OmConnectionSettings settings;
        settings.cableType = static_cast<OmCableType>(type);
        settings.lptFrequency = 150000;
        EXPECT_NE(CreateCable(settings), nullptr);
        EXPECT_EQ(log.text, L"Creating cable object  " + std::wstring(names[type]) +
                                L"\n"
                                L"Creating OmParallelCable\n"
                                L"Initializing OmParallelCable (0 LPT, 150000 Hz)\n"
                                L"Initializing succeeded, LPT base addr: 0x378\n"
                                L"Destroying OmParallelCable\n");
    }
}

TEST(ParallelCable, ResetTapLeavesTckLowAndTmsHigh) {
    OpenXilinx pod;
    pod.cable.ResetTap();
    EXPECT_EQ(pod.Take(), "15 17 15 17 15 17 15 17 15 17 11 13 15 ");
}

TEST(ParallelCable, WalksFromEveryStartToEveryEnd) {
    const WalkCase cases[] = {
        {false, 0, 1, "11 13 15 17 11 13 11 13 "},
        {false, 0, 0, "11 13 15 17 11 13 11 13 "},
        {false, 1, 1, "15 17 11 13 11 13 "},
        {false, 1, 0, "15 17 11 13 11 13 "},
        {false, 1, 2, "15 17 11 13 11 13 "},
        {false, 2, 1, "15 17 10 12 "},
        {false, 2, 0, "15 17 10 12 "},
        {false, 9, 9, "15 17 10 12 "},
        {true, 0, 1, "11 13 15 17 15 17 11 13 11 13 "},
        {true, 0, 0, "11 13 15 17 15 17 11 13 11 13 "},
        {true, 1, 1, "15 17 15 17 11 13 11 13 "},
        {true, 1, 0, "15 17 15 17 11 13 11 13 "},
        {true, 2, 1, "15 17 11 13 "},
        {true, 2, 0, "15 17 11 13 "},
        {true, -1, -1, "15 17 11 13 "},
    };
    for (const WalkCase& row : cases) {
        OpenXilinx pod;
        pod.port->answers = {0xEF, 0x10};
        OmBitVector out{9, 9, 9};
        if (row.instruction)
            pod.cable.ScanIR({1, 0}, &out, row.from, row.to);
        else
            pod.cable.ScanDR({1, 0}, &out, row.from, row.to);
        EXPECT_EQ(pod.Take(), row.traffic + kShift10 + (row.to == 1 ? kToIdle : kToPause))
            << row.instruction << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{0, 1})) << row.instruction << row.from << row.to;
    }
}

TEST(ParallelCable, OnlyExactlyOneIsShiftedAsOne) {
    OpenXilinx pod;
    pod.cable.ScanDR({'X', 'Z', 2, 1}, nullptr, 1, 1);
    EXPECT_EQ(pod.Take(), "15 17 11 13 11 13 10 12 10 12 10 12 15 17 " + kToIdle);
}

TEST(ParallelCable, BatchIsOneScanAfterTheOther) {
    OpenXilinx pod;
    pod.port->answers = {0x10};
    OmCapturedList captured{{1, 1}};
    pod.cable.ScanVectors({{{1}, false}, {{0}, true}}, &captured);
    EXPECT_EQ(pod.Take(),
              "15 17 11 13 11 13 15 17 " + kToIdle + "15 17 11 13 11 13 14 ? 16 " + kToIdle);
    EXPECT_EQ(captured, OmCapturedList{{1}});
}

TEST(ParallelCable, WithoutAListFlagsAskForNothing) {
    OpenXilinx pod;
    pod.cable.ScanVectors({{{1}, true}}, nullptr);
    EXPECT_EQ(pod.Take(), "15 17 11 13 11 13 15 17 " + kToIdle);
}

TEST(ParallelCable, EachEdgeWaitsAHalfPeriod) {
    FakePortDriver port;
    VirtualClock clock;
    clock.stepMicroseconds = 1; // each look costs a microsecond, and an overhead of one is found
    OmWiggler cable;
    EXPECT_TRUE(cable.Initialize(0, 10000)); // 50 us
    const uint64_t before = clock.microseconds;
    cable.ResetTap(); // 13 edges, each the first look and 49 more
    EXPECT_EQ(clock.microseconds - before, 13U * 50U);
}

TEST(ParallelCable, FailedAccessesAreThrownWithTheirTexts) {
    OpenXilinx pod;
    pod.port->failAtCall = pod.port->calls;
    EXPECT_EQ(MessageOf([&] { pod.cable.ResetTap(); }), L"Failed to write to parallel port.");
    EXPECT_EQ(MessageOf([&] { pod.cable.ResetTap(); }), L"(nothing thrown)");
    OmBitVector out;
    pod.port->failAtCall = pod.port->calls + 7; // three cycles and a low edge, then TDO
    EXPECT_EQ(MessageOf([&] { pod.cable.ScanDR({1}, &out, 1, 1); }),
              L"Failed to read from parallel port.");
    EXPECT_EQ(MessageOf([&] { pod.cable.ScanDR({1}, &out, 1, 1); }), L"(nothing thrown)");
}

TEST(ParallelCable, ReadThatBringsNothingFails) {
    OpenXilinx pod;
    pod.port->readSize = 0;
    EXPECT_EQ(MessageOf([&] { pod.cable.GetTdo(); }), L"Failed to read from parallel port.");
}

TEST(ParallelCable, RefusesAScanOfNoBits) {
    OpenXilinx pod;
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { pod.cable.ScanDR({}, &out, 1, 1); }),
              L"A JTAG scan of no bits was asked for.");
    EXPECT_EQ(pod.Take(), "");
}
