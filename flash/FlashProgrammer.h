// The one object through which the windows reach the chain and the flash: a face over the
// connection, what is known of the flash, and the operations on it; of its own it has the setup and
// what comes before an action. Every operation reports its own failure to the user, catches what
// the JTAG layer throws (closing the cable), and answers a bool; callers stop on false without
// another word. GUI thread only.
#pragma once

#include "flash/ChainConformity.h"
#include "flash/FlashConnection.h"
#include "flash/FlashFacts.h"
#include "flash/FlashOperations.h"
#include "setup/DesignSetup.h"

#include <cstdint>
#include <string>
#include <vector>

// What an action needs; a mask.
enum PrepareFlags : unsigned {
    kPrepareNone = 0,
    kPrepareFlashCommands = 1,  // control signals and address pins for flash commands
    kPrepareIdentify = 2,       // find the command set
    kPrepareIdentifyOrFail = 4, // failing to find it stops the action
    kPrepareSectors = 8,        // find the sector map
};

class OmFlashProgrammer : public OmFlashConnection, public OmFlashFacts {
  public:
    // Process-wide, made on first use; loads the connection settings then. Any other object starts
    // with the default settings.
    static OmFlashProgrammer& GetInstance();

    OmFlashProgrammer();
    ~OmFlashProgrammer() override;
    OmFlashProgrammer(const OmFlashProgrammer&) = delete;
    OmFlashProgrammer& operator=(const OmFlashProgrammer&) = delete;

    // --- setup

    // Compares the detected chain with `checked`, and gives its devices of unknown IR length the
    // length that the captured IR bits settle. `errors` forbids to go on, `warnings` asks first.
    // With `accepted` null every IDCODE mismatch is reported; otherwise the warnings come only if a
    // mismatch is not in it, and new ones are entered.
    void CheckChainConformity(OmDesignSetup& checked, std::wstring& errors, std::wstring& warnings,
                              OmAcceptedMismatches* accepted);

    // The same for the current setup, with the boxes; a mismatch that the user accepts is not asked
    // about again until the setup's chain changes.
    bool ConfirmChainConformity();

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

    OmDesignSetup setup;
    OmAcceptedMismatches acceptedMismatches; // IDCODEs that the user has accepted
    bool setupChecked = false;               // the setup has passed the integrity check once

  private:
    void OnOtherConnection() override;

    // --- steps of Prepare
    bool CheckSetup(unsigned flags);
    bool CheckPinCells();
    bool IdentifyFlash(unsigned flags);

    // Runs one operation in the outermost frame.
    template <typename Operation>
    bool Operate(OmProgressCallback* callback, const Operation& operation);
};
