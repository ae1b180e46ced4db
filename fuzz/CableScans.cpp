#include "fuzz/CableScans.h"

#include "fuzz/Check.h"
#include "fuzz/Pod.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/Exception.h"
#include "jtag/Log.h"

#include <algorithm>

namespace {

constexpr int kMaxActions = 40;
constexpr size_t kMaxVectors = 60;

// Without a sink the log formats nothing.
class DiscardingSink : public OmLogSink {
  public:
    void Write(const std::wstring&) override {}
};

OmBitVector TakeBits(Pod& pod, size_t size) {
    std::vector<uint8_t> packed((size + 7) / 8);
    pod.Fill(packed);
    OmBitVector bits(size);
    for (size_t i = 0; i < size; ++i)
        bits[i] = (packed[i / 8] >> (i % 8)) & 1;
    return bits;
}

void CheckCaptured(const OmBitVector& bits, size_t size) {
    Check(bits.size() == size, "as many bits come out as went in");
    Check(std::all_of(bits.begin(), bits.end(), [](uint8_t bit) { return bit <= 1; }),
          "captured bits are 0 or 1");
}

class Scans {
  public:
    Scans(OmCable& cable, Pod& pod, size_t maxBits)
        : pod_(pod), hal_(*cable.GetJtagHAL()), analyzer_(&cable), maxBits_(maxBits) {}

    void RunOne() {
        switch (pod_.input.ConsumeIntegralInRange(0, 6)) {
        case 0:
            return hal_.ResetTap();
        case 1:
            return ScanData();
        case 2:
            return ScanInstruction();
        case 3:
            return ScanBatch();
        case 4:
            return AnalyzeChain();
        case 5:
            return CaptureInstructions();
        default:
            return AskForBatchSize();
        }
    }

  private:
    size_t TakeLength() { return pod_.input.ConsumeIntegralInRange<size_t>(1, maxBits_); }

    int TakeState() { return pod_.input.ConsumeIntegralInRange(0, 2); }

    void ScanData() {
        const OmBitVector in = TakeBits(pod_, TakeLength());
        OmBitVector out;
        const int from = TakeState();
        hal_.ScanDR(in, &out, from, TakeState());
        CheckCaptured(out, in.size());
    }

    void ScanInstruction() {
        const OmBitVector in = TakeBits(pod_, TakeLength());
        OmBitVector out;
        const int from = TakeState();
        hal_.ScanIR(in, &out, from, TakeState());
        CheckCaptured(out, in.size());
    }

    void ScanBatch() {
        const OmBitVector bits = TakeBits(pod_, TakeLength());
        OmScanList vectors(pod_.input.ConsumeIntegralInRange<size_t>(0, kMaxVectors));
        size_t wanted = 0;
        for (OmScanVector& vector : vectors) {
            vector = {bits, pod_.input.ConsumeBool()};
            wanted += vector.capture;
        }
        OmCapturedList captured;
        const bool listens = pod_.input.ConsumeBool();
        hal_.ScanVectors(vectors, listens ? &captured : nullptr);
        Check(captured.size() == (listens ? wanted : 0), "each scan that asked gets an answer");
        for (const OmBitVector& each : captured)
            CheckCaptured(each, bits.size());
    }

    void AnalyzeChain() {
        std::vector<OmBitVector> chain;
        bool atmelBug = false;
        if (!analyzer_.AnalyzeChain(chain, atmelBug))
            return;
        for (const OmBitVector& device : chain)
            CheckCaptured(device, device.size() == 1 ? 1 : 32);
    }

    void CaptureInstructions() {
        OmBitVector captured;
        if (analyzer_.CaptureChainIr(captured))
            CheckCaptured(captured, captured.size());
    }

    void AskForBatchSize() {
        float reading = 0;
        float blind = 0;
        float status = 0;
        hal_.GetVectorsPerTransfer(static_cast<uint32_t>(TakeLength()), &reading, &blind, &status);
        Check(reading > 0 || reading == -1.0F, "a batch size is one, or none");
    }

    Pod& pod_;
    OmJtagHAL& hal_;
    OmChainAnalyzer analyzer_;
    size_t maxBits_;
};

} // namespace

void RunScans(OmCable& cable, Pod& pod, size_t maxBits) {
    DiscardingSink sink;
    SetLogSink(&sink);
    Scans scans(cable, pod, maxBits);
    try {
        for (int action = 0; action < kMaxActions && pod.input.remaining_bytes() > 0; ++action)
            scans.RunOne();
    } catch (const OmException& broken) {
        Check(!broken.GetText().empty(), "a broken connection is told with a text");
    }
    SetLogSink(nullptr);
}
