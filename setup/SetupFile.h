// The setup file: XML with the extension "velflash" that carries the whole setup, BSDL data
// included.
#pragma once

#include <string>

class OmDesignSetup;

// Writes beside the target and renames. False if the file cannot be written; the old one is then
// untouched.
bool SaveSetupXml(const OmDesignSetup& setup, const std::wstring& path);

// False if the file cannot be read or its chain is damaged; `setup` is then unchanged. Anything
// else that is wrong falls back to its default.
bool LoadSetupXml(OmDesignSetup& setup, const std::wstring& path);
