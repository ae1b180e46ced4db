#include "flash/IntelCommands.h"

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
