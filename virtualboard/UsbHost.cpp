#include "virtualboard/UsbHost.h"

#include "virtualboard/CurrentBoard.h"
#include "virtualboard/Mpsse.h"
#include "virtualboard/UsbBlaster.h"

#include <algorithm>
#include <utility>

namespace vb {

namespace {

constexpr uint8_t kBitModeMpsse = 2;

constexpr uint32_t kFtdiDualPort = 0x04036010;

// The identifiers that the library knows by itself (D2XX programmer's guide, FT_SetVIDPID).
constexpr uint32_t kLibraryIds[] = {0x04036001, 0x04036010, 0x04036011, 0x04036014, 0x04036015};
constexpr uint32_t kUsbBlaster = 0x09FB6001;

// Shorter pauses between two calls are the program's work, longer ones its sleeps.
constexpr std::chrono::milliseconds kLeastSleep(8);

} // namespace

// Pods of other vendors are on the bus too, but their libraries see to them.
UsbHost::UsbHost(Board& board) : board_(board) {
    for (const PodEntry& entry : board.Pods().entries)
        if (entry.type != PodType::JLink && entry.type != PodType::Digilent)
            devices_.push_back({entry, false, false, 0, nullptr});
}

uint32_t UsbHost::TypeOf(const UsbDevice& device) {
    switch (device.entry.type) {
    case PodType::Ft2232H:
        return kType2232H;
    case PodType::Ft2232C:
        return kType2232C;
    case PodType::Ft232R:
        return kType232R;
    default:
        return kTypeBm;
    }
}

uint32_t UsbHost::IdOf(const UsbDevice& device) {
    if (device.entry.usbId != 0)
        return device.entry.usbId;
    return device.entry.type == PodType::UsbBlaster ? kUsbBlaster : kFtdiDualPort;
}

std::vector<UsbDevice*> UsbHost::Listed() {
    std::vector<UsbDevice*> listed;
    if (unplugged_)
        return listed;
    for (UsbDevice& device : devices_) {
        const uint32_t id = IdOf(device);
        if (id == customId_ || std::ranges::find(kLibraryIds, id) != std::end(kLibraryIds))
            listed.push_back(&device);
    }
    return listed;
}

uint32_t UsbHost::BeginCall(const char* function) {
    CountIdleTime();
    const PodFaults& faults = board_.Pods().faults;
    const uint64_t number = ++calls_[function];
    ++totalCalls_;
    if (faults.unplugAfterCalls != 0 && totalCalls_ > faults.unplugAfterCalls)
        unplugged_ = true;
    const auto failing = faults.failingCalls.find(function);
    if (failing != faults.failingCalls.end() && failing->second == number)
        return kUsbIoError;
    return kUsbOk;
}

uint64_t UsbHost::Calls(const std::string& function) const {
    const auto found = calls_.find(function);
    return found == calls_.end() ? 0 : found->second;
}

void UsbHost::CountIdleTime() {
    if (board_.Pods().idleTime == IdleTime::None)
        return;
    const SteadyTime now = std::chrono::steady_clock::now();
    const auto pause = now - std::exchange(lastCall_, now);
    if (pause >= kLeastSleep)
        board_.AddIdleMicroseconds(static_cast<uint64_t>(
            std::chrono::duration_cast<std::chrono::microseconds>(pause).count()));
}

std::unique_ptr<PodEngine> UsbHost::MakeEngine(const PodEntry& entry) {
    if (entry.type == PodType::UsbBlaster)
        return std::make_unique<UsbBlaster>(board_, entry.onThisBoard);
    return std::make_unique<Mpsse>(board_, entry);
}

uint32_t UsbHost::Open(OpenBy by, const std::string& text, UsbDevice*& device) {
    for (UsbDevice* candidate : Listed()) {
        const std::string& name =
            by == OpenBy::Serial ? candidate->entry.serial : candidate->entry.description;
        if (name != text)
            continue;
        if (candidate->open || candidate->entry.open)
            return kUsbDeviceNotOpened;
        candidate->open = true;
        candidate->mpsseMode = false;
        candidate->readTimeout = 0;
        candidate->engine = MakeEngine(candidate->entry);
        device = candidate;
        return kUsbOk;
    }
    return kUsbDeviceNotFound;
}

UsbDevice* UsbHost::FromHandle(void* handle) {
    const auto found = std::ranges::find_if(
        devices_, [handle](const UsbDevice& device) { return &device == handle && device.open; });
    return found == devices_.end() ? nullptr : &*found;
}

void UsbHost::Close(UsbDevice& device) {
    device.open = false;
    device.engine.reset();
}

void UsbHost::SetTimeouts(UsbDevice& device, uint32_t readMilliseconds) {
    device.readTimeout = readMilliseconds;
}

uint32_t UsbHost::SetBitMode(UsbDevice& device, uint8_t mode) {
    if (unplugged_)
        return kUsbIoError;
    const bool hasMpsse =
        device.entry.type == PodType::Ft2232H || device.entry.type == PodType::Ft2232C;
    if (mode == kBitModeMpsse && !hasMpsse)
        return kUsbInvalidParameter;
    device.mpsseMode = mode == kBitModeMpsse;
    device.engine->Reset();
    return kUsbOk;
}

// A USB-Blaster's CPLD listens always. The other parts' bytes, outside MPSSE mode, leave through
// the serial side, which leads nowhere.
bool UsbHost::EngineRuns(const UsbDevice& device) {
    return device.mpsseMode || device.entry.type == PodType::UsbBlaster;
}

uint32_t UsbHost::Write(UsbDevice& device, std::span<const uint8_t> bytes) {
    if (unplugged_)
        return kUsbIoError;
    Traffic& traffic = board_.PodTraffic();
    ++traffic.writeCalls;
    traffic.bytesWritten += bytes.size();
    if (EngineRuns(device))
        device.engine->Write(bytes);
    return kUsbOk;
}

void UsbHost::CountLatency(UsbDevice& device) {
    AnswerQueue& answers = device.engine->Answers();
    if (!answers.Unflushed())
        return;
    ++board_.PodTraffic().latencyWaits;
    answers.Flush();
}

uint32_t UsbHost::Read(UsbDevice& device, std::span<uint8_t> bytes, uint32_t& received) {
    if (unplugged_)
        return kUsbIoError;
    Traffic& traffic = board_.PodTraffic();
    const PodFaults& faults = board_.Pods().faults;
    ++traffic.readCalls;
    CountLatency(device);
    size_t wanted = bytes.size();
    if (faults.shortReadBytes != 0)
        wanted = std::min<size_t>(wanted, faults.shortReadBytes);
    if (faults.readsNeverComplete)
        wanted = 0;
    received = static_cast<uint32_t>(device.engine->Answers().Take(bytes.data(), wanted));
    traffic.bytesRead += received;
    if (received < bytes.size() && device.readTimeout == 0)
        ++traffic.endlessReads; // the library would not come back from here
    return kUsbOk;
}

uint32_t UsbHost::QueueStatus(UsbDevice& device, uint32_t& waiting) {
    if (unplugged_)
        return kUsbIoError;
    CountLatency(device);
    waiting = static_cast<uint32_t>(device.engine->Answers().Size());
    return kUsbOk;
}

void UsbHost::Purge(UsbDevice& device) {
    device.engine->Answers().Clear();
}

void UsbHost::ResetDevice(UsbDevice& device) {
    device.mpsseMode = false;
    device.engine->Reset();
}

UsbHost* CurrentUsbHost() {
    static std::unique_ptr<UsbHost> host;
    static uint64_t generation = 0;
    Board* board = CurrentBoard();
    if (!board) {
        host.reset();
        return nullptr;
    }
    if (!host || generation != BoardGeneration())
        host = std::make_unique<UsbHost>(*board);
    generation = BoardGeneration();
    return host.get();
}

} // namespace vb
