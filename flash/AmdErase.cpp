#include "flash/AmdCommands.h"
#include "flash/CommandAddresses.h"
#include "flash/StatusPoll.h"

#include <vector>

namespace {

constexpr unsigned kSectorSeconds = 60;
constexpr unsigned kChipSeconds = 120;

constexpr uint8_t kDq7 = 0x80; // data polling: erased data, a 1, shows when the erase is over
constexpr uint8_t kDq5 = 0x20; // the chip gave up

// Reads the array at the erased address, one scan a poll, OE held low.
class ErasePoll : public OmStatusPoll {
  public:
    explicit ErasePoll(OmBusCycleBatch& batch)
        : batch_(batch), gaveUp_(static_cast<size_t>(batch.bus->chipCount)) {}

  protected:
    bool Poll() override {
        batch_.Clear();
        batch_.AppendScan(true);
        OmCapturedList captured;
        batch_.RunForCapture(captured);
        const uint32_t word = batch_.bus->DecodeDataWord(captured[0]);
        bool allDone = true;
        for (size_t chip = 0; chip < gaveUp_.size(); ++chip)
            if (!IsDone(chip, batch_.bus->ChipLaneByte(static_cast<int>(chip), word)))
                allDone = false;
        return allDone;
    }

  private:
    // DQ5 counts only when a second read confirms it: DQ7 can come up between the two.
    bool IsDone(size_t chip, uint8_t status) {
        if (status & kDq7)
            return true;
        if (!(status & kDq5))
            return false;
        if (!gaveUp_[chip]) {
            gaveUp_[chip] = true;
            return false;
        }
        found = OmFlashResult::FlashError;
        return true;
    }

    OmBusCycleBatch& batch_;
    std::vector<bool> gaveUp_; // by chip: DQ5 seen once
};

void AppendEraseSetUp(OmBusCycleBatch& batch) {
    batch.SelectForWriting();
    AppendAmdUnlock(batch);
    AppendAmdCommand(batch, kAmdEraseSetUp);
    AppendAmdUnlock(batch);
}

// The batch holds the erase command, and its address is the one to poll.
OmFlashResult RunErase(OmBusCycleBatch& batch, OmProgressCallback& callback,
                       unsigned limitSeconds) {
    batch.AppendRelease();
    batch.SetOE(0);
    batch.AppendScan(false);
    batch.Run();
    const OmFlashResult result = ErasePoll(batch).Wait(callback, limitSeconds);
    AmdReset(*batch.bus);
    batch.bus->DriveBusIdle();
    return result;
}

} // namespace

OmFlashResult AmdEraseSector(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                             uint32_t chipOffset) {
    OmBusCycleBatch batch(bus);
    AppendEraseSetUp(batch);
    batch.AppendWrite(bus.ChipOffsetToWord(chipOffset), OnAllLanes(kAmdEraseSector));
    batch.AppendRise();
    return RunErase(batch, callback, kSectorSeconds);
}

OmFlashResult AmdEraseChip(OmBoundaryScanBus& bus, OmProgressCallback& callback) {
    OmBusCycleBatch batch(bus);
    AppendEraseSetUp(batch);
    AppendAmdCommand(batch, kAmdEraseChip);
    batch.SetWE(1);
    batch.SetAddress(0);
    batch.AppendScan(false);
    return RunErase(batch, callback, kChipSeconds);
}
