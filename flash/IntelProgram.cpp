#include "flash/BulkProgramming.h"
#include "flash/IntelCommands.h"

namespace {

// What words and blocks have in common: the status register.
class IntelBulk : public OmBulkCommands {
  public:
    using OmBulkCommands::OmBulkCommands;

    void Open(OmBoundaryScanBus& bus) const override { IntelClearStatus(bus); }

    // Nothing but ready and locked is looked at: a word that was not programmed is found by a
    // verify. What follows an item that was not ready tells nothing: the flash has ignored its
    // command, and its data may have taken the flash out of status mode.
    bool Judge(const OmBoundaryScanBus& bus, const OmProgramBlock&, uint32_t word,
               OmBulkVerdict& verdict) const override {
        if (!verdict.done.empty() && !verdict.done.back())
            return false;
        bool allReady = true;
        for (int chip = 0; chip < bus.chipCount; ++chip) {
            const uint8_t status = bus.ChipLaneByte(chip, word);
            if (!(status & kIntelReady))
                allReady = false;
            else if (status & kIntelBlockLocked)
                verdict.blockLocked = true;
        }
        return allReady;
    }

    // A busy flash ignores the command, but when it gets ready ahead of the item's data it takes
    // these for commands: they can lock or erase a block.
    bool TriesWaitOnOneItem() const override { return true; }

    void Recover(OmBusCycleBatch& batch, const OmBulkVerdict&, int longestWait) const override {
        WaitForFlash(batch, longestWait);
    }

    void Close(OmBusCycleBatch& batch) const override {
        IntelClearStatus(*batch.bus);
        IntelReadArray(*batch.bus);
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

    // One clear for the whole batch: the one lasting bit looked at, a locked block, ends it all
    // anyway.
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

    // Clears the status register after each block; the next block's first scan ends that write.
    void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const override {
        AppendProgram(batch, item);
        batch.AppendRise();
        AppendStatusRead(batch, wait);
        batch.AppendWriteData(OnAllLanes(kIntelClearStatus));
    }

    void AppendClosing(OmBusCycleBatch& batch) const override { batch.AppendRise(); }

    int ClosingScans() const override { return 1; }

    void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                         int wait) const override {
        AppendProgram(batch, item);
        AppendBlindWait(batch, wait);
    }

  private:
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
