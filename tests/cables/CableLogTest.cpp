// The connection log of each cable, every line in order, when all goes well and for each failure of
// its set-up.
#include "tests/cables/CableAttempt.h"

namespace {

class CableLog : public ::testing::TestWithParam<CableCase> {};

// By the number of the connection type.
constexpr const wchar_t* kGoodLogs[] = {
    L"Creating cable object  XILINX_PARALLEL_CABLE_3\n"
    L"Creating OmParallelCable\n"
    L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
    L"Initializing succeeded, LPT base addr: 0x378\n"
    L"Destroying OmParallelCable\n",
    L"Creating cable object  ALTERA_BYTEBLASTER_MV\n"
    L"Creating OmParallelCable\n"
    L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
    L"Initializing succeeded, LPT base addr: 0x378\n"
    L"Destroying OmParallelCable\n",
    L"Creating cable object  LATTICE_PARALLEL_ISPDOWNLOAD\n"
    L"Creating OmParallelCable\n"
    L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
    L"Initializing succeeded, LPT base addr: 0x378\n"
    L"Destroying OmParallelCable\n",
    L"Creating cable object  WIGGLER\n"
    L"Creating OmParallelCable\n"
    L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
    L"Initializing succeeded, LPT base addr: 0x378\n"
    L"Destroying OmParallelCable\n",
    L"Creating cable object  WIGGLER\n"
    L"Creating OmParallelCable\n"
    L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n"
    L"Initializing succeeded, LPT base addr: 0x378\n"
    L"Destroying OmParallelCable\n",
    L"Creating cable object  DIGILENT_ADEPT\n"
    L"Creating OmDigilentAdept\n"
    L"Initializing OmDigilentAdept ('Onboard')\n"
    L"Loading dpcutil.dll ...  OK\n"
    L"Initializing succeeded\n"
    L"Destroying OmDigilentAdept\n",
    L"Creating cable object  FTD2XX\n"
    L"Creating OmFtd2xx\n"
    L"Loading ftd2xx.dll ...  OK\n"
    L"Device successfully opened\n"
    L"Initialization succeeded\n"
    L"Destroying OmFtd2xx\n",
    L"Creating cable object  JLINK_USB\n"
    L"Creating OmJLink\n"
    L"Loading JLinkARM.dll ...  OK\n"
    L"Destroying OmJLink\n",
    L"Creating cable object  JLINK_IP\n"
    L"Creating OmJLink\n"
    L"Loading JLinkARM.dll ...  OK\n"
    L"Destroying OmJLink\n",
    L"Creating cable object  ALTERA_USB_BLASTER\n"
    L"Creating OmUsbBlaster\n"
    L"Loading USB-Blaster FTD2XX interface:\n"
    L"Loading usbblstr32.dll ...  OK\n"
    L"Device successfully opened\n"
    L"Initialization succeeded\n"
    L"Destroying OmUsbBlaster\n",
};

// A failure of a vendor's call: what the log says between the loaded library and the end.
struct FailureLine {
    OmCableType type;
    const char* function;
    const wchar_t* lines;
};

constexpr FailureLine kFailures[] = {
    {OmCableType::DigilentAdept, "DpcOpenJtag", L"*** FAILED *** (DpcOpenJtag() failed)\n"},
    {OmCableType::DigilentAdept, "DpcEnableJtag", L"*** FAILED *** (DpcEnableJtag() failed)\n"},
    {OmCableType::Ftd2xx, "FT_CreateDeviceInfoList", L""},
    {OmCableType::Ftd2xx, "FT_OpenEx", L""},
    {OmCableType::Ftd2xx, "FT_Write",
     L"Device successfully opened\n*** FAILED *** (first write operation failed)\n"},
    {OmCableType::JLinkUsb, "JLINKARM_SelectUSB", L""},
    {OmCableType::JLinkIp, "JLINKARM_SelectIP", L""},
    {OmCableType::JLinkUsb, "JLINKARM_Open",
     L"*** FAILED *** (JLINK_Open() failed: Can not connect to J-Link via USB.)\n"},
    {OmCableType::AlteraUsbBlaster, "FT_CreateDeviceInfoList", L""},
    {OmCableType::AlteraUsbBlaster, "FT_OpenEx", L""},
    {OmCableType::AlteraUsbBlaster, "FT_Write",
     L"Device successfully opened\n*** FAILED *** (ResyncCPLD() has thrown an exception)\n"},
};

// The good log with these lines from after "OK\n" to the cable's end.
std::wstring WithFailure(std::wstring log, const std::wstring& lines) {
    const size_t loaded = log.find(L"OK\n") + 3;
    const size_t end = log.find(L"Destroying");
    return log.replace(loaded, end - loaded, lines) + L"*** FAILED *** (CreateCable failed)\n";
}

} // namespace

TEST_P(CableLog, OfASuccess) {
    CableBench bench(GetParam());
    EXPECT_EQ(Attempt(bench).log, kGoodLogs[static_cast<int>(GetParam().type)]);
}

