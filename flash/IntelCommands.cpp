#include "flash/IntelCommands.h"

#include "flash/BulkProgramming.h"
#include "platform/Translation.h"
#include "setup/DesignSetup.h"

namespace {

constexpr uint16_t kCfiCodesOfWords[] = {1, 3};
constexpr uint16_t kCfiCodesOfBuffers[] = {1};

} // namespace

// The family has no command that erases the whole chip.
extern constinit const OmCommandSetRow kIntelCommandSet = {
    .words = {OmCommandSet::IntelStandard, ForTranslation("Intel Std (Word-by-Word Prog.)"),
              kCfiCodesOfWords, MakeIntelWords},
    .buffers = {OmCommandSet::IntelExtended, ForTranslation("Intel Ext (Buffered Prog.)"),
                kCfiCodesOfBuffers, MakeIntelBuffers},
    .setupChoice = kCmdSetIntel,
    .reset = IntelReadArray,
    .readIds = IntelReadId,
    .eraseSector = IntelEraseBlock,
    .setLock = IntelSetBlockLock,
};

void IntelReadArray(OmBoundaryScanBus& bus) {
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    batch.AppendWrite(0, OnAllLanes(kIntelReadArray));
    batch.AppendRise(true);
    batch.RunToCompletion();
}

void IntelClearStatus(OmBoundaryScanBus& bus) {
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    // The command does not look at the address: the address pins stay as the default image has
    // them.
    batch.AppendWriteData(OnAllLanes(kIntelClearStatus));
    batch.AppendRise();
    batch.Run();
}

OmFlashIds IntelReadId(OmBoundaryScanBus& bus) {
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    batch.AppendWrite(0, OnAllLanes(kIntelReadId));
    batch.AppendRise();
    batch.ReleaseData();
    batch.AppendScan(true);
    const OmFlashIds ids = EnterAndReadIds(batch);
    IntelReadArray(bus);
    bus.DriveBusIdle();
    return ids;
}
