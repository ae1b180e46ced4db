// The parallel-port cables over a port driver that may answer anything.

#include "fuzz/CableScans.h"
#include "fuzz/Check.h"
#include "fuzz/Patience.h"
#include "fuzz/Pod.h"
#include "jtag/CableFactory.h"
#include "platform/PortDriver.h"

#include <algorithm>
#include <array>

namespace {

constexpr OmCableType kCables[] = {
    OmCableType::XilinxParallelCable3, OmCableType::AlteraByteBlasterMV,
    OmCableType::LatticeParallelIspDownload, OmCableType::Wiggler, OmCableType::EmbestEasyIce};

constexpr size_t kMaxBits = 150;
constexpr size_t kPatternSize = 256;
constexpr uint32_t kFewCalls = 100000;

// Reads of a port are far too many for a word of the input each: they go round a pattern, and the
// one call that fails is chosen beforehand.
class HostilePort : public Pod, public OmPortDriverOpener {
  public:
    HostilePort(const uint8_t* data, size_t size)
        : Pod(data, size), previous_(SetPortDriverOpener(this)) {
        failAtCall_ = input.ConsumeBool() ? input.ConsumeIntegralInRange(0U, kFewCalls) : kFewCalls;
        Fill(status_);
    }

    ~HostilePort() override { SetPortDriverOpener(previous_); }

    HostilePort(const HostilePort&) = delete;
    HostilePort& operator=(const HostilePort&) = delete;

    std::unique_ptr<OmPortDriver> Open(const std::string& name) override {
        Check(name == "ompio2", "the driver is opened by its name");
        return Misbehaves() ? nullptr : std::make_unique<Handle>(*this);
    }

  private:
    class Handle : public OmPortDriver {
      public:
        explicit Handle(HostilePort& port) : port_(port) {}

        bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                     size_t& returned) override {
            return port_.Answer(code, in, out, returned);
        }

        std::wstring RefusalReason() const override { return L"%s%n"; }

      private:
        HostilePort& port_;
    };

    bool Answer(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                size_t& returned) {
        returned = out.size();
        if (calls_++ == failAtCall_) {
            returned = input.ConsumeIntegral<uint8_t>();
            return input.ConsumeBool();
        }
        switch (code) {
        case kPortEnumerate:
            Check(in.empty() && out.size() == 6, "the ports are asked for by themselves");
            return Enumerate(out, returned);
        case kPortRead:
            CheckAddress(in);
            Check(in.size() == 2 && out.size() == 1, "a read gives an address and takes a value");
            out[0] = status_[reads_++ % status_.size()];
            return true;
        case kPortWrite:
            CheckAddress(in);
            Check(in.size() == 3 && out.empty(), "a write gives an address and a value");
            return true;
        default:
            Check(false, "there are three control codes");
            return false;
        }
    }

    bool Enumerate(std::span<uint8_t> out, size_t& returned) {
        for (size_t port = 0; port < 3; ++port) {
            addresses_[port] = input.ConsumeIntegral<uint16_t>();
            out[2 * port] = static_cast<uint8_t>(addresses_[port]);
            out[2 * port + 1] = static_cast<uint8_t>(addresses_[port] >> 8);
        }
        if (Misbehaves())
            returned = input.ConsumeIntegral<uint8_t>();
        return !Misbehaves();
    }

    // Other ports of the machine are none of a cable's business.
    void CheckAddress(std::span<const uint8_t> record) const {
        const auto address = static_cast<uint16_t>(record[0] | record[1] << 8);
        Check(std::any_of(addresses_.begin(), addresses_.end(),
                          [&](uint16_t base) {
                              return base != 0 && static_cast<uint16_t>(address - base) < 3;
                          }),
              "only the three registers of a port that is there are touched");
    }

    OmPortDriverOpener* previous_;
    std::array<uint8_t, kPatternSize> status_{};
    std::array<uint16_t, 3> addresses_{};
    uint32_t failAtCall_ = 0;
    uint32_t calls_ = 0;
    size_t reads_ = 0;
};

OmConnectionSettings TakeSettings(HostilePort& port) {
    OmConnectionSettings settings;
    settings.cableType = port.input.PickValueInArray(kCables);
    settings.lptPort = port.input.ConsumeIntegralInRange(0, 2);
    settings.lptFrequency = port.input.ConsumeIntegralInRange(1000, 200000);
    return settings;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Patience patience;
    HostilePort port(data, size);
    OmConnectionSettings settings = TakeSettings(port);
    // With or without a counter to wait on, which then takes a look or two for each edge.
    if (port.input.ConsumeBool())
        patience.stepMicroseconds = static_cast<uint64_t>(500000 / settings.lptFrequency) + 1;
    const std::unique_ptr<OmCable> cable = CreateCable(settings);
    if (cable)
        RunScans(*cable, port, kMaxBits);
    return 0;
}
