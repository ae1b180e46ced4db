// The one object through which the windows reach the chain and the flash: owns the setup, the
// connection settings, the cable, the analyzer and what was found about the flash. Every operation
// reports its own failure to the user, catches what the JTAG layer throws (closing the cable), and
// answers a bool; callers stop on false without another word. GUI thread only.
#pragma once

#include "flash/ChainConformity.h"
#include "flash/CommandSet.h"
#include "flash/ProgramTimes.h"
#include "flash/Progress.h"
#include "jtag/CableFactory.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/ConnectionSettings.h"
#include "setup/DesignSetup.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class OmBoundaryScanBus;
class OmDataImage;
struct OmFlashReport;
struct OmSectorWork;

// What an action needs; a mask.
enum PrepareFlags : unsigned {
    kPrepareNone = 0,
    kPrepareFlashCommands = 1,  // control signals and address pins for flash commands
    kPrepareIdentify = 2,       // find the command set
    kPrepareIdentifyOrFail = 4, // failing to find it stops the action
    kPrepareSectors = 8,        // find the sector map
};

// Bytes of the image, counted over all chips.
struct OmAddressRange {
    uint32_t start = 0;
    uint32_t size = 0;
};

class OmFlashProgrammer {
  public:
    // Process-wide, made on first use; loads the connection settings then. Any other object starts
    // with the default settings.
    static OmFlashProgrammer& GetInstance();

    OmFlashProgrammer();
    ~OmFlashProgrammer();
    OmFlashProgrammer(const OmFlashProgrammer&) = delete;
    OmFlashProgrammer& operator=(const OmFlashProgrammer&) = delete;

    // --- connection
    bool OpenCable();  // keeps the cable if the settings lead to the same connection
    void CloseCable(); // the next action opens it anew

    // Adaptive clocking hangs a chain that does not return the clock, so the user is asked once.
    bool ConfirmAdaptiveClocking();

    // Takes the chain out of EXTEST; the board's own logic has its pins back.
    bool JtagReset();

    // Both open the cable if there is none.
    bool ExamineChain(std::vector<OmBitVector>& chain, bool& atmelBug);
    bool CaptureChainIr(OmBitVector& bits);

    // Compares the detected chain with `checked`, and gives its devices of unknown IR length the
    // length that the captured IR bits settle. `errors` forbids to go on, `warnings` asks first.
    // With `accepted` null every IDCODE mismatch is reported; otherwise the warnings come only if a
    // mismatch is not in it, and new ones are entered.
    void CheckChainConformity(OmDesignSetup& checked, std::wstring& errors, std::wstring& warnings,
                              OmAcceptedMismatches* accepted);

    // The same for the current setup, with the boxes; a mismatch that the user accepts is not asked
    // about again until the setup's chain changes.
    bool ConfirmChainConformity();

    // --- setup
    void
    SetDesignSetup(const OmDesignSetup& newSetup); // forgets what was found about chain and flash
    bool LoadDesignSetup(const std::string& path); // 8-bit path; false without a message
    bool SaveDesignSetup(const std::string& path); // likewise

    // --- actions; `flags` is an OR of PrepareFlags
    bool Prepare(unsigned flags);
    uint32_t GetFlashSizeBytes() const; // at most FFFFFFFFh

    // These need a Prepare that has succeeded. Whole bus words reach `image`, even where `start` or
    // `size` cut one. What was read stays there on false.
    bool ReadFlash(OmProgressCallback& callback, uint32_t start, uint32_t size, OmDataImage& image);
    bool ProgramFlash(OmProgressCallback& callback, const OmDataImage& image);
    bool VerifyFlash(OmUnitedProgressCallback& callback, const OmDataImage& image);
    bool BlankCheckFlash(OmUnitedProgressCallback& callback,
                         const std::vector<OmAddressRange>& ranges);

    // Sector start offsets in bytes of one chip.
    bool EraseSectors(OmProgressCallback& callback, const OmSectorRange& chipOffsets);
    bool EraseChip(OmProgressCallback& callback);
    bool LockSectors(OmProgressCallback& callback, const OmSectorRange& chipOffsets);
    bool UnlockSectors(OmProgressCallback& callback, const OmSectorRange& chipOffsets);
    bool ConfirmIntelCommandSet();
    bool GetFlashInfo(OmFlashReport& report);

    // Makes the cable for OpenCable; tests put in their own.
    std::function<std::unique_ptr<OmCable>(OmConnectionSettings&)> createCable = CreateCable;

    // --- state, in the order in which it is built up
    bool adaptiveWarningAnswered = false;
    OmDesignSetup setup;
    OmConnectionSettings settings;             // what the user edits
    OmConnectionSettings applied;              // what the present cable was built from
    std::unique_ptr<OmCable> cable;            // null when closed
    std::unique_ptr<OmChainAnalyzer> analyzer; // null until the first open
    OmAcceptedMismatches acceptedMismatches;   // IDCODEs that the user has accepted
    OmCommandSet commandSet = OmCommandSet::Unknown;
    uint32_t bufferBytes = 0;    // write buffer of one chip
    OmProgramTimes programTimes; // as the flash gives them, where it has been asked
    int waitScans = 0;           // proven by programming, for this connection; 0 for none
    bool sectorsValid = false;
    OmFlashSectorLayout sectors; // what the setup or the flash gave; may be empty
    bool setupChecked = false;   // the setup has passed the integrity check once

  private:
    void ReplaceCable();
    bool OpenForAnalysis();

    // --- steps of Prepare
    bool CheckSetup(unsigned flags);
    bool CheckPinCells();
    bool IdentifyFlash(unsigned flags);

    // The opening of every operation: EXTEST, and the flash in read mode.
    void OpenBus(OmBoundaryScanBus& bus);
    void OpenBus(OmBoundaryScanBus& bus, OmCommandSet mode);

    bool EraseEach(OmProgressCallback& callback, const OmSectorWork& work);
    bool SetSectorLocks(OmProgressCallback& callback, const OmSectorRange& chipOffsets, bool lock);

    // The outermost frame of every action: what the JTAG layer throws ends in a box and a closed
    // cable. `callback` may be null.
    bool Guarded(OmProgressCallback* callback, const std::function<bool()>& action);
};
