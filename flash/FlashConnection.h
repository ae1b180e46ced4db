// The one connection to the board: what the user set, the cable that was built from it, and the
// analyzer over it. Part of OmFlashProgrammer; knows nothing of setups and flashes.
#pragma once

#include "jtag/CableFactory.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/ConnectionSettings.h"

#include <functional>
#include <memory>
#include <vector>

class OmProgressCallback;

class OmFlashConnection {
  public:
    OmFlashConnection();
    virtual ~OmFlashConnection();
    OmFlashConnection(const OmFlashConnection&) = delete;
    OmFlashConnection& operator=(const OmFlashConnection&) = delete;

    bool OpenCable();  // keeps the cable if the settings lead to the same connection
    void CloseCable(); // the next action opens it anew

    // Adaptive clocking hangs a chain that does not return the clock, so the user is asked once.
    bool ConfirmAdaptiveClocking();

    // Takes the chain out of EXTEST; the board's own logic has its pins back.
    bool JtagReset();

    // Both open the cable if there is none.
    bool ExamineChain(std::vector<OmBitVector>& chain, bool& atmelBug);
    bool CaptureChainIr(OmBitVector& bits);

    // Makes the cable for OpenCable; tests put in their own.
    std::function<std::unique_ptr<OmCable>(OmConnectionSettings&)> createCable = CreateCable;

    bool adaptiveWarningAnswered = false;
    OmConnectionSettings settings;             // what the user edits
    OmConnectionSettings applied;              // what the present cable was built from
    std::unique_ptr<OmCable> cable;            // null when closed
    std::unique_ptr<OmChainAnalyzer> analyzer; // null until the first open

  protected:
    // The outermost frame of every action: what the JTAG layer throws ends in a box and a closed
    // cable. `callback` may be null.
    bool Guarded(OmProgressCallback* callback, const std::function<bool()>& action);

    // The settings lead elsewhere than before: what was measured in scans does not count any more.
    virtual void OnOtherConnection();

  private:
    void ReplaceCable();
    bool OpenForAnalysis();
};
