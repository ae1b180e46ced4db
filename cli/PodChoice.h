// Which of several pods of a kind --serial and --description mean.
#pragma once

#include "cli/Options.h"

// Completes the settings with what the vendor's library lists. The cables themselves take another
// pod where the wanted one is gone, as they should for someone at a window; a production line must
// not program the wrong board. False with a message if there is no pod as asked for.
bool ChoosePod(const OmConnectionChoice& choice, OmConnectionSettings& settings);
