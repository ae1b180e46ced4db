// The flash report as plain text: a line for each row, values in columns.
#pragma once

#include "flash/FlashInfo.h"

#include <string>

std::wstring MakeFlashReportText(const OmFlashReport& report);
