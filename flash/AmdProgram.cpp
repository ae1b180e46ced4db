#include "flash/AmdCommands.h"
#include "flash/BulkProgramming.h"

namespace {

constexpr uint8_t kDq7 = 0x80;
constexpr uint8_t kDq5 = 0x20; // time limit exceeded
constexpr uint8_t kDq1 = 0x02; // write-to-buffer abort

constexpr uint8_t kAmdResume = 0x30;

// What every way of programming has in common: status is read by comparing data. A chip that is
// busy with the item shows the complement of DQ7, so nothing it shows then equals the data.
class AmdBulk : public OmBulkCommands {
  public:
    AmdBulk(unsigned words, uint8_t notTaken) : OmBulkCommands(words), notTaken_(notTaken) {}

    OmItemState Judge(const OmBoundaryScanBus& bus, const OmProgramBlock& item,
                      uint32_t status) const override {
        const uint32_t wanted = item.back().value;
        OmItemState worst = OmItemState::Done;
        for (int chip = 0; chip < bus.chipCount && worst != OmItemState::Busy; ++chip)
            if (bus.ChipLane(chip, status) != bus.ChipLane(chip, wanted))
                worst = JudgeChip(bus.ChipLaneByte(chip, status), bus.ChipLaneByte(chip, wanted));
        return worst;
    }

    // Nothing but 30h resumes a program operation that B0h in the data of an item has suspended,
    // which a busy chip takes at any address. The resets come first, so that no sequence is pending
    // that 30h could end. One of them can be swallowed as the data of a buffer.
    void Resume(OmBusCycleBatch& batch, const OmProgramBlock& item) const override {
        AppendAbortReset(batch);
        AppendAbortReset(batch);
        batch.AppendWrite(item.front().address, OnAllLanes(kAmdResume));
        batch.AppendRise();
    }

    void Renew(OmBusCycleBatch& batch) const override {
        AppendAbortReset(batch);
        AppendAmdCommand(batch, kAmdReset);
        batch.AppendRise();
    }

  protected:
    static void AppendAbortReset(OmBusCycleBatch& batch) {
        AppendAmdUnlock(batch);
        AppendAmdCommand(batch, kAmdReset);
    }

  private:
    OmItemState JudgeChip(uint8_t status, uint8_t wanted) const {
        if (((status ^ wanted) & kDq7) == 0)
            return OmItemState::Busy; // not a status, or bits that come up at different times
        if (status & notTaken_)
            return OmItemState::NotTaken; // some chips set DQ5 too
        return (status & kDq5) != 0 ? OmItemState::Failed : OmItemState::Busy;
    }

    uint8_t notTaken_; // the status bit that tells so
};

class AmdWords : public AmdBulk {
  public:
    explicit AmdWords(bool bypass) : AmdBulk(1, 0), bypass_(bypass) {}

    void Enter(OmBusCycleBatch& batch) const override {
        if (!bypass_)
            return;
        AppendAmdUnlock(batch);
        AppendAmdCommand(batch, kAmdBypassEntry);
        batch.AppendRise();
    }

    // A busy flash ignores the set-up cycle. In bypass mode, where no unlock cycles follow, it can
    // take data for the next one: then the command behind them is programmed as a word.
    bool CanDoHarm(const OmBoundaryScanBus& bus, const OmProgramBlock& item) const override {
        for (int chip = 0; bypass_ && chip < bus.chipCount; ++chip)
            if (bus.ChipLaneByte(chip, item.front().value) == kAmdProgram)
                return true;
        return false;
    }

    // A set-up cycle may be pending: what it would program is blank.
    void Resume(OmBusCycleBatch& batch, const OmProgramBlock& item) const override {
        if (bypass_) {
            batch.AppendRise();
            batch.AppendWriteData(0xFFFFFFFF);
            AppendLeaveBypass(batch);
        }
        AmdBulk::Resume(batch, item);
    }

    // The flash may have left the mode or not: afterwards it is in it.
    void Renew(OmBusCycleBatch& batch) const override {
        if (bypass_)
            AppendLeaveBypass(batch);
        AmdBulk::Renew(batch);
        Enter(batch);
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

    void Close(OmBusCycleBatch& batch) const override {
        if (bypass_) {
            AppendLeaveBypass(batch);
            batch.Run();
            batch.Clear();
        }
        AmdReset(*batch.bus);
    }

  private:
    void AppendProgram(OmBusCycleBatch& batch, const OmFlashWord& word) const {
        if (!bypass_)
            AppendAmdUnlock(batch);
        AppendAmdCommand(batch, kAmdProgram);
        batch.AppendWrite(word.address, word.value);
    }

    static void AppendLeaveBypass(OmBusCycleBatch& batch) {
        batch.AppendRise();
        batch.AppendWriteData(OnAllLanes(kAmdBypassReset));
        batch.AppendRise();
        batch.AppendWriteData(0);
        batch.AppendRise();
    }

    bool bypass_;
};

class AmdBuffers : public AmdBulk {
  public:
    explicit AmdBuffers(unsigned words) : AmdBulk(words, kDq1) {}

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

    void Close(OmBusCycleBatch& batch) const override {
        AmdAbortReset(batch);
        AmdReset(*batch.bus);
    }

  private:
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
