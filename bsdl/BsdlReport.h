// The text that the BSDL viewer shows.
#pragma once

#include <string>

class OmBsdlData;

std::string FormatBsdlReport(const OmBsdlData& data);
