#include "flash/AmdCommands.h"

#include "flash/BulkProgramming.h"
#include "flash/CommandAddresses.h"
#include "platform/Translation.h"
#include "setup/DesignSetup.h"

namespace {

const OmCommandAddresses& Addresses(const OmBusCycleBatch& batch) {
    return GetCommandAddresses(batch.bus->addrCmdShift);
}

constexpr uint16_t kCfiCodes[] = {2};

} // namespace

extern constinit const OmCommandSetRow kAmdCommandSet = {
    .words = {OmCommandSet::AmdWord, ForTranslation("AMD (Word-by-Word Prog.)"), kCfiCodes,
              MakeAmdWords},
    .buffers = {OmCommandSet::AmdBuffered, ForTranslation("AMD (Buffered Prog.)"), kCfiCodes,
                MakeAmdBuffers},
    .setupChoice = kCmdSetAmd,
    .hasBypass = true,
    .reset = AmdReset,
    .readIds = AmdReadId,
    .eraseSector = AmdEraseSector,
    .eraseChip = AmdEraseChip,
};

void AppendAmdUnlock(OmBusCycleBatch& batch) {
    batch.AppendWrite(Addresses(batch).unlock1, OnAllLanes(0xAA));
    batch.AppendWrite(Addresses(batch).unlock2, OnAllLanes(0x55));
}

void AppendAmdCommand(OmBusCycleBatch& batch, uint8_t command) {
    batch.AppendWrite(Addresses(batch).unlock1, OnAllLanes(command));
}

void AmdReset(OmBoundaryScanBus& bus) {
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    AppendAmdCommand(batch, kAmdReset);
    batch.AppendRise(true);
    batch.RunToCompletion();
}

void AmdAbortReset(OmBusCycleBatch& batch) {
    AppendAmdUnlock(batch);
    AppendAmdCommand(batch, kAmdReset);
    batch.AppendRise();
    batch.Run();
    batch.Clear();
}

OmFlashIds AmdReadId(OmBoundaryScanBus& bus) {
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    AppendAmdUnlock(batch);
    AppendAmdCommand(batch, kAmdAutoselect);
    batch.SetWE(1);
    batch.SetAddress(0);
    batch.AppendScan(false);
    batch.ReleaseData();
    batch.AppendScan(true);
    const OmFlashIds ids = EnterAndReadIds(batch);
    AmdReset(bus);
    bus.DriveBusIdle();
    return ids;
}
