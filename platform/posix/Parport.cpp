#include "platform/posix/Parport.h"

#include "platform/Text.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr size_t kPortCount = 3;
constexpr uint8_t kReverseData = 0x20; // control register: the data lines are inputs

// Registers of a port, as offsets from its base address.
enum class Register : unsigned { Data, Status, Control };

constexpr unsigned kRegisterCount = 3;

// A claimed ppdev device.
class Device {
  public:
    Device() = default;

    ~Device() {
        if (descriptor_ < 0)
            return;
        ioctl(descriptor_, PPRELEASE); // nothing is left to do if the kernel does not want it back
        close(descriptor_);
    }

    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // Empty if the device is claimed, otherwise why it is not.
    std::wstring Claim(const std::string& path) {
        if (descriptor_ >= 0)
            return {};
        const int opened = open(path.c_str(), O_RDWR | O_CLOEXEC);
        if (opened < 0)
            return WhyNotOpen(path, errno);
        if (ioctl(opened, PPCLAIM) != 0) {
            const int error = errno;
            close(opened);
            return L"cannot claim " + FromLocal(path + ": " + std::strerror(error));
        }
        descriptor_ = opened;
        return {};
    }

    bool Read(Register from, uint8_t& value) const {
        constexpr unsigned long kRequests[] = {PPRDATA, PPRSTATUS, PPRCONTROL};
        return ioctl(descriptor_, kRequests[static_cast<unsigned>(from)], &value) == 0;
    }

    // The status register is made of inputs and cannot be written.
    bool Write(Register to, uint8_t value) const {
        if (to == Register::Data)
            return ioctl(descriptor_, PPWDATA, &value) == 0;
        return to == Register::Control && WriteControl(value);
    }

  private:
    // Distributions leave these devices to a group.
    static std::wstring WhyNotOpen(const std::string& path, int error) {
        if (error == EACCES || error == EPERM)
            return L"no permission to open " + FromLocal(path) +
                   L": add the user to the group that owns it";
        return L"cannot open " + FromLocal(path + ": " + std::strerror(error));
    }

    // The kernel keeps the data direction apart from the control lines.
    bool WriteControl(uint8_t value) const {
        int reverse = (value & kReverseData) ? 1 : 0;
        uint8_t lines = value & static_cast<uint8_t>(~kReverseData);
        return ioctl(descriptor_, PPDATADIR, &reverse) == 0 &&
               ioctl(descriptor_, PPWCONTROL, &lines) == 0;
    }

    int descriptor_ = -1; // owned, -1 until claimed
};

class Parport : public OmPortDriver {
  public:
    Parport(std::string tables, std::string devices)
        : tables_(std::move(tables)), devices_(std::move(devices)) {}

    bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                 size_t& returned) override {
        returned = 0;
        reason_.clear();
        switch (code) {
        case kPortRead:
            return in.size() == 2 && !out.empty() && Read(in, out[0]) && (returned = 1);
        case kPortWrite:
            return in.size() == 3 && Write(in);
        case kPortEnumerate:
            return out.size() >= 2 * kPortCount && Enumerate(out) && (returned = 2 * kPortCount);
        default:
            return false;
        }
    }

    std::wstring RefusalReason() const override { return reason_; }

  private:
    // 0 for a port that does not exist or has no I/O address (one on USB, for example).
    uint16_t BaseAddress(size_t port) const {
        std::ifstream table(tables_ + "/parport" + std::to_string(port) + "/base-addr");
        unsigned long base = 0;
        return table >> base && base <= 0xFFFF ? static_cast<uint16_t>(base) : 0;
    }

    bool Enumerate(std::span<uint8_t> out) const {
        for (size_t port = 0; port < kPortCount; ++port) {
            const uint16_t base = BaseAddress(port);
            out[2 * port] = static_cast<uint8_t>(base);
            out[2 * port + 1] = static_cast<uint8_t>(base >> 8);
        }
        return true;
    }

    // The claimed device to which a port address belongs, and which of its registers is meant; null
    // if there is none.
    Device* Find(std::span<const uint8_t> address, Register& which) {
        const unsigned wanted = address[0] | address[1] << 8;
        for (size_t port = 0; port < kPortCount; ++port) {
            if (bases_[port] == 0)
                bases_[port] = BaseAddress(port);
            const unsigned base = bases_[port];
            if (base == 0 || wanted < base || wanted - base >= kRegisterCount)
                continue;
            which = static_cast<Register>(wanted - base);
            Device& device = ports_[port];
            reason_ = device.Claim(devices_ + "/parport" + std::to_string(port));
            return reason_.empty() ? &device : nullptr;
        }
        return nullptr;
    }

    bool Read(std::span<const uint8_t> address, uint8_t& value) {
        Register which{};
        const Device* device = Find(address, which);
        return device && device->Read(which, value);
    }

    bool Write(std::span<const uint8_t> record) {
        Register which{};
        const Device* device = Find(record, which);
        return device && device->Write(which, record[2]);
    }

    std::string tables_;
    std::string devices_;
    std::array<uint16_t, kPortCount> bases_{}; // 0 until found, so that a scan reads no tables
    std::array<Device, kPortCount> ports_;
    std::wstring reason_; // of the last call's refusal, empty if there is nothing to tell
};

} // namespace

std::unique_ptr<OmPortDriver> OpenParport(const std::string& tables, const std::string& devices) {
    return std::make_unique<Parport>(tables, devices);
}
