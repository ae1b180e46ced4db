// Whatever fails, and when: the stated text, nothing left open, and an attempt that works as soon
// as the cause is gone.
#include "jtag/Exception.h"
#include "tests/cables/CableAttempt.h"
#include "virtualboard/UsbHost.h"

#include <algorithm>
#include <iterator>

namespace {

class UsbFailure : public ::testing::TestWithParam<CableCase> {};

class PortFailure : public ::testing::TestWithParam<CableCase> {};

constexpr const wchar_t* kNotCreated = L"*** FAILED *** (CreateCable failed)\n";

std::wstring ConnectionError(CableFamily family) {
    if (family == CableFamily::JLink)
        return L"JTAG connection error:\nCommunication with the emulator failed.";
    return L"JTAG connection error";
}

void ExpectDone(CableBench& bench, const std::string& when) {
    const Attempt attempt(bench);
    EXPECT_EQ(attempt.result, AttemptResult::Done) << when;
    EXPECT_TRUE(attempt.rightBits) << when;
}

// The vendor's functions, and how often a good attempt calls each.
std::map<std::string, uint64_t> CallsOf(const CableCase& cable) {
    CableBench bench(cable);
    ExpectDone(bench, "with nothing failing");
    std::map<std::string, uint64_t> calls;
    for (const std::string& name : bench.loader.resolved)
        calls[name] = vb::CurrentUsbHost()->Calls(name);
    return calls;
}

// Connections that the vendor's library was asked to open and not to close.
uint64_t NotClosed(CableFamily family) {
    const vb::UsbHost& host = *vb::CurrentUsbHost();
    if (family == CableFamily::JLink)
        return host.Calls("JLINKARM_Open") - host.Calls("JLINKARM_Close");
    if (family == CableFamily::Digilent)
        return host.Calls("DpcOpenJtag") - host.Calls("DpcCloseJtag");
    return host.Calls("FT_OpenEx") - host.Calls("FT_Close");
}

bool Opens(const std::string& function) {
    return function == "JLINKARM_Open" || function == "DpcOpenJtag" || function == "FT_OpenEx";
}

void ExpectStatedTexts(const CableCase& cable, const Attempt& attempt, const std::string& when) {
    if (attempt.result == AttemptResult::Thrown) {
        EXPECT_EQ(attempt.thrown, ConnectionError(cable.family)) << when;
    } else if (attempt.result == AttemptResult::NotCreated) {
        EXPECT_TRUE(attempt.log.ends_with(kNotCreated)) << when;
    }
}

// What only some versions of the library, or libraries of some hosts, export.
bool IsOptional(const std::string& function) {
    const char* const names[] = {"FT_SetVIDPID", "FT_SetTimeouts", "JLINKARM_JTAG_SyncBits",
                                 "DvmgStartConfigureDevices"};
    return std::ranges::find(names, function) != std::end(names);
}

// The stand-in is a library of a host where it has to be told of identifiers that are not FTDI's.
bool IsNeededByTheStandIn(const std::string& function, const CableCase& cable) {
    return function == "FT_SetVIDPID" && cable.family == CableFamily::UsbBlaster;
}

void FailOneCall(CableBench& bench, const std::string& function, uint64_t number) {
    const std::string when = function + " " + std::to_string(number);
    const uint64_t failing = vb::CurrentUsbHost()->Calls(function) + number;
    const uint64_t notClosed = NotClosed(bench.cable.family);
    bench.board->Pods().faults.failingCalls = {{function, failing}};
    const Attempt attempt(bench);
    EXPECT_GE(vb::CurrentUsbHost()->Calls(function), failing) << when << " is not reached";
    ExpectStatedTexts(bench.cable, attempt, when);
    EXPECT_EQ(bench.OpenHandles(), 0) << when;
    EXPECT_EQ(NotClosed(bench.cable.family) - notClosed, Opens(function) ? 1u : 0u) << when;
    ExpectDone(bench, "after a failed " + when);
    EXPECT_EQ(bench.OpenHandles(), 0) << when;
}

} // namespace

TEST_P(UsbFailure, EveryCallThatFailsOnceLeavesNothingBehind) {
    const auto calls = CallsOf(GetParam());
    CableBench bench(GetParam());
    size_t total = 0;
    for (const auto& [function, count] : calls) {
        total += count;
        for (uint64_t number = 1; number <= count; ++number)
            FailOneCall(bench, function, number);
    }
    EXPECT_GT(total, 4u);
}

TEST_P(UsbFailure, EveryEntryPointIsRequired) {
    const bool digilent = GetParam().family == CableFamily::Digilent;
    const std::wstring line =
        digilent ? L"** FAILED *** (not all required exported functions were resolved)\n"
                 : L"*** FAILED *** (failed to resolve all required exported functions)\n";
    for (const auto& [function, count] : CallsOf(GetParam())) {
        CableBench bench(GetParam());
        bench.loader.missing = function;
        const Attempt attempt(bench);
        if (IsOptional(function)) {
            EXPECT_EQ(attempt.result == AttemptResult::Done,
                      !IsNeededByTheStandIn(function, GetParam()))
                << function;
            continue;
        }
        EXPECT_EQ(attempt.result, AttemptResult::NotCreated) << function;
        EXPECT_NE(attempt.log.find(L".dll ...  " + line), std::wstring::npos) << function;
        EXPECT_EQ(bench.OpenHandles(), 0) << function;
        bench.loader.missing.clear();
        ExpectDone(bench, "with " + function + " back");
    }
}

