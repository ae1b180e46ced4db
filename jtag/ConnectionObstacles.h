// Why a connection may not have come about, in words and with the remedy: what the connection log
// cannot tell, since a vendor's library answers only that it has found or opened nothing.
#pragma once

#include "jtag/ConnectionSettings.h"

#include <string>

// One sentence or more, a paragraph each; empty if nothing stands in the way as far as the machine
// says. Asks for the vendor's library and the USB bus, and opens nothing.
std::wstring DescribeObstacles(const OmConnectionSettings& settings);
