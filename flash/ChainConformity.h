// Compares the chain on the board with the chain of the setup: shifting vectors made for another
// chain can damage hardware. The dialog flow is OmFlashProgrammer::ConfirmChainConformity.
#pragma once

#include "jtag/BitVector.h"

#include <span>
#include <string>
#include <vector>

class OmBsdlData;
class OmChainDevice;
class OmDesignSetup;

// An IDCODE that does not fit the BSDL data of its device, and that the user lives with.
struct OmAcceptedMismatch {
    OmBitVector idcode;                // as detected
    std::vector<std::string> patterns; // as in the BSDL data

    bool operator==(const OmAcceptedMismatch&) const = default;
};

using OmAcceptedMismatches = std::vector<OmAcceptedMismatch>;

// What was found on the board.
struct OmDetectedChain {
    std::vector<OmBitVector> idcodes; // entry 0 nearest TDI, as AnalyzeChain gives them
    bool atmelBug = false;            // devices nearest TDI are hidden
};

// The captured instruction registers, nearest TDO first, split exactly into the lengths of
// `devices` (the last one is nearest TDO): each begins with 1, 0 (IEEE 1149.1, clause 7.1.1). False
// if there is no device or a length is unknown.
bool IrLengthsMatch(std::span<const OmChainDevice> devices, const OmBitVector& captured);

// `detected` has 32 elements, or 1 for a device in BYPASS; an empty one matches everything.
// `versionOnly` tells that a pattern differs in nothing but the version field, bits 31 to 28.
bool IdcodeMatches(const OmBitVector& detected, const OmBsdlData& bsdl, bool& versionOnly);

// False with a text if the number of devices differs.
bool CheckDeviceCount(const OmDesignSetup& setup, const OmDetectedChain& chain,
                      std::wstring& errors);

// Settles unknown IR lengths from `captured`, then compares all of them. False with a text.
bool CheckIrLengths(OmDesignSetup& setup, const OmBitVector& captured, std::wstring& errors);

// One text for each device whose IDCODE does not fit its BSDL data, in chain order. With
// `accepted`, empty if it holds all of them; new ones are entered. Null reports everything.
std::wstring CheckIdcodes(const OmDesignSetup& setup, const OmDetectedChain& chain,
                          OmAcceptedMismatches* accepted);
