#include "flash/FlashIds.h"

#include "flash/BusCycleBatch.h"
#include "flash/CommandAddresses.h"
#include "platform/Clock.h"

namespace {

constexpr unsigned kEntryMilliseconds = 60;

} // namespace

OmFlashIds EnterAndReadIds(OmBusCycleBatch& batch) {
    const OmBoundaryScanBus& bus = *batch.bus;
    batch.RunToCompletion();
    GetClock().SleepMilliseconds(kEntryMilliseconds);
    batch.Clear();
    batch.SetOE(0);
    batch.AppendScan(false);
    batch.SetAddress(GetCommandAddresses(bus.addrCmdShift).identifier);
    batch.AppendScan(true);
    batch.AppendScan(true);
    OmCapturedList captured;
    batch.RunForCapture(captured);
    return {bus.DecodeDataWord(captured[0]), bus.DecodeDataWord(captured[1])};
}
