#include "virtualboard/BoardFaults.h"

#include "virtualboard/IntelFlash.h"
#include "virtualboard/Numbers.h"

#include <stdexcept>

namespace vb {

namespace {

using Words = std::vector<std::string>;

FlashFaults& FaultsOf(Board& board, const std::string& flash) {
    FlashSocket* socket = board.FindFlash(flash);
    if (!socket)
        throw std::runtime_error("there is no flash '" + flash + "'");
    return socket->Model().Faults();
}

ChainDevice& DeviceOf(Board& board, const std::string& name) {
    ChainDevice* device = board.FindDevice(name);
    if (!device)
        throw std::runtime_error("there is no device '" + name + "'");
    return *device;
}

void StuckBit(Board& board, const Words& words) {
    FaultsOf(board, words[1]).stuckHigh[ParseNumber(words[2])] |= uint32_t{1}
                                                                  << ParseNumber(words[3]);
}

void OpenPin(Board& board, const Words& words) {
    FlashSocket* socket = board.FindFlash(words[1]);
    if (!socket)
        throw std::runtime_error("there is no flash '" + words[1] + "'");
    socket->OpenDataPin(ParseNumber(words[2]));
}

// As an earlier boot of the board has left it; WP decides whether it can be taken back.
void LockDown(Board& board, const Words& words) {
    FaultsOf(board, words[1]); // says so if there is no such chip
    auto* intel = dynamic_cast<IntelFlash*>(&board.FindFlash(words[1])->Model());
    if (!intel)
        throw std::runtime_error("'" + words[1] + "' has no locks");
    intel->LockedDownBlocks().insert(ParseNumber(words[2]));
    intel->SetLocked(ParseNumber(words[2]), true);
}

struct Fault {
    const char* name;
    size_t arguments;
    void (*apply)(Board& board, const Words& words);
};

constexpr Fault kFaults[] = {
    // The chips.
    {"stuck-bit", 3, StuckBit},
    {"open-data", 2, OpenPin},
    {"erase-fails", 2,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]).eraseFails.insert(ParseNumber(words[2]));
     }},
    {"program-fails", 2,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]).programFails.insert(ParseNumber(words[2]));
     }},
    {"lock-fails", 2,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]).lockFails.insert(ParseNumber(words[2]));
     }},
    {"protect", 2,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]); // says so if there is no such chip
         board.FindFlash(words[1])->Model().ProtectedSectors().insert(ParseNumber(words[2]));
     }},
    {"lock-down", 2, LockDown},
    {"buffer-aborts", 2,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]).bufferAborts = ParseNumber(words[2]);
     }},
    {"query-byte", 3,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]).queryBytes[ParseNumber(words[2])] =
             static_cast<uint8_t>(ParseNumber(words[3]));
     }},
    {"early-dq5", 1,
     [](Board& board, const Words& words) { FaultsOf(board, words[1]).earlyDq5 = true; }},
    {"never-ready", 1,
     [](Board& board, const Words& words) { FaultsOf(board, words[1]).neverReady = true; }},
    {"dead", 1, [](Board& board, const Words& words) { FaultsOf(board, words[1]).dead = true; }},
    {"slow", 2,
     [](Board& board, const Words& words) {
         FaultsOf(board, words[1]).slowFactor = ParseNumber(words[2]);
     }},
    // The chain.
    {"idcode-masks-tdi", 1,
     [](Board& board, const Words& words) {
         DeviceOf(board, words[1]).SetFaults({.idcodeMasksTdi = true});
     }},
    {"control-captures-enabled", 1,
     [](Board& board, const Words& words) {
         DeviceOf(board, words[1]).SetFaults({.controlCapturesEnabled = true});
     }},
    {"tdo-stuck", 1,
     [](Board& board, const Words& words) {
         board.Chain().SetTdoFault(words[1] == "1" ? TdoFault::StuckHigh : TdoFault::StuckLow);
     }},
    {"no-power", 0, [](Board& board, const Words&) { board.Chain().SetPower(false); }},
    // The vendor library's edge.
    {"call-fails", 2,
     [](Board& board, const Words& words) {
         board.Pods().faults.failingCalls[words[1]] = ParseNumber(words[2]);
     }},
    {"unplugged-after", 1,
     [](Board& board, const Words& words) {
         board.Pods().faults.unplugAfterCalls = ParseNumber(words[1]);
     }},
    {"short-reads", 1,
     [](Board& board, const Words& words) {
         board.Pods().faults.shortReadBytes = ParseNumber(words[1]);
     }},
    {"reads-never-complete", 0,
     [](Board& board, const Words&) { board.Pods().faults.readsNeverComplete = true; }},
};

} // namespace

void AddFault(Board& board, const std::vector<std::string>& words) {
    for (const Fault& fault : kFaults) {
        if (words[0] != fault.name)
            continue;
        if (words.size() != fault.arguments + 1)
            throw std::runtime_error("the fault '" + words[0] + "' needs " +
                                     std::to_string(fault.arguments) + " arguments");
        return fault.apply(board, words);
    }
    throw std::runtime_error("no fault is called '" + words[0] + "'");
}

} // namespace vb
