// A display and a home folder of its own for the life of one test program, so that window tests
// neither see nor disturb the user's desktop and settings, and may run side by side.
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <sys/types.h>

class VirtualDisplay {
  public:
    VirtualDisplay();  // sets the environment; ends the process with a message if it cannot
    ~VirtualDisplay(); // ends the display server
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

  private:
    void PrepareEnvironment();
    void SwitchAnimationsOff() const;
    void StartServer();

    TemporaryFolder home_;
    pid_t server_ = -1;
};
