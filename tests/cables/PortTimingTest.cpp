// How long a parallel pod's TCK stays at each level: never shorter than half a period of what was
// asked for, and never shorter than the floor at the top of the range.
#include "jtag/CableFactory.h"
#include "platform/PortDriver.h"
#include "tests/support/VirtualClock.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

// A clock that can be told the time of an edge.
class EdgeClock {
  public:
    virtual ~EdgeClock() = default;
    virtual double Microseconds() = 0;
};

// A port that notes when the data register is written.
class EdgePort : public OmPortDriverOpener {
  public:
    explicit EdgePort(EdgeClock& clock) : clock_(clock), previous_(SetPortDriverOpener(this)) {}

    ~EdgePort() override { SetPortDriverOpener(previous_); }

    EdgePort(const EdgePort&) = delete;
    EdgePort& operator=(const EdgePort&) = delete;

    std::unique_ptr<OmPortDriver> Open(const std::string&) override {
        return std::make_unique<Handle>();
    }

    // Of the edges since the last call.
    double ShortestHalfPeriod() {
        double shortest = 1e9;
        for (size_t i = 1; i < edges.size(); ++i)
            shortest = std::min(shortest, edges[i] - edges[i - 1]);
        edges.clear();
        return shortest;
    }

    static void Note() {
        if (active)
            edges.push_back(active->clock_.Microseconds());
    }

    void Start() { active = this; }

    static void Stop() { active = nullptr; }

  private:
    // Handles outlive the opener; a stopped one notes nothing.
    class Handle : public OmPortDriver {
      public:
        bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                     size_t& returned) override {
            returned = out.size();
            std::fill(out.begin(), out.end(), uint8_t{0});
            if (code == kPortEnumerate)
                out[1] = 0x03; // LPT1 at 300h
            if (code == kPortWrite && in[0] == 0x00)
                Note();
            return true;
        }
    };

    inline static EdgePort* active = nullptr;
    inline static std::vector<double> edges;

    EdgeClock& clock_;
    OmPortDriverOpener* previous_;
};

constexpr double kRounding = 1e-6; // of sums of hundredths

struct SpeedCase {
    int32_t frequency;
    double halfPeriod; // microseconds
};

constexpr SpeedCase kSpeeds[] = {
    {1000, 500.0}, {50000, 10.0}, {199999, 1000000.0 / 199999 / 2}, {200000, 0.75}};

double ShortestHalfPeriod(EdgePort& port, int32_t frequency, size_t bits) {
    OmConnectionSettings settings;
    settings.lptFrequency = frequency;
    const auto cable = CreateCable(settings);
    port.Start();
    cable->GetJtagHAL()->ScanDR(OmBitVector(bits, 1), nullptr, 1, 1);
    EdgePort::Stop();
    return port.ShortestHalfPeriod();
}

// Each look at the counter takes a fixed time, in ticks of a hundredth of a microsecond.
class FineClock : public VirtualClock, public EdgeClock {
  public:
    explicit FineClock(int64_t look) : look_(look) {}

    int64_t PerformanceFrequency() override { return 100000000; }

    int64_t PerformanceCounter() override { return now_ += look_; }

    double Microseconds() override { return static_cast<double>(now_) / 100; }

  private:
    int64_t look_;
    int64_t now_ = 0;
};

class HostTime : public EdgeClock {
  public:
    double Microseconds() override {
        OmClock& clock = GetClock();
        return static_cast<double>(clock.PerformanceCounter() - start_) * 1e6 /
               static_cast<double>(clock.PerformanceFrequency());
    }

  private:
    int64_t start_ = GetClock().PerformanceCounter();
};

} // namespace

TEST(PortTiming, HalfPeriodsAreAsAskedWhateverALookAtTheClockTakes) {
    for (const int64_t look : {1, 7, 74, 130, 299}) {
        FineClock clock(look);
        EdgePort port(clock);
        for (const SpeedCase& row : kSpeeds) {
            const double shortest = ShortestHalfPeriod(port, row.frequency, 40);
            EXPECT_LT(shortest, row.halfPeriod + 2 * 0.01 * static_cast<double>(look) + 0.01)
                << row.frequency << " Hz, " << look;
            // An edge that takes longer than asked already is not waited for.
            const double looks = 0.01 * static_cast<double>(look);
            EXPECT_GE(shortest + kRounding, std::max(looks, row.halfPeriod))
                << row.frequency << " Hz, " << look;
        }
    }
}

// On the host's own clock. A busy machine makes edges later, never earlier.
TEST(PortTiming, MeasuredHalfPeriodsAreNeverShorterThanAsked) {
    HostTime time;
    EdgePort port(time);
    for (const SpeedCase& row : kSpeeds) {
        const size_t bits = row.frequency == 1000 ? 10 : 200;
        EXPECT_GE(ShortestHalfPeriod(port, row.frequency, bits), row.halfPeriod)
            << row.frequency << " Hz";
    }
}
