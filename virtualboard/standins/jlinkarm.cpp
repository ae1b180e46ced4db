// Stand-in for Segger's JLinkARM library: the raw JTAG functions on the virtual board. A board
// offers a J-Link with a line "pod J-Link"; its serial is the USB number, its description the host
// name under which a TCP/IP server offers it. What JLINKARM_JTAG_StoreRaw takes waits in the
// library's buffer until something asks for it, as in the vendor's: a read, JLINKARM_JTAG_SyncBits,
// or a buffer that is full.

#include "virtualboard/CurrentBoard.h"
#include "virtualboard/JtagPins.h"
#include "virtualboard/standins/Export.h"
#include "virtualboard/UsbHost.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

using Handler = void(const char* text);

struct StoredBits {
    std::vector<uint8_t> tms;
    std::vector<uint8_t> tdi;
    uint32_t bits;
};

struct Library {
    bool byAddress = false;
    std::string wanted = "0";
    bool open = false;
    bool hasError = false;
    Handler* warning = nullptr;
    Handler* error = nullptr;
    std::vector<StoredBits> stored;
    size_t storedBytes = 0;
};

Library& State() {
    static Library library;
    return library;
}

constexpr uint32_t kHertzPerUnit = 1000;
constexpr uint32_t kMaximumKilohertz = 12'000;
constexpr size_t kBufferBytes = size_t{16} * 1024;

const vb::PodEntry* FindPod(const vb::Board& board) {
    const Library& library = State();
    for (const vb::PodEntry& entry : board.Pods().entries)
        if (entry.type == vb::PodType::JLink &&
            (library.byAddress ? entry.description : entry.serial) == library.wanted)
            return &entry;
    return nullptr;
}

void Fail(const char* text) {
    State().hasError = true;
    if (State().error)
        State().error(text);
}

// Whether a call that chooses a pod goes well: it needs no pod yet.
bool Selects(const char* function) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    return !host || host->BeginCall(function) == vb::kUsbOk;
}

// The chain behind the open pod, or null after an error has been reported.
vb::JtagChain* BeginTransfer(const char* function, uint32_t bits, bool reads) {
    vb::Board* board = vb::CurrentBoard();
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host || !State().open) {
        Fail("Not connected to an emulator.");
        return nullptr;
    }
    if (host->BeginCall(function) != vb::kUsbOk || host->Unplugged()) {
        Fail("Communication with the emulator failed.");
        return nullptr;
    }
    vb::Traffic& traffic = board->PodTraffic();
    const uint64_t bytes = (uint64_t{bits} + 7) / 8;
    ++traffic.writeCalls;
    traffic.bytesWritten += 2 * bytes;
    traffic.readCalls += reads ? 1 : 0;
    traffic.bytesRead += reads ? bytes : 0;
    return &board->Chain();
}

// Sends what is stored; what the pod does not take is lost.
void Flush() {
    const std::vector<StoredBits> stored = std::exchange(State().stored, {});
    State().storedBytes = 0;
    const vb::UsbHost* host = vb::CurrentUsbHost();
    if (stored.empty())
        return;
    if (!host || !State().open || host->Unplugged())
        return Fail("Communication with the emulator failed.");
    for (const StoredBits& part : stored)
        vb::RunPacked(vb::CurrentBoard()->Chain(), part.tms.data(), part.tdi.data(), nullptr,
                      part.bits);
}

} // namespace

VB_EXPORT int JLINKARM_SelectUSB(int number) {
    constexpr int kMostPods = 4;
    if (number < 0 || number >= kMostPods || !Selects("JLINKARM_SelectUSB"))
        return 1;
    State().byAddress = false;
    State().wanted = std::to_string(number);
    return 0;
}

VB_EXPORT int JLINKARM_SelectIP(const char* host, int port) {
    if (!host || !*host || port < 0 || !Selects("JLINKARM_SelectIP"))
        return 1;
    State().byAddress = true;
    State().wanted = host;
    return 0;
}

VB_EXPORT const char* JLINKARM_Open() {
    vb::Board* board = vb::CurrentBoard();
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host || host->BeginCall("JLINKARM_Open") != vb::kUsbOk || host->Unplugged() ||
        !FindPod(*board))
        return "Can not connect to J-Link via USB.";
    State().open = true;
    return nullptr;
}

VB_EXPORT void JLINKARM_Close() {
    if (vb::UsbHost* host = vb::CurrentUsbHost())
        host->BeginCall("JLINKARM_Close"); // has no result that could tell of a failure
    State().stored.clear();
    State().open = false;
}

VB_EXPORT void JLINKARM_SetWarnOutHandler(Handler* handler) {
    State().warning = handler;
}

VB_EXPORT void JLINKARM_SetErrorOutHandler(Handler* handler) {
    State().error = handler;
}

VB_EXPORT char JLINKARM_HasError() {
    return State().hasError ? 1 : 0;
}

VB_EXPORT void JLINKARM_ClrError() {
    State().hasError = false;
}

VB_EXPORT void JLINKARM_SetSpeed(uint32_t kilohertz) {
    vb::Board* board = vb::CurrentBoard();
    if (kilohertz > kMaximumKilohertz) {
        kilohertz = kMaximumKilohertz;
        if (State().warning)
            State().warning("The speed is above what this emulator can do.");
    }
    if (board && kilohertz > 0)
        board->Clock().SetFrequency(kilohertz * kHertzPerUnit);
}

VB_EXPORT void JLINKARM_JTAG_StoreGetRaw(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms,
                                         uint32_t bits) {
    Flush();
    if (vb::JtagChain* chain = BeginTransfer("JLINKARM_JTAG_StoreGetRaw", bits, true))
        vb::RunPacked(*chain, tms, tdi, tdo, bits);
}

VB_EXPORT void JLINKARM_JTAG_StoreRaw(const uint8_t* tdi, const uint8_t* tms, uint32_t bits) {
    if (!BeginTransfer("JLINKARM_JTAG_StoreRaw", bits, false))
        return;
    const size_t bytes = (size_t{bits} + 7) / 8;
    State().stored.push_back({{tms, tms + bytes}, {tdi, tdi + bytes}, bits});
    State().storedBytes += bytes;
    if (State().storedBytes > kBufferBytes)
        Flush();
}

VB_EXPORT void JLINKARM_JTAG_SyncBits() {
    vb::UsbHost* host = vb::CurrentUsbHost();
    const bool well = host && host->BeginCall("JLINKARM_JTAG_SyncBits") == vb::kUsbOk;
    if (well)
        return Flush();
    State().stored.clear();
    Fail("Communication with the emulator failed.");
}
