#include "flash/BulkProgramming.h"
#include "flash/IntelCommands.h"

#include <utility>

namespace {

constexpr uint8_t kIntelProgramProtection = 0xC0;

// What words and blocks have in common: the status register.
class IntelBulk : public OmBulkCommands {
  public:
    using OmBulkCommands::OmBulkCommands;

    void Open(OmBoundaryScanBus& bus) const override { IntelClearStatus(bus); }

    // Of the chips, one that refuses decides, then one that is not ready.
    OmItemState Judge(const OmBoundaryScanBus& bus, const OmProgramBlock&,
                      uint32_t word) const override {
        OmItemState found = OmItemState::Done;
        for (int chip = 0; chip < bus.chipCount; ++chip) {
            const OmItemState state = JudgeChip(bus.ChipLaneByte(chip, word));
            if (state == OmItemState::Forbidden)
                return state;
            if (found == OmItemState::Done || state == OmItemState::Busy)
                found = state;
        }
        return found;
    }

    // FFh ends whatever waits for a second cycle or for the rest of a buffer, and programs nothing;
    // D0h would confirm an erase. Then D0h resumes a program operation that B0h in the data of an
    // item has suspended.
    void Resume(OmBusCycleBatch& batch, const OmProgramBlock& item) const override {
        const unsigned countAndConfirmation = 2;
        for (unsigned i = 0; i < wordsPerBlock + countAndConfirmation; ++i)
            batch.AppendWrite(item.front().address, 0xFFFFFFFF);
        batch.AppendWrite(item.front().address, OnAllLanes(kIntelConfirm));
        batch.AppendRise();
    }

    void Renew(OmBusCycleBatch& batch) const override {
        batch.AppendWriteData(OnAllLanes(kIntelClearStatus));
        batch.AppendRise();
    }

    void Close(OmBusCycleBatch& batch) const override {
        IntelClearStatus(*batch.bus);
        IntelReadArray(*batch.bus);
    }

  protected:
    // Whether a flash that gets ready in the middle of an item takes `first` and `second`, which
    // follow each other on a chip's lane, for a command that leaves traces.
    static bool IsHarmfulPair(uint8_t first, uint8_t second, uint32_t chipWord) {
        switch (first) {
        case kIntelEraseSetUp:
            return second == kIntelConfirm;
        case kIntelLockSetUp: // lock, unlock, lock down, configuration
            return second == kIntelLock || second == kIntelConfirm || second == 0x2F ||
                   second == 0x03 || second == 0x04;
        case kIntelProgramProtection: // its registers cannot be erased
            return (chipWord & 0x1FF) >= 0x7F && (chipWord & 0x1FF) <= 0x10F;
        default:
            return false;
        }
    }

  private:
    static OmItemState JudgeChip(uint8_t status) {
        if (!(status & kIntelReady))
            return OmItemState::Busy;
        if (status & kIntelBlockLocked)
            return OmItemState::Forbidden;
        if (!(status & kIntelProgramError))
            return OmItemState::Done;
        // Both errors together: the sequence was not understood.
        return status & kIntelEraseError ? OmItemState::NotTaken : OmItemState::Failed;
    }
};

class IntelWords : public IntelBulk {
  public:
    IntelWords() : IntelBulk(1) {}

    void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const override {
        AppendProgram(batch, item.front());
        batch.AppendRise();
        AppendStatusRead(batch, wait);
    }

    // The next word's set-up command follows the data.
    bool CanDoHarm(const OmBoundaryScanBus& bus, const OmProgramBlock& item) const override {
        for (int chip = 0; chip < bus.chipCount; ++chip)
            if (IsHarmfulPair(bus.ChipLaneByte(chip, item.front().value), kIntelProgram,
                              item.front().address >> bus.addrCmdShift))
                return true;
        return false;
    }

    // One clear for the whole batch: behind an item that was not done, no status counts anyway.
    void AppendClosing(OmBusCycleBatch& batch) const override {
        batch.AppendWriteData(OnAllLanes(kIntelClearStatus));
        batch.AppendRise();
    }

