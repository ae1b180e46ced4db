// The flash report as the HTML page that its window shows.
#pragma once

#include "flash/FlashInfo.h"

#include <string>

std::wstring MakeFlashReportPage(const OmFlashReport& report);
