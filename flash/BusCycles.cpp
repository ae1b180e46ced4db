// What the bus does by cycles of its own: the way into EXTEST and the states in which it is left.
// Apart from the rest of the bus, which knows pins and cells and no batch.
#include "flash/BusCycleBatch.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/Exception.h"
#include "platform/Clock.h"

namespace {

constexpr unsigned kSettleMilliseconds = 60;

} // namespace

void OmBoundaryScanBus::EnterExtest() {
    analyzer->ResetTap();
    LoadInstructions(kInstructionPreload);
    DriveBusIdle(); // into the update latches, while the pins still belong to the core logic
    LoadInstructions(kInstructionExtest);
}

void OmBoundaryScanBus::LoadInstructions(int usedDeviceKind) {
    std::vector<int> kinds(layout.deviceCount, kInstructionBypass);
    for (size_t device = 0; device < kinds.size(); ++device)
        if (layout.usedDevices[device])
            kinds[device] = usedDeviceKind;
    // Going on would shift pin levels into whatever register happens to be selected.
    if (!analyzer->LoadInstructions(kinds))
        throw OmException(Translated("ERROR: the instructions of the JTAG chain cannot be loaded: "
                                     "the IR length of a device is unknown."));
}

void OmBoundaryScanBus::DriveBusIdle() {
    OmBusCycleBatch batch(*this);
    batch.SetCE(1);
    batch.SetOE(1);
    batch.SetWE(1);
    batch.SetAddress(0);
    batch.ReleaseData();
    batch.AppendScan(true);
    batch.RunToCompletion();
}

void OmBoundaryScanBus::FlushAndSettle(OmBusCycleBatch& batch) {
    batch.AppendScan(true);
    batch.RunToCompletion();
    batch.Clear();
    GetClock().SleepMilliseconds(kSettleMilliseconds);
}
