// Which page shows the settings of a cable: the windows' half of the table of cables.
#pragma once

#include "jtag/ConnectionSettings.h"

#include <functional>

class OmCablePage;
class wxWindow;

// Makes a page; `recheck` shows it anew.
using OmCablePageMaker = OmCablePage* (*)(wxWindow* parent, std::function<void()> recheck);

// Types that share a page have the same maker; null if a type has none.
OmCablePageMaker FindCablePageMaker(OmCableType type);
