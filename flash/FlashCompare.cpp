// Verify and blank check: one loop that reads in blocks of about two seconds, so that an abort is
// never far, whatever the cable.
#include "data/DataImage.h"
#include "flash/BoundaryScanBus.h"
#include "flash/FlashOperations.h"
#include "platform/Clock.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <limits>
#include <span>

namespace {

constexpr uint8_t kErased = 0xFF;
constexpr double kBlockMilliseconds = 2000.0;
constexpr uint32_t kFirstBlockWords = 100;
constexpr uint64_t kAddressSpace = uint64_t{1} << 32;

// Image addresses to compare.
struct CompareRange {
    uint64_t first = 0;
    uint64_t end = 0;                  // past the last one
    std::span<const uint8_t> expected; // from `first` on; empty: erased flash
};

struct CompareTexts {
    const char* opening;
    const char* aborted;
    std::wstring (*difference)(uint32_t address, uint8_t read, uint8_t expected);
};

constexpr CompareTexts kVerifyTexts = {
    ForTranslation("Verifying the programmed data..."),
    ForTranslation("Verify operation was aborted by user."),
    [](uint32_t address, uint8_t read, uint8_t expected) {
        return TranslatedFormat("Data verification failed at offset %05Xh.\nByte read from flash: "
                                "%02Xh; byte expected: %02Xh.",
                                address, read, expected);
    }};

constexpr CompareTexts kBlankCheckTexts = {
    ForTranslation("Checking flash memory for blank..."),
    ForTranslation("Blank check operation was aborted by user."),
    [](uint32_t address, uint8_t read, uint8_t) {
        return TranslatedFormat("Flash memory is not blank: read %02Xh at offset %05Xh.", read,
                                address);
    }};

// How many words to read next, from how long the last ones took.
class BlockSize {
  public:
    uint32_t Words() const { return words_; }

    // A clock that ran backward changes nothing.
    void Adjust(int64_t milliseconds) {
        double next = words_;
        if (milliseconds > 0)
            next = kBlockMilliseconds / static_cast<double>(milliseconds) * words_;
        else if (milliseconds == 0)
            next = 2.0 * words_;
        // At least one: a block of no words would end the comparison as if all were well.
        words_ = static_cast<uint32_t>(std::clamp(next, 1.0, double{kMaxWords}));
    }

  private:
    static constexpr uint32_t kMaxWords = std::numeric_limits<uint32_t>::max();

    uint32_t words_ = kFirstBlockWords;
};

class Comparison {
  public:
    Comparison(OmBoundaryScanBus& bus, OmUnitedProgressCallback& callback,
               const CompareTexts& texts, uint32_t totalWords)
        : bus_(bus), callback_(callback), texts_(texts), totalWords_(totalWords) {}

    // False if the user stopped it or a byte differs; the user has been told.
    bool Run(std::span<const CompareRange> ranges) {
        return std::all_of(ranges.begin(), ranges.end(),
                           [this](const CompareRange& range) { return RunRange(range); });
    }

  private:
    bool RunRange(const CompareRange& range);
    OmFlashResult ReadBlock(uint32_t firstWord, uint32_t words, OmDataImage& read, uint32_t& count);
    bool CompareBlock(const OmDataImage& read, const CompareRange& range, uint64_t from);
    bool Fail(const std::wstring& text, OmMessageStyle style);

    OmBoundaryScanBus& bus_;
    OmUnitedProgressCallback& callback_;
    const CompareTexts& texts_;
    uint32_t totalWords_;
    uint32_t doneWords_ = 0;
    BlockSize block_;
};

// What lies beyond the flash is not looked at.
bool Comparison::RunRange(const CompareRange& range) {
    const unsigned wordBytes = bus_.BusWordBytes();
    uint64_t position = range.first;
    while (position < range.end) {
        const uint64_t first = position / wordBytes;
        const uint64_t left = (range.end - 1) / wordBytes - first + 1;
        const auto words = static_cast<uint32_t>(std::min<uint64_t>(left, block_.Words()));
        OmDataImage read;
        uint32_t count = 0;
        if (ReadBlock(static_cast<uint32_t>(first), words, read, count) == OmFlashResult::Stopped)
            return Fail(Translated(texts_.aborted), kWarningBox);
        if (count == 0)
            return true;
        doneWords_ += count;
        if (!CompareBlock(read, range, position))
            return false;
        position = (first + words) * wordBytes;
    }
    return true;
}

OmFlashResult Comparison::ReadBlock(uint32_t firstWord, uint32_t words, OmDataImage& read,
                                    uint32_t& count) {
    callback_.SetStep(totalWords_, doneWords_, words);
    const uint64_t started = GetClock().Milliseconds();
    const OmFlashResult result = bus_.ReadWords(&callback_, firstWord, words, read, &count);
    block_.Adjust(static_cast<int64_t>(GetClock().Milliseconds() - started));
    return result;
}

bool Comparison::CompareBlock(const OmDataImage& read, const CompareRange& range, uint64_t from) {
    const OmDataChunk& chunk = read.GetChunks().front();
    const uint64_t end = std::min(range.end, chunk.End());
    for (uint64_t address = from; address < end; ++address) {
        const uint8_t found = chunk.bytes[address - chunk.address];
        const uint8_t expected =
            range.expected.empty() ? kErased : range.expected[address - range.first];
        if (found != expected)
            return Fail(texts_.difference(static_cast<uint32_t>(address), found, expected),
                        kErrorBox);
    }
    return true;
}

bool Comparison::Fail(const std::wstring& text, OmMessageStyle style) {
    callback_.OnFinish();
    ShowMessage(text, style);
    return false;
}

std::vector<CompareRange> RangesOf(const OmDataImage& image) {
    std::vector<CompareRange> ranges;
    ranges.reserve(image.GetChunkCount());
    for (const OmDataChunk& chunk : image.GetChunks())
        ranges.push_back({chunk.address, chunk.End(), chunk.bytes});
    return ranges;
}

std::vector<CompareRange> RangesOf(const std::vector<OmAddressRange>& addresses) {
    std::vector<CompareRange> ranges;
    ranges.reserve(addresses.size());
    for (const OmAddressRange& range : addresses)
        ranges.push_back(
            {range.start, std::min(uint64_t{range.start} + range.size, kAddressSpace), {}});
    return ranges;
}

} // namespace

bool OmFlashOperations::Verify(OmUnitedProgressCallback& callback, const OmDataImage& image) {
    callback.OnProgress(0, Translated(kVerifyTexts.opening).c_str());
    OmBoundaryScanBus bus;
    OpenBus(bus);
    const uint64_t total = image.GetByteCount() / bus.BusWordBytes() + 1;
    return Comparison(bus, callback, kVerifyTexts, static_cast<uint32_t>(total))
        .Run(RangesOf(image));
}

bool OmFlashOperations::BlankCheck(OmUnitedProgressCallback& callback,
                                   const std::vector<OmAddressRange>& ranges) {
    callback.OnProgress(0, Translated(kBlankCheckTexts.opening).c_str());
    OmBoundaryScanBus bus;
    OpenBus(bus);
    uint32_t total = 0;
    for (const OmAddressRange& range : ranges)
        total += range.size / bus.BusWordBytes() + 1;
    return Comparison(bus, callback, kBlankCheckTexts, total).Run(RangesOf(ranges));
}
