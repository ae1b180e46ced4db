// What several windows do with a BSDL file: parse it, compare it with the device, show it.
#pragma once

#include "flash/ChainConformity.h"

#include <wx/string.h>

class wxWindow;

// How a file fits the device.
enum class OmBsdlFit {
    Unreadable,    // the parser refused it, and the user has seen why
    Unknown,       // the device's IDCODE is not known
    Full,          // a pattern of the file matches
    AllButVersion, // bits 31 to 28 differ
    None,
};

// False after showing what the parser says. `data` is then only partly filled.
bool ParseOrShowErrors(wxWindow* parent, const wxString& path, OmBsdlData& data);

// `patterns` receives the IDCODE patterns of the file.
OmBsdlFit TestBsdlFile(wxWindow* parent, const wxString& path, const OmBitVector& idcode,
                       std::vector<std::string>& patterns);

// The pairs of a device and a file that the user took although they do not match.
OmAcceptedMismatches& GetChosenMismatches();

// Opens the file in the user's text editor; false after a message.
bool ViewFile(const wxString& path);
