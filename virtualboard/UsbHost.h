// The host side of FTDI's D2XX library as far as a JTAG program uses it: a list of devices,
// handles, and calls that can be made to fail. The stand-in libraries export it under the vendor's
// names.
#pragma once

#include "virtualboard/Board.h"
#include "virtualboard/PodEngine.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vb {

// FT_STATUS values of the D2XX programmer's guide.
enum UsbStatus : uint32_t {
    kUsbOk = 0,
    kUsbInvalidHandle = 1,
    kUsbDeviceNotFound = 2,
    kUsbDeviceNotOpened = 3,
    kUsbIoError = 4,
    kUsbInvalidParameter = 6,
};

// FT_DEVICE values.
enum UsbDeviceType : uint32_t {
    kTypeBm = 0,
    kTypeUnknown = 3,
    kType2232C = 4,
    kType232R = 5,
    kType2232H = 6,
};

enum class OpenBy : uint32_t { Serial = 1, Description = 2 };

struct UsbDevice {
    PodEntry entry;
    bool open = false;
    bool mpsseMode = false;   // of the parts that have one
    uint32_t readTimeout = 0; // milliseconds, 0 for none
    std::unique_ptr<PodEngine> engine;
};

class UsbHost {
  public:
    explicit UsbHost(Board& board);

    // Counts a call and answers what an injected fault makes of it, or kUsbOk.
    uint32_t BeginCall(const char* function);
    uint64_t Calls(const std::string& function) const;

    // All devices that are plugged in, ...
    size_t DeviceCount() const { return unplugged_ ? 0 : devices_.size(); }

    // ... and those that the library lists and opens: FTDI's own products, and outside Windows,
    // where no driver's setup file names others, those of the one identifier that it was told last.
    std::vector<UsbDevice*> Listed();

    void SetCustomId(uint32_t vendor, uint32_t product) { customId_ = vendor << 16 | product; }

    UsbDevice& Device(size_t index) { return devices_[index]; }

    static uint32_t TypeOf(const UsbDevice& device);
    static uint32_t IdOf(const UsbDevice& device); // USB vendor above, product below

    bool Unplugged() const { return unplugged_; }

    uint32_t Open(OpenBy by, const std::string& text, UsbDevice*& device);
    // Null if `handle` is no open device of this host.
    UsbDevice* FromHandle(void* handle);
    void Close(UsbDevice& device);

    // Without time-outs a read comes back when all bytes are there, and not before.
    void SetTimeouts(UsbDevice& device, uint32_t readMilliseconds);

    uint32_t SetBitMode(UsbDevice& device, uint8_t mode);
    uint32_t Write(UsbDevice& device, std::span<const uint8_t> bytes);
    uint32_t Read(UsbDevice& device, std::span<uint8_t> bytes, uint32_t& received);
    uint32_t QueueStatus(UsbDevice& device, uint32_t& waiting);
    void Purge(UsbDevice& device);
    void ResetDevice(UsbDevice& device);

  private:
    using SteadyTime = std::chrono::steady_clock::time_point;

    static bool EngineRuns(const UsbDevice& device);
    std::unique_ptr<PodEngine> MakeEngine(const PodEntry& entry);
    void CountIdleTime();
    void CountLatency(UsbDevice& device);

    Board& board_;
    std::vector<UsbDevice> devices_;
    std::map<std::string, uint64_t> calls_;
    uint64_t totalCalls_ = 0;
    bool unplugged_ = false;
    uint32_t customId_ = 0;
    SteadyTime lastCall_ = std::chrono::steady_clock::now();
};

// The host of the current board, or null if there is no board.
UsbHost* CurrentUsbHost();

} // namespace vb
