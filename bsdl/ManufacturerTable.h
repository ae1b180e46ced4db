// Reads the table of JEDEC JEP106 manufacturer codes, a text file:
//
//     [Bank 2]
//     10000110 Silicon Motion
//
// Codes stand as JEP106 prints them, parity first and bit 0 last. Any other line is skipped, so a
// comment needs no mark; but a section that is no bank ends the reading.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

// Looks up a key of 11 characters: the code's seven bits, low bit first, then the four low bits of
// the bank less 1, low bit first: the manufacturer field of an IDCODE from its lowest bit up.
// Reads from the present position of `file`; false if there is no such code.
bool FindManufacturer(std::FILE* file, std::string_view key, std::wstring& name);
