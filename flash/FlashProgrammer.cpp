// The setup, what comes before an action, and the way to the operations.
#include "flash/FlashProgrammer.h"

#include "flash/BoundaryScanBus.h"
#include "flash/CfiTimes.h"
#include "flash/CommandSets.h"
#include "flash/Identification.h"
#include "flash/InstructionTable.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "setup/SetupFile.h"

#include <algorithm>
#include <limits>
#include <mutex>

OmFlashProgrammer& OmFlashProgrammer::GetInstance() {
    static OmFlashProgrammer instance;
    static std::once_flag loaded;
    std::call_once(loaded, [] { LoadConnectionSettings(instance.settings); });
    return instance;
}

OmFlashProgrammer::OmFlashProgrammer() = default;

OmFlashProgrammer::~OmFlashProgrammer() = default;

// The write buffer's size stays: it counts only together with a command set that detection has just
// found.
void OmFlashProgrammer::SetDesignSetup(const OmDesignSetup& newSetup) {
    if (setup.irCapture != newSetup.irCapture || setup.devices != newSetup.devices)
        acceptedMismatches.clear();
    setup = newSetup;
    if (analyzer)
        analyzer->devices.clear();
    commandSet = OmCommandSet::Unknown;
    programTimes = OmProgramTimes();
    waitScans = 0;
    sectorsValid = false;
    sectors = OmFlashSectorLayout();
    setupChecked = false;
}

void OmFlashProgrammer::OnOtherConnection() {
    waitScans = 0;
}

bool OmFlashProgrammer::LoadDesignSetup(const std::string& path) {
    const OmBusyCursor busy;
    OmDesignSetup loaded;
    if (!LoadSetupXml(loaded, FromLocal(path)))
        return false;
    SetDesignSetup(loaded);
    return true;
}

bool OmFlashProgrammer::SaveDesignSetup(const std::string& path) {
    const OmBusyCursor busy;
    return SaveSetupXml(setup, FromLocal(path));
}

uint32_t OmFlashProgrammer::GetFlashSizeBytes() const {
    if (setup.ChipCount < 1 || setup.WordSize < 1)
        return 0;
    const uint64_t wordBytes =
        static_cast<uint64_t>(setup.ChipCount) * static_cast<uint64_t>(setup.WordSize);
    const size_t addressBits = std::min<size_t>(setup.addressPins.size(), 32);
    return static_cast<uint32_t>(
        std::min<uint64_t>(wordBytes << addressBits, std::numeric_limits<uint32_t>::max()));
}

bool OmFlashProgrammer::ConfirmIntelCommandSet() {
    if (CanLockSectors(commandSet))
        return true;
    return GetUserInterface().ShowMessage(
               Translated("It seems like the connected flash does not support neither Intel "
                          "Standard (Basic) nor Intel Extended (Scaleable) command set.\n\nIgnore "
                          "this warning and proceed anyway?"),
               Translated("Warning"), kWarningQuestionBox) == OmAnswer::Yes;
}

bool OmFlashProgrammer::Prepare(unsigned flags) {
    return Guarded(nullptr, [this, flags] {
        return CheckSetup(flags) && OpenCable() && ConfirmAdaptiveClocking() &&
               ConfirmChainConformity() && CheckPinCells() && IdentifyFlash(flags);
    });
}

bool OmFlashProgrammer::CheckSetup(unsigned flags) {
    if (!setup.CheckSetupIntegrity(flags, setupChecked))
        return false;
    setupChecked = true;
    return true;
}

// A scratch bus proves that every pin resolves to a boundary cell.
bool OmFlashProgrammer::CheckPinCells() {
    OmBoundaryScanBus bus;
    std::wstring errors;
    if (bus.BuildFromSetup(setup, setup.devices, errors))
        return true;
    GetUserInterface().ShowMessage(errors, Translated("Setup Integrity Check Error"), kWarningBox);
    return false;
}

// Without a sector map the action goes on: the user has been told, and `sectors` is empty.
bool OmFlashProgrammer::IdentifyFlash(unsigned flags) {
    if (analyzer->devices.empty())
        FillInstructionTable(setup.devices, *analyzer);
    OmFlashIdentifier identifier(setup, *analyzer);
    const bool isIdentified =
        !(flags & kPrepareIdentify) || identifier.EnsureCommandSet(commandSet, bufferBytes);
    if (identifier.cfi.read)
        programTimes = FindProgramTimes(identifier.cfi.chips);
    if (!isIdentified && (flags & kPrepareIdentifyOrFail)) {
        ShowMessage(
            Translated("Failed to identify flash command set (or command set is unsupported)."),
            kWarningBox);
        return false;
    }
    if (flags & kPrepareSectors)
        identifier.EnsureSectors(sectors, sectorsValid);
    return true;
}

template <typename Operation>
bool OmFlashProgrammer::Operate(OmProgressCallback* callback, const Operation& operation) {
    return Guarded(callback, [&] {
        OmFlashOperations operations(setup, *analyzer, *this);
        return operation(operations);
    });
}

bool OmFlashProgrammer::ReadFlash(OmProgressCallback& callback, uint32_t start, uint32_t size,
                                  OmDataImage& image) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.Read(callback, {start, size}, image);
    });
}

bool OmFlashProgrammer::ProgramFlash(OmProgressCallback& callback, const OmDataImage& image) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.Program(callback, image);
    });
}

bool OmFlashProgrammer::VerifyFlash(OmUnitedProgressCallback& callback, const OmDataImage& image) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.Verify(callback, image);
    });
}

bool OmFlashProgrammer::BlankCheckFlash(OmUnitedProgressCallback& callback,
                                        const std::vector<OmAddressRange>& ranges) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.BlankCheck(callback, ranges);
    });
}

bool OmFlashProgrammer::EraseSectors(OmProgressCallback& callback,
                                     const OmSectorRange& chipOffsets) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.EraseSectors(callback, chipOffsets);
    });
}

bool OmFlashProgrammer::EraseChip(OmProgressCallback& callback) {
    return Operate(&callback,
                   [&](OmFlashOperations& operations) { return operations.EraseChip(callback); });
}

bool OmFlashProgrammer::LockSectors(OmProgressCallback& callback,
                                    const OmSectorRange& chipOffsets) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.SetSectorLocks(callback, chipOffsets, true);
    });
}

bool OmFlashProgrammer::UnlockSectors(OmProgressCallback& callback,
                                      const OmSectorRange& chipOffsets) {
    return Operate(&callback, [&](OmFlashOperations& operations) {
        return operations.SetSectorLocks(callback, chipOffsets, false);
    });
}

bool OmFlashProgrammer::GetFlashInfo(OmFlashReport& report) {
    return Operate(nullptr, [&](OmFlashOperations& operations) {
        operations.MakeReport(report);
        return true;
    });
}
