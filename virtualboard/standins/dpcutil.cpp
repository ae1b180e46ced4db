// Stand-in for Digilent's dpcutil library on the virtual board. A board offers adapters with lines
// "pod Digilent description=name". The adapter samples TDO after the falling edge of each cycle. As
// the vendor's outside Windows, the library has no window for configuring devices; what DpcInit has
// begun, for whomever in this process, DpcTerm ends.

#include "virtualboard/CurrentBoard.h"
#include "virtualboard/JtagPins.h"
#include "virtualboard/standins/Export.h"
#include "virtualboard/UsbHost.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using Bool = int;
using ErrorCode = int;
using Interface = void*;

constexpr ErrorCode kNoError = 0;
constexpr ErrorCode kNotInitialized = 3001;
constexpr ErrorCode kNoDevice = 3002;
constexpr ErrorCode kTransferFailed = 3003;

constexpr uint32_t kHertz = 1'400'000;
constexpr size_t kNameSize = 64;

struct Library {
    bool initialized = false;
    bool enabled = false;
    uint32_t transactions = 0;
    const vb::PodEntry* pod = nullptr; // open
};

Library& State() {
    static Library library;
    return library;
}

Bool Answer(ErrorCode* error, ErrorCode value) {
    if (error)
        *error = value;
    return value == kNoError;
}

// Counts the call; false if it is to fail. A call that closes something does so all the same.
bool Begin(const char* function) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    return host && host->BeginCall(function) == vb::kUsbOk && !host->Unplugged();
}

std::vector<const vb::PodEntry*> Adapters() {
    std::vector<const vb::PodEntry*> found;
    if (const vb::Board* board = vb::CurrentBoard())
        for (const vb::PodEntry& entry : board->Pods().entries)
            if (entry.type == vb::PodType::Digilent)
                found.push_back(&entry);
    return found;
}

bool Ready(const char* function, Interface handle) {
    const Library& library = State();
    return Begin(function) && library.enabled && handle && handle == library.pod;
}

// `tms` and `tdi` packed, low bit first. TDO as the adapter samples it: one cycle later than the
// chain's own count.
void Transfer(const std::vector<uint8_t>& tms, const std::vector<uint8_t>& tdi, size_t count,
              uint8_t* answer) {
    vb::Board& board = *vb::CurrentBoard();
    vb::Traffic& traffic = board.PodTraffic();
    ++traffic.writeCalls;
    traffic.bytesWritten += (2 * count + 7) / 8;
    std::vector<uint8_t> tdo((count + 7) / 8);
    vb::RunPacked(board.Chain(), tms.data(), tdi.data(), answer ? tdo.data() : nullptr, count);
    if (!answer)
        return;
    ++traffic.readCalls;
    traffic.bytesRead += tdo.size();
    for (size_t i = 0; i < count; ++i) {
        const bool bit =
            i + 1 < count ? tdo[(i + 1) / 8] >> ((i + 1) % 8) & 1 : board.Chain().Tdo();
        const auto mask = static_cast<uint8_t>(1u << (i % 8));
        answer[i / 8] = static_cast<uint8_t>(bit ? answer[i / 8] | mask : answer[i / 8] & ~mask);
    }
}

} // namespace

VB_EXPORT Bool DpcInit(ErrorCode* error) {
    State().initialized = vb::CurrentBoard() && Begin("DpcInit");
    return Answer(error, State().initialized ? kNoError : kNotInitialized);
}

VB_EXPORT void DpcTerm() {
    Begin("DpcTerm");
    State() = {};
}

VB_EXPORT int DvmgGetDevCount(ErrorCode* error) {
    Answer(error, kNoError);
    return static_cast<int>(Adapters().size());
}

VB_EXPORT Bool DvmgGetDevName(int index, char* name, ErrorCode* error) {
    const std::vector<const vb::PodEntry*> adapters = Adapters();
    if (index < 0 || static_cast<size_t>(index) >= adapters.size() || !name)
        return Answer(error, kNoDevice);
    std::strncpy(name, adapters[static_cast<size_t>(index)]->description.c_str(), kNameSize - 1);
    name[kNameSize - 1] = '\0';
    return Answer(error, kNoError);
}

VB_EXPORT Bool DpcOpenJtag(Interface* handle, const char* name, ErrorCode* error, void*) {
    if (!handle || !name || !State().initialized || !Begin("DpcOpenJtag"))
        return Answer(error, kNotInitialized);
    for (const vb::PodEntry* entry : Adapters()) {
        if (entry->description != name || entry->open)
            continue;
        State().pod = entry;
        *handle = const_cast<vb::PodEntry*>(entry);
        return Answer(error, kNoError);
    }
    return Answer(error, kNoDevice);
}

VB_EXPORT Bool DpcCloseJtag(Interface handle, ErrorCode* error) {
    const bool well = Begin("DpcCloseJtag");
    if (!handle || handle != State().pod)
        return Answer(error, kNoDevice);
    State().pod = nullptr;
    State().enabled = false;
    return Answer(error, well ? kNoError : kTransferFailed);
}

VB_EXPORT Bool DpcEnableJtag(Interface handle, ErrorCode* error, void*) {
    if (!handle || handle != State().pod || !Begin("DpcEnableJtag"))
        return Answer(error, kNoDevice);
    State().enabled = true;
    vb::CurrentBoard()->Clock().SetFrequency(kHertz);
    return Answer(error, kNoError);
}

VB_EXPORT Bool DpcDisableJtag(Interface handle, ErrorCode* error, uint32_t* transaction) {
    const bool well = Begin("DpcDisableJtag");
    if (!handle || handle != State().pod)
        return Answer(error, kNoDevice);
    State().enabled = false;
    if (transaction)
        *transaction = ++State().transactions;
    return Answer(error, well ? kNoError : kTransferFailed);
}

VB_EXPORT Bool DpcPutTdiBits(Interface handle, int count, const uint8_t* tdi, Bool tms,
                             Bool returnTdo, uint8_t* tdo, ErrorCode* error, void*) {
    if (count < 0 || !Ready("DpcPutTdiBits", handle))
        return Answer(error, kTransferFailed);
    const auto bits = static_cast<size_t>(count);
    const size_t bytes = (bits + 7) / 8;
    Transfer(std::vector<uint8_t>(bytes, tms ? 0xFF : 0x00), {tdi, tdi + bytes}, bits,
             returnTdo ? tdo : nullptr);
    return Answer(error, kNoError);
}

// Pairs: TDI in the lower bit, TMS above it, four pairs a byte.
VB_EXPORT Bool DpcPutTmsTdiBits(Interface handle, int count, const uint8_t* pairs, Bool returnTdo,
                                uint8_t* tdo, ErrorCode* error, void*) {
    if (count < 0 || !Ready("DpcPutTmsTdiBits", handle))
        return Answer(error, kTransferFailed);
    const auto cycles = static_cast<size_t>(count);
    std::vector<uint8_t> tms((cycles + 7) / 8), tdi((cycles + 7) / 8);
    for (size_t i = 0; i < cycles; ++i) {
        const unsigned pair = pairs[i / 4] >> (2 * (i % 4)) & 3u;
        tdi[i / 8] = static_cast<uint8_t>(tdi[i / 8] | (pair & 1) << (i % 8));
        tms[i / 8] = static_cast<uint8_t>(tms[i / 8] | (pair >> 1) << (i % 8));
    }
    Transfer(tms, tdi, cycles, returnTdo ? tdo : nullptr);
    return Answer(error, kNoError);
}