// Whether the scans are read or not: an error that shows up an action later is blamed on the wrong
// one.
TEST_P(UsbFailure, BlindBatchReportsItsOwnErrors) {
    OpenCable bench(GetParam());
    bench.Hal().ResetTap();
    bench.board->Pods().faults.unplugAfterCalls = 1;
    const OmScanList blind(4, {OmBitVector(100, 1), false});
    EXPECT_THROW(bench.Hal().ScanVectors(blind, nullptr), OmException);
}

// A library that waits for what never comes would never give the program back to its user.
TEST_P(UsbFailure, NoReadWaitsForEver) {
    OpenCable bench(GetParam());
    bench.board->Pods().faults.readsNeverComplete = true;
    const uint64_t start = GetClock().Milliseconds();
    OmBitVector out;
    try {
        bench.Hal().ScanDR(OmBitVector(100, 1), &out, kScanFromIdle, kScanToIdle);
    } catch (const OmException&) {
        EXPECT_LT(GetClock().Milliseconds() - start, 3000u);
    }
    EXPECT_EQ(bench.board->PodTraffic().endlessReads, 0u);
}

TEST_P(UsbFailure, AbsentLibraryIsReported) {
    CableBench bench(GetParam());
    bench.loader.absent = {"ftd2xx.dll", "usbblstr32.dll", "JLinkARM.dll", "dpcutil.dll"};
    const Attempt attempt(bench);
    EXPECT_EQ(attempt.result, AttemptResult::NotCreated);
    EXPECT_NE(attempt.log.find(L".dll ...  *** FAILED *** (LoadLibrary() failed)\n"),
              std::wstring::npos);
    EXPECT_TRUE(attempt.log.ends_with(kNotCreated));
    EXPECT_EQ(bench.OpenHandles(), 0);
    bench.loader.absent.clear();
    ExpectDone(bench, "with the library back");
}

TEST_P(UsbFailure, AbsentPodIsReportedAndFoundAsSoonAsItIsPluggedIn) {
    CableBench bench(GetParam());
    bench.board = &ThreeDevices().Line("pod other").Build().Install();
    const Attempt attempt(bench);
    EXPECT_EQ(attempt.result, AttemptResult::NotCreated);
    EXPECT_TRUE(attempt.log.ends_with(kNotCreated));
    EXPECT_EQ(bench.OpenHandles(), 0);
    bench.board = &WithEveryPod(ThreeDevices()).Build().Install();
    ExpectDone(bench, "with the pod plugged in");
}

TEST_P(UsbFailure, PodUnpluggedAfterAnyCallIsReported) {
    uint64_t total = 0;
    for (const auto& [function, count] : CallsOf(GetParam()))
        total += count;
    for (uint64_t calls = 1; calls < total; ++calls) {
        CableBench bench(GetParam());
        bench.board->Pods().faults.unplugAfterCalls = calls;
        const Attempt attempt(bench);
        ExpectStatedTexts(GetParam(), attempt, std::to_string(calls) + " calls");
        EXPECT_EQ(bench.loader.loaded, 0) << calls;
        bench.board = &WithEveryPod(ThreeDevices()).Build().Install();
        ExpectDone(bench, "plugged in again");
    }
}

INSTANTIATE_TEST_SUITE_P(Cables, UsbFailure,
                         ::testing::ValuesIn(CablesThat([](const CableCase& cable) {
                             return cable.family != CableFamily::Parallel;
                         })),
                         NameOfCable);

TEST_P(PortFailure, EveryControlCallThatFailsOnceLeavesNothingBehind) {
    CableBench bench(GetParam());
    BoardPort::State& port = *bench.port->operator->();
    ExpectDone(bench, "with nothing failing");
    const int total = port.calls;
    EXPECT_GT(total, 300);
    for (int call = 0; call < total; ++call) {
        const int handles = port.openHandles;
        port.failAtCall = port.calls + call;
        const Attempt attempt(bench);
        const bool write = attempt.thrown == L"Failed to write to parallel port.";
        const bool read = attempt.thrown == L"Failed to read from parallel port.";
        const bool refused =
            attempt.result == AttemptResult::NotCreated && attempt.log.ends_with(kNotCreated);
        EXPECT_TRUE(write || read || refused) << call;
        // Asking for the ports' addresses leaves its handle open by design.
        EXPECT_EQ(port.openHandles - handles, call == 0 ? 0 : 1) << call;
        ExpectDone(bench, "after failed call " + std::to_string(call));
        EXPECT_EQ(port.openHandles - handles, call == 0 ? 1 : 2) << call;
    }
}

TEST_P(PortFailure, DriverThatDoesNotOpenIsReported) {
    for (const int open : {0, 1}) {
        CableBench bench(GetParam());
        (*bench.port)->failAtOpen = open;
        const Attempt attempt(bench);
        EXPECT_EQ(attempt.result, AttemptResult::NotCreated) << open;
        EXPECT_EQ(attempt.log.find(L"*** FAILED *** (OpenDriver failed)\n") != std::wstring::npos,
                  open == 1);
        EXPECT_TRUE(attempt.log.ends_with(kNotCreated)) << open;
        EXPECT_EQ((*bench.port)->openHandles, open) << open;
        ExpectDone(bench, "with the driver back");
    }
}

TEST_P(PortFailure, AbsentDriverIsReported) {
    CableBench bench(GetParam());
    (*bench.port)->absent = true;
    const Attempt attempt(bench);
    EXPECT_EQ(attempt.result, AttemptResult::NotCreated);
    EXPECT_TRUE(attempt.log.ends_with(kNotCreated));
    (*bench.port)->absent = false;
    ExpectDone(bench, "with the driver back");
}

INSTANTIATE_TEST_SUITE_P(Cables, PortFailure,
                         ::testing::ValuesIn(CablesThat([](const CableCase& cable) {
                             return cable.family == CableFamily::Parallel;
                         })),
                         NameOfCable);
