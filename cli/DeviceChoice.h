// Which of several devices that suit a cable --serial and --description mean.
#pragma once

#include "cli/Options.h"

// Completes the settings with what the vendor's library lists. The cables themselves take another
// device where the wanted one is gone, as they should for someone at a window; a production line
// must not program the wrong board. False with a message if there is no device as asked for.
bool ChooseDevice(const OmConnectionChoice& choice, OmConnectionSettings& settings);
