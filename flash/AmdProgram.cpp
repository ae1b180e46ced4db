#include "flash/AmdCommands.h"
#include "flash/BulkProgramming.h"

namespace {

constexpr uint8_t kDq7 = 0x80;
constexpr uint8_t kDq5 = 0x20; // time limit exceeded
constexpr uint8_t kDq1 = 0x02; // write-to-buffer abort

// A flash that is still busy answers with status bits, so comparing data is all it takes.
bool IsProgrammed(const OmProgramBlock& item, uint32_t status) {
    return status == item.back().value;
}

class AmdWords : public OmBulkCommands {
  public:
    explicit AmdWords(bool bypass) : OmBulkCommands(1), bypass_(bypass) {}

    void Enter(OmBusCycleBatch& batch) const override {
        if (!bypass_)
            return;
        AppendAmdUnlock(batch);
        AppendAmdCommand(batch, kAmdBypassEntry);
        batch.AppendRise();
    }

    // A busy flash ignores the set-up cycle. Outside bypass mode the data behind it do nothing; in
    // the mode they can be the two cycles that end it, and all words that follow are lost.
    bool TriesWaitOnOneItem() const override { return bypass_; }

    void Recover(OmBusCycleBatch& batch, const OmBulkVerdict&, int longestWait) const override {
        if (bypass_)
            WaitForFlash(batch, longestWait);
        ReenterBypass(batch);
    }

    void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const override {
        AppendProgram(batch, item.front());
        batch.AppendRise();
        AppendStatusRead(batch, wait);
    }

    int ClosingScans() const override { return 0; }

    // The data bus stays driven from item to item.
    void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                         int wait) const override {
        AppendProgram(batch, item.front());
        AppendBlindWait(batch, wait);
    }

    bool Judge(const OmBoundaryScanBus&, const OmProgramBlock& item, uint32_t status,
               OmBulkVerdict&) const override {
        return IsProgrammed(item, status);
    }

    // A chip that gave up (DQ5) takes nothing but a reset.
    void AfterDrop(OmBusCycleBatch& batch) const override {
        AppendAmdCommand(batch, kAmdReset);
        batch.AppendRise();
        batch.Run();
        batch.Clear();
        ReenterBypass(batch);
    }

    void Close(OmBusCycleBatch& batch) const override {
        if (bypass_)
            LeaveBypass(batch);
        AmdReset(*batch.bus);
    }

  private:
    void AppendProgram(OmBusCycleBatch& batch, const OmFlashWord& word) const {
        if (!bypass_)
            AppendAmdUnlock(batch);
        AppendAmdCommand(batch, kAmdProgram);
        batch.AppendWrite(word.address, word.value);
    }

    // The flash may have left the mode or not: afterwards it is in it.
    void ReenterBypass(OmBusCycleBatch& batch) const {
        if (!bypass_)
            return;
        LeaveBypass(batch);
        Enter(batch);
    }

    static void LeaveBypass(OmBusCycleBatch& batch) {
        batch.AppendRise();
        batch.AppendWriteData(OnAllLanes(kAmdBypassReset));
        batch.AppendRise();
        batch.AppendWriteData(0);
        batch.AppendRise();
        batch.Run();
        batch.Clear();
    }

    bool bypass_;
};

class AmdBuffers : public OmBulkCommands {
  public:
    using OmBulkCommands::OmBulkCommands;

    void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const override {
        AppendProgram(batch, item);
        batch.AppendRise();
        AppendStatusRead(batch, wait);
    }

    int ClosingScans() const override { return 0; }

    void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                         int wait) const override {
        AppendProgram(batch, item);
        AppendBlindWait(batch, wait);
    }

    bool Judge(const OmBoundaryScanBus& bus, const OmProgramBlock& item, uint32_t status,
               OmBulkVerdict& verdict) const override {
        if (IsProgrammed(item, status))
            return true;
        for (int chip = 0; chip < bus.chipCount; ++chip)
            if (HasAborted(bus.ChipLaneByte(chip, status),
                           bus.ChipLaneByte(chip, item.back().value)))
                verdict.writeAborted = true;
        return false;
    }

    void Recover(OmBusCycleBatch& batch, const OmBulkVerdict& verdict, int) const override {
        if (verdict.writeAborted)
            AmdAbortReset(batch);
    }

    // Takes a chip out of DQ5 as well.
    void AfterDrop(OmBusCycleBatch& batch) const override { AmdAbortReset(batch); }

    void Close(OmBusCycleBatch& batch) const override {
        AmdAbortReset(batch);
        AmdReset(*batch.bus);
    }

  private:
    static bool HasAborted(uint8_t status, uint8_t value) {
        return ((status ^ value) & kDq7) != 0 && (status & (kDq5 | kDq1)) == kDq1;
    }

    // The address of the confirmation is that of the last word.
    static void AppendProgram(OmBusCycleBatch& batch, const OmProgramBlock& item) {
        const auto lastIndex = static_cast<uint32_t>(item.size() - 1);
        AppendAmdUnlock(batch);
        batch.AppendWrite(item.front().address, OnAllLanes(kAmdWriteBuffer));
        batch.AppendRise();
        batch.AppendWriteData(batch.bus->EveryLaneValue(lastIndex));
        for (const OmFlashWord& word : item)
            batch.AppendWrite(word.address, word.value);
        batch.AppendRise();
        batch.AppendWriteData(OnAllLanes(kAmdProgramBuffer));
    }
};

} // namespace

std::unique_ptr<OmBulkCommands> MakeAmdWords(const OmProgramOptions& options) {
    return std::make_unique<AmdWords>(options.bypass);
}

std::unique_ptr<OmBulkCommands> MakeAmdBuffers(const OmProgramOptions& options) {
    return std::make_unique<AmdBuffers>(options.wordsPerBlock);
}

OmFlashResult AmdProgramWords(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                              const OmDataImage& image, bool bypass, int& wait, uint32_t& count) {
    return ProgramWithStatus(bus, AmdWords(bypass), callback, image, wait, count);
}

OmFlashResult AmdProgramBuffers(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                const OmDataImage& image, unsigned wordsPerBlock, int& wait,
                                uint32_t& count) {
    return ProgramWithStatus(bus, AmdBuffers(wordsPerBlock), callback, image, wait, count);
}

OmFlashResult AmdProgramWordsBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                   const OmDataImage& image, bool bypass, int wait,
                                   uint32_t& count) {
    return ProgramBlind(bus, AmdWords(bypass), callback, image, wait, count);
}

OmFlashResult AmdProgramBuffersBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                     const OmDataImage& image, unsigned wordsPerBlock, int wait,
                                     uint32_t& count) {
    return ProgramBlind(bus, AmdBuffers(wordsPerBlock), callback, image, wait, count);
}
