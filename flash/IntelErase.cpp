// Block erase, lock and unlock: a two-cycle command at the block, then polls of the status
// register.

#include "flash/IntelCommands.h"
#include "flash/StatusPoll.h"

namespace {

constexpr unsigned kEraseSeconds = 60;
constexpr unsigned kLockSeconds = 30;

struct BlockCommand {
    uint8_t setUp;
    uint8_t confirm;
    unsigned limitSeconds;
    // What the status of a ready chip makes of the result so far.
    OmFlashResult (*judge)(uint8_t status, OmFlashResult soFar);
};

OmFlashResult JudgeErase(uint8_t status, OmFlashResult soFar) {
    // SR4 and SR5 together tell of a bad command sequence and not of a failed erase.
    if ((status & (kIntelEraseError | kIntelProgramError)) == kIntelEraseError)
        soFar = OmFlashResult::FlashError;
    return status & kIntelBlockLocked ? OmFlashResult::BlockLocked : soFar;
}

OmFlashResult JudgeLock(uint8_t status, OmFlashResult soFar) {
    return status & kIntelProgramError ? OmFlashResult::FlashError : soFar;
}

OmFlashResult JudgeUnlock(uint8_t status, OmFlashResult soFar) {
    return status & kIntelEraseError ? OmFlashResult::FlashError : soFar;
}

constexpr BlockCommand kErase{kIntelEraseSetUp, kIntelConfirm, kEraseSeconds, JudgeErase};
constexpr BlockCommand kLock{kIntelLockSetUp, kIntelLock, kLockSeconds, JudgeLock};
constexpr BlockCommand kUnlock{kIntelLockSetUp, kIntelConfirm, kLockSeconds, JudgeUnlock};

// Each poll pulses OE for one read of the status register.
class StatusRegisterPoll : public OmStatusPoll {
  public:
    StatusRegisterPoll(OmBusCycleBatch& batch, const BlockCommand& command)
        : batch_(batch), command_(command) {}

  protected:
    bool Poll() override {
        batch_.Clear();
        batch_.AppendReadPulse();
        OmCapturedList captured;
        batch_.RunForCapture(captured);
        const OmBoundaryScanBus& bus = *batch_.bus;
        const uint32_t word = bus.DecodeDataWord(captured[0]);
        bool allReady = true;
        for (int chip = 0; chip < bus.chipCount; ++chip) {
            const uint8_t status = bus.ChipLaneByte(chip, word);
            if (status & kIntelReady)
                found = command_.judge(status, found); // a later chip's finding counts
            else
                allReady = false;
        }
        return allReady;
    }

  private:
    OmBusCycleBatch& batch_;
    const BlockCommand& command_;
};

OmFlashResult RunBlockCommand(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                              const BlockCommand& command, uint32_t chipOffset) {
    IntelClearStatus(bus);
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    batch.AppendWrite(bus.ChipOffsetToWord(chipOffset), OnAllLanes(command.setUp));
    batch.AppendRise();
    batch.AppendWriteData(OnAllLanes(command.confirm));
    batch.AppendRise();
    batch.AppendRelease();
    batch.Run();
    const OmFlashResult result =
        StatusRegisterPoll(batch, command).Wait(callback, command.limitSeconds);
    IntelClearStatus(bus);
    IntelReadArray(bus);
    bus.DriveBusIdle();
    return result;
}

} // namespace

OmFlashResult IntelEraseBlock(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                              uint32_t chipOffset) {
    return RunBlockCommand(bus, callback, kErase, chipOffset);
}

OmFlashResult IntelSetBlockLock(OmBoundaryScanBus& bus, OmProgressCallback& callback, bool lock,
                                uint32_t chipOffset) {
    return RunBlockCommand(bus, callback, lock ? kLock : kUnlock, chipOffset);
}

OmFlashResult IntelLockBlock(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                             uint32_t chipOffset) {
    return IntelSetBlockLock(bus, callback, true, chipOffset);
}

OmFlashResult IntelUnlockBlock(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                               uint32_t chipOffset) {
    return IntelSetBlockLock(bus, callback, false, chipOffset);
}
