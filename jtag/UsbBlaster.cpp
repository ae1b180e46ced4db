#include "jtag/UsbBlaster.h"

#include "jtag/Exception.h"
#include "jtag/Log.h"
#include "jtag/ScanLists.h"
#include "jtag/UsbBlasterProgram.h"

namespace {

constexpr const char* kEntryPoints[] = {
    "FT_CreateDeviceInfoList",
    "FT_GetDeviceInfoDetail",
    "FT_OpenEx",
    "FT_Close",
    "FT_ResetDevice",
    "FT_SetUSBParameters",
    "FT_Purge",
    "FT_SetLatencyTimer",
    "FT_SetBaudRate",
    "FT_SetBitMode",
    "FT_GetQueueStatus",
    "FT_Write",
    "FT_Read",
};

// The vendor's private copy of D2XX goes first, the general one second.
constexpr const char* kLibraryNames[] = {"usbblstr32.dll", "ftd2xx.dll"};
constexpr OmLibraryRow kLibrary{.names = kLibraryNames,
                                .heading = L"Loading USB-Blaster FTD2XX interface:\n",
                                .loadedAlready = L"  OK (DLL already loaded)\n"};

constexpr uint32_t kPurgeBoth = 3;
constexpr uint8_t kLatencyMilliseconds = 2;
constexpr uint32_t kBaudRate = 3000000;
constexpr uint8_t kBitModeReset = 0;

// Direct bytes with TDI and TMS high. 37 clocks and the byte that ends with TCK low are 75 bytes:
// the 63 that a run may still take for its data, and five clocks and more that are left for the TAP
// to reach Test-Logic-Reset.
constexpr uint8_t kTmsHighTckLow = 0x3E;
constexpr uint8_t kTmsHighTckHigh = 0x3F;
constexpr int kResyncPairs = 37;

// One buffer for each kind of scan, process-wide: there is only ever one cable, and one scan at a
// time.
OmUsbBlasterProgram drProgram;
OmUsbBlasterProgram irProgram;

bool IsUsbBlaster(const OmD2xxDevice& device) {
    return device.id >> 16 == kAlteraUsbVendor;
}

} // namespace

OmUsbBlaster::OmUsbBlaster() : d2xx_(kUsbBlasterUsbIds) {
    OmLog(L"Creating OmUsbBlaster\n");
}

OmUsbBlaster::~OmUsbBlaster() {
    OmLog(L"Destroying OmUsbBlaster\n");
}

bool OmUsbBlaster::Load() {
    return d2xx_.Library().LoadAndLog(kLibrary, d2xx_.EntryPoints(kEntryPoints));
}

bool OmUsbBlaster::Initialize(const std::string& description, const std::string& serial) {
    if (!Load() || !d2xx_.Open(description, serial, IsUsbBlaster))
        return false;
    OmLog(L"Device successfully opened\n");
    // Results are not looked at: a device that is gone fails the write that follows.
    d2xx_.functions.ResetDevice(d2xx_.handle);
    d2xx_.functions.Purge(d2xx_.handle, kPurgeBoth);
    d2xx_.functions.SetLatencyTimer(d2xx_.handle, kLatencyMilliseconds);
    d2xx_.functions.SetBaudRate(d2xx_.handle, kBaudRate);
    d2xx_.functions.SetBitMode(d2xx_.handle, 0, kBitModeReset);
    try {
        ResyncCPLD();
    } catch (const OmException&) {
        OmLog(L"*** FAILED *** (ResyncCPLD() has thrown an exception)\n");
        d2xx_.Close();
        return false;
    }
    if (!d2xx_.DiscardStale())
        return false;
    OmLog(L"Initialization succeeded\n");
    return true;
}

void OmUsbBlaster::ListDevices(std::vector<OmUsbBlasterRecord>& devices) {
    devices.clear();
    std::vector<OmD2xxDevice> listed;
    uint32_t total = 0;
    if (!d2xx_.ListDevices(listed, total))
        return;
    for (const OmD2xxDevice& device : listed) {
        if (IsUsbBlaster(device))
            devices.push_back({device.description, device.serial});
    }
    OmLog(L"Found %u USB-Blaster device(s)\n", static_cast<unsigned>(total));
}

// Brings the CPLD back to a command boundary, whatever part of a run, at most 63 bytes, it was
// still waiting for; TMS is high on the way.
void OmUsbBlaster::ResyncCPLD() {
    std::vector<uint8_t> block;
    for (int pair = 0; pair < kResyncPairs; ++pair)
        block.insert(block.end(), {kTmsHighTckLow, kTmsHighTckHigh});
    block.push_back(kTmsHighTckLow);
    d2xx_.Write(block);
}

void OmUsbBlaster::ResetTap() {
    drProgram.Clear();
    drProgram.Walk(kTapResetPath);
    d2xx_.Write(drProgram.Bytes());
}

void OmUsbBlaster::ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    Scan(drProgram, OmScanRegister::Data, in, out, from, to);
}

void OmUsbBlaster::ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    Scan(irProgram, OmScanRegister::Instruction, in, out, from, to);
}

void OmUsbBlaster::Scan(OmUsbBlasterProgram& program, OmScanRegister which, const OmBitVector& in,
                        OmBitVector* out, int from, int to) {
    RequireBits(in);
    if (out)
        out->clear();
    d2xx_.CheckConnection();
    const size_t body = in.size() - 1;
    program.Clear();
    program.Walk(GetPathToShift(which, from));
    program.ShiftBits(std::span(in).first(body), out != nullptr);
    program.ShiftLastBit(in.back(), out != nullptr);
    program.Walk(GetPathFromExit1(to));
    d2xx_.Write(program.Bytes());
    if (!out)
        return;
    const auto answer = program.Answer(OmUsbBlasterProgram::AnswerSize(body) + 1);
    d2xx_.FtdiRead(answer);
    out->resize(in.size());
    OmUsbBlasterProgram::Decode(answer, std::span(*out).first(body));
    out->back() = OmUsbBlasterProgram::DecodeLastBit(answer.back());
}

void OmUsbBlaster::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    ScanOneByOne(*this, vectors, captured);
}
