// Reading bus words: pipelined where the cable takes many scans at a time, stepped where not.

#include "data/DataImage.h"
#include "flash/BoundaryScanBus.h"
#include "flash/BusCycleBatch.h"
#include "flash/Progress.h"

#include <algorithm>
#include <vector>

namespace {

class WordReader {
  public:
    WordReader(OmBoundaryScanBus& bus, OmProgressCallback* callback, OmDataImage& image,
               uint32_t start, uint32_t count)
        : bus_(bus), batch_(bus), callback_(callback), image_(image), start_(start), count_(count),
          bytes_(bus.BusWordBytes()) {
        batch_.SetCE(0);
        batch_.SetOE(0);
        batch_.SetWE(1);
        batch_.ReleaseData();
    }

    // OE stays low: the update of each scan sets the address whose data the next one captures.
    OmFlashResult ReadPipelined(uint32_t perBatch) {
        while (done_ < count_) {
            const uint32_t words = std::min(perBatch, count_ - done_);
            batch_.Clear();
            for (uint32_t i = 0; i < words; ++i) {
                batch_.SetAddress(start_ + done_ + i);
                batch_.AppendScan(i > 0);
            }
            batch_.AppendScan(true);
            RunAndStore();
            if (!Report())
                return OmFlashResult::Stopped;
        }
        return OmFlashResult::Done;
    }

    // One scan at a time, for a cable that gains nothing from more.
    OmFlashResult ReadStepped() {
        for (uint64_t i = 0; i <= count_; ++i) {
            batch_.Clear();
            if (i < count_)
                batch_.SetAddress(start_ + static_cast<uint32_t>(i));
            batch_.AppendScan(i > 0);
            RunAndStore();
            if (!Report())
                return OmFlashResult::Stopped;
        }
        return OmFlashResult::Done;
    }

    uint32_t GetDone() const { return done_; }

  private:
    void RunAndStore() {
        batch_.RunForCapture(captured_);
        for (const OmBitVector& scan : captured_)
            Store(bus_.DecodeDataWord(scan));
    }

    void Store(uint32_t word) {
        for (uint8_t& byte : bytes_) {
            byte = static_cast<uint8_t>(word);
            word >>= 8;
        }
        image_.SetBytes((start_ + done_) * static_cast<uint32_t>(bytes_.size()), bytes_);
        ++done_;
    }

    bool Report() {
        const int percent = static_cast<int>(uint64_t{done_} * 100 / count_);
        return callback_ == nullptr || callback_->OnProgress(percent, nullptr);
    }

    OmBoundaryScanBus& bus_;
    OmBusCycleBatch batch_;
    OmProgressCallback* callback_;
    OmDataImage& image_;
    uint32_t start_;
    uint32_t count_;
    uint32_t done_ = 0;
    std::vector<uint8_t> bytes_; // of the word being stored
    OmCapturedList captured_;
};

// How many of `count` words from `start` the address pins can reach.
uint32_t CutToReach(uint32_t start, uint32_t count, size_t addressPins) {
    const uint64_t words = uint64_t{1} << std::min<size_t>(addressPins, 32);
    return start < words ? static_cast<uint32_t>(std::min<uint64_t>(count, words - start)) : 0;
}

} // namespace

OmFlashResult OmBoundaryScanBus::ReadWords(OmProgressCallback* callback, uint32_t start,
                                           uint32_t count, OmDataImage& image, uint32_t* done) {
    if (done != nullptr)
        *done = 0;
    count = CutToReach(start, count, address.size());
    if (count == 0)
        return OmFlashResult::Done;
    WordReader reader(*this, callback, image, start, count);
    const int perBatch = ItemsPerTransfer(1, 0, OmTransferKind::Reading);
    const OmFlashResult result = perBatch == 1
                                     ? reader.ReadStepped()
                                     : reader.ReadPipelined(static_cast<uint32_t>(perBatch));
    if (done != nullptr)
        *done = reader.GetDone();
    DriveBusIdle();
    return result;
}
