#include "flash/BulkCommands.h"

void OmBulkCommands::Open(OmBoundaryScanBus&) const {}

void OmBulkCommands::Enter(OmBusCycleBatch&) const {}

void OmBulkCommands::AppendItemEnd(OmBusCycleBatch&) const {}

void OmBulkCommands::AppendClosing(OmBusCycleBatch&) const {}

bool OmBulkCommands::CanDoHarm(const OmBoundaryScanBus&, const OmProgramBlock&) const {
    return false;
}

void AppendStatusRead(OmBusCycleBatch& batch, int wait) {
    batch.AppendRelease();
    batch.AppendIdle(wait);
    batch.AppendReadPulse();
}

void AppendBlindWait(OmBusCycleBatch& batch, int wait) {
    if (wait <= 0)
        return; // the next item's first scan ends the write
    batch.AppendRise();
    batch.AppendIdle(wait - 1);
}
