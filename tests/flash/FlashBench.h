// A flash array on the bench: one chain device with one cell for each pin, a cable that keeps a
// readable log of everything that reaches the chain, and time that does not pass. The log is
// rendered from the shifted bits by the bench's own knowledge of its cells.
#pragma once

#include "data/DataImage.h"
#include "flash/BoundaryScanBus.h"
#include "jtag/Cable.h"
#include "jtag/ChainAnalyzer.h"
#include "setup/DesignSetup.h"
#include "tests/support/VirtualClock.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

struct BenchShape {
    int addressPins = 20;
    int chips = 1;
    int wordSize = 2;
    int shift = 0;
};

// What the pins show between two scans.
struct BenchPins {
    uint32_t address = 0;
    uint32_t data = 0;
    bool driven = false; // the data bus, by the chain
    bool ce = true;
    bool oe = true;
    bool we = true;
};

// The cable, and the board behind it.
class BenchCable : public OmCable, public OmJtagHAL, public VirtualClock {
  public:
    explicit BenchCable(const BenchShape& benchShape) : shape(benchShape) {}

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override { Log("reset"); }

    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override;
    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override;
    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override;

    uint32_t GetFrequency() override { return frequency; }

    void GetVectorsPerTransfer(uint32_t bits, float* read, float* write, float* both) override;
    void SleepMilliseconds(unsigned milliseconds) override;

    // --- the board
    // What the flash drives while `pins` stand, asked for each captured scan. Until set, `answers`
    // one after the other, then 0.
    std::function<uint32_t(const BenchPins& before)> flash;
    std::deque<uint32_t> answers;

    // Called for each write cycle at its end, the rising edge of WE.
    std::function<void(uint32_t address, uint32_t data)> onWrite;

    BenchShape shape;
    uint32_t frequency = 1000000;
    float reading = -1.0f;
    float blind = -1.0f;
    float status = -1.0f;
    uint32_t askedBits = 0; // by the last GetVectorsPerTransfer

    BenchPins pins;
    int scansSinceWrite = 0; // scans that ended after the last rising edge of WE
    size_t scanCount = 0;
    size_t captureCount = 0;
    std::vector<size_t> runSizes; // scans of each run
    std::string log;
    bool keepLog = true;

  private:
    int DataBits() const { return shape.chips * shape.wordSize * 8; }

    void Log(const std::string& line) {
        if (keepLog)
            log += line + '\n';
    }

    BenchPins Decode(const OmBitVector& bits) const;
    OmBitVector Capture(const OmBitVector& bits);
    void Update(const BenchPins& next);
    std::string Render(const OmScanVector& scan) const;
};

class FlashBench {
  public:
    explicit FlashBench(const BenchShape& shape = {});
    FlashBench(const FlashBench&) = delete;
    FlashBench& operator=(const FlashBench&) = delete;

    // The log so far, and forgets it. One line an event: "reset", "IR <bits>", "sleep 60", "write"
    // or "write and read" for each run of scans, and indented for each scan "address data CE OE
    // WE", with an "r" if it is captured. Released data show as Z.
    std::string TakeLog();

    BenchCable cable;
    OmDesignSetup setup;
    OmChainAnalyzer analyzer;
    OmBoundaryScanBus bus;
};

// An image of 16-bit words, low byte first, from a bus word up, as a 16-bit bus sees it.
OmDataImage ImageOfWords(uint32_t busWord, std::initializer_list<uint16_t> words);

// Parts of logs that many operations share; 20 address pins, 16 data pins.
inline constexpr char kIdleLog[] = "write and read\n"
                                   "  00000 ZZZZ 1 1 1 r\n";
inline constexpr char kAmdResetLog[] = "write and read\n"
                                       "  55555 ZZZZ 0 1 1\n"
                                       "  55555 F0F0 0 1 0\n"
                                       "  55555 F0F0 0 1 1 r\n";
// The address pins have their safe values.
inline constexpr char kIntelClearStatusLog[] = "write\n"
                                               "  FFFFF 5050 0 1 0\n"
                                               "  FFFFF 5050 0 1 1\n";
inline constexpr char kIntelReadArrayLog[] = "write and read\n"
                                             "  00000 ZZZZ 0 1 1\n"
                                             "  00000 FFFF 0 1 0\n"
                                             "  00000 FFFF 0 1 1 r\n";

// The cells of the bench's device, by cell number.
inline constexpr int kBenchCe = 0;
inline constexpr int kBenchOe = 1;
inline constexpr int kBenchWe = 2;
inline constexpr int kBenchControl = 3; // of all data pins; 0 releases
inline constexpr int kBenchAddress = 4;