    int ClosingScans() const override { return 2; }

    void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                         int wait) const override {
        AppendProgram(batch, item.front());
        AppendBlindWait(batch, wait);
    }

  private:
    static void AppendProgram(OmBusCycleBatch& batch, const OmFlashWord& word) {
        batch.AppendWrite(word.address, OnAllLanes(kIntelProgram));
        batch.AppendRise();
        batch.AppendWriteData(word.value);
    }
};

class IntelBuffers : public IntelBulk {
  public:
    using IntelBulk::IntelBulk;

    void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const override {
        AppendProgram(batch, item);
        batch.AppendRise();
        AppendStatusRead(batch, wait);
    }

    // Clears the status register after each block; the next block's first scan ends that write.
    void AppendItemEnd(OmBusCycleBatch& batch) const override {
        batch.AppendWriteData(OnAllLanes(kIntelClearStatus));
    }

    // Count, words and confirmation, each followed by the next.
    bool CanDoHarm(const OmBoundaryScanBus& bus, const OmProgramBlock& item) const override {
        for (int chip = 0; chip < bus.chipCount; ++chip)
            if (HoldsHarmfulPair(bus, chip, item))
                return true;
        return false;
    }

    void AppendClosing(OmBusCycleBatch& batch) const override { batch.AppendRise(); }

    int ClosingScans() const override { return 1; }

    void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                         int wait) const override {
        AppendProgram(batch, item);
        AppendBlindWait(batch, wait);
    }

  private:
    static bool HoldsHarmfulPair(const OmBoundaryScanBus& bus, int chip,
                                 const OmProgramBlock& item) {
        auto before = static_cast<uint8_t>(item.size() - 1);
        for (const OmFlashWord& word : item) {
            const uint8_t value = bus.ChipLaneByte(chip, word.value);
            const uint32_t chipWord = word.address >> bus.addrCmdShift;
            if (IsHarmfulPair(std::exchange(before, value), value, chipWord))
                return true;
        }
        return IsHarmfulPair(before, kIntelConfirm, item.back().address >> bus.addrCmdShift);
    }

    // The extended status after the command is not read: the buffer is free, since the block
    // before has been waited for.
    static void AppendProgram(OmBusCycleBatch& batch, const OmProgramBlock& item) {
        const auto lastIndex = static_cast<uint32_t>(item.size() - 1);
        batch.AppendWrite(item.front().address, OnAllLanes(kIntelWriteBuffer));
        batch.AppendRise();
        batch.AppendWriteData(batch.bus->EveryLaneValue(lastIndex));
        for (const OmFlashWord& word : item)
            batch.AppendWrite(word.address, word.value);
        batch.AppendRise();
        batch.AppendWriteData(OnAllLanes(kIntelConfirm));
    }
};

} // namespace

std::unique_ptr<OmBulkCommands> MakeIntelWords(const OmProgramOptions&) {
    return std::make_unique<IntelWords>();
}

std::unique_ptr<OmBulkCommands> MakeIntelBuffers(const OmProgramOptions& options) {
    return std::make_unique<IntelBuffers>(options.wordsPerBlock);
}

OmFlashResult IntelProgramWords(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                const OmDataImage& image, int& wait, uint32_t& count) {
    return ProgramWithStatus(bus, IntelWords(), callback, image, wait, count);
}

OmFlashResult IntelProgramBuffers(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                  const OmDataImage& image, unsigned wordsPerBlock, int& wait,
                                  uint32_t& count) {
    return ProgramWithStatus(bus, IntelBuffers(wordsPerBlock), callback, image, wait, count);
}

OmFlashResult IntelProgramWordsBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                     const OmDataImage& image, int wait, uint32_t& count) {
    return ProgramBlind(bus, IntelWords(), callback, image, wait, count);
}

OmFlashResult IntelProgramBuffersBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                       const OmDataImage& image, unsigned wordsPerBlock, int wait,
                                       uint32_t& count) {
    return ProgramBlind(bus, IntelBuffers(wordsPerBlock), callback, image, wait, count);
}