INSTANTIATE_TEST_SUITE_P(Cables, CableLog, ::testing::ValuesIn(kCableCases), NameOfCable);

TEST(CableLogs, OfEachFailedCallOfASetUp) {
    for (const FailureLine& row : kFailures) {
        CableBench bench(kCableCases[static_cast<size_t>(row.type)]);
        bench.board->Pods().faults.failingCalls[row.function] = 1;
        EXPECT_EQ(Attempt(bench).log, WithFailure(kGoodLogs[static_cast<int>(row.type)], row.lines))
            << row.function;
    }
}

TEST(CableLogs, OfALibraryThatWillNotStart) {
    CableBench bench(kCableCases[static_cast<size_t>(OmCableType::DigilentAdept)]);
    bench.board->Pods().faults.failingCalls["DpcInit"] = 1;
    EXPECT_EQ(Attempt(bench).log,
              L"Creating cable object  DIGILENT_ADEPT\n"
              L"Creating OmDigilentAdept\n"
              L"Initializing OmDigilentAdept ('Onboard')\n"
              L"Loading dpcutil.dll ...  "
              L"** FAILED *** (not all required exported functions were resolved)\n"
              L"Destroying OmDigilentAdept\n"
              L"*** FAILED *** (CreateCable failed)\n");
}

TEST(CableLogs, OfTheUsbBlastersTwoLibraries) {
    CableBench bench(kCableCases[static_cast<size_t>(OmCableType::AlteraUsbBlaster)]);
    bench.loader.absent = {"usbblstr32.dll"};
    EXPECT_EQ(Attempt(bench).log, L"Creating cable object  ALTERA_USB_BLASTER\n"
                                  L"Creating OmUsbBlaster\n"
                                  L"Loading USB-Blaster FTD2XX interface:\n"
                                  L"Loading usbblstr32.dll ...  "
                                  L"*** FAILED *** (LoadLibrary() failed)\n"
                                  L"Loading ftd2xx.dll ...  OK\n"
                                  L"Device successfully opened\n"
                                  L"Initialization succeeded\n"
                                  L"Destroying OmUsbBlaster\n");
    bench.loader.absent = {"usbblstr32.dll", "ftd2xx.dll"};
    EXPECT_EQ(Attempt(bench).log, L"Creating cable object  ALTERA_USB_BLASTER\n"
                                  L"Creating OmUsbBlaster\n"
                                  L"Loading USB-Blaster FTD2XX interface:\n"
                                  L"Loading usbblstr32.dll ...  "
                                  L"*** FAILED *** (LoadLibrary() failed)\n"
                                  L"Loading ftd2xx.dll ...  "
                                  L"*** FAILED *** (LoadLibrary() failed)\n"
                                  L"Destroying OmUsbBlaster\n"
                                  L"*** FAILED *** (CreateCable failed)\n");
}

TEST(CableLogs, OfAJLinkThatWarnsAndThenFails) {
    CableBench bench(kCableCases[static_cast<size_t>(OmCableType::JLinkUsb)]);
    bench.settings.jlinkUsbFrequency = 20000000;
    bench.board->Pods().faults.failingCalls["JLINKARM_JTAG_StoreRaw"] = 1;
    const Attempt attempt(bench);
    EXPECT_EQ(attempt.log, L"Creating cable object  JLINK_USB\n"
                           L"Creating OmJLink\n"
                           L"Loading JLinkARM.dll ...  OK\n"
                           L"*** J-Link WARNING: The speed is above what this emulator can do.\n"
                           L"*** J-Link ERROR: Communication with the emulator failed.\n"
                           L"Destroying OmJLink\n");
    EXPECT_EQ(attempt.thrown, L"JTAG connection error:\nCommunication with the emulator failed.");
}

TEST(CableLogs, OfEachFailureOfAPort) {
    const struct {
        int call;
        const wchar_t* line;
    } rows[] = {
        {0, L""},
        {1, L"InitParallelPort() failed\n"},
        {2, L"InitParallelPort() failed\n"},
        {3, L"EnableJTAG() failed\n"},
        {4, L"EnableJTAG() failed\n"},
        {5, L"EnableJTAG() failed\n"},
    };

    for (const auto& row : rows) {
        CableBench bench(kCableCases[static_cast<size_t>(OmCableType::AlteraByteBlasterMV)]);
        (*bench.port)->failAtCall = row.call;
        EXPECT_EQ(Attempt(bench).log, L"Creating cable object  ALTERA_BYTEBLASTER_MV\n"
                                      L"Creating OmParallelCable\n"
                                      L"Initializing OmParallelCable (0 LPT, 200000 Hz)\n" +
                                          std::wstring(row.line) +
                                          L"Destroying OmParallelCable\n"
                                          L"*** FAILED *** (CreateCable failed)\n")
            << row.call;
    }
}
