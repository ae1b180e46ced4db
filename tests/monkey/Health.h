// What must hold in the main window whenever nothing is going on.
#pragma once

#include "app/MainFrame.h"

// Fails the test for each thing that is wrong.
void ExpectHealthy(OmMainFrame& frame);
