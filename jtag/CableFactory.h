// Turns connection settings into a live cable, by the table of cables.
#pragma once

#include "jtag/Cable.h"
#include "jtag/ConnectionSettings.h"

#include <memory>

// Null if the cable could not be opened; the connection log has the reason. Writes only
// `settings.ftd2xxIsHighSpeed`.
std::unique_ptr<OmCable> CreateCable(OmConnectionSettings& settings);

// What the user sees for a cable type ("Generic FTDI FT2232"), for translation; null for a value
// out of range.
const char* GetCableLabel(OmCableType type);
