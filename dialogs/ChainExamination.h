// What the chain wizard finds out and says, without its windows: the scan of the chain, and the
// page that tells the result.
#pragma once

#include "jtag/BitVector.h"

#include <span>
#include <string>
#include <vector>

struct OmExaminedChain {
    std::vector<OmBitVector> devices; // from TDI on: 32 bits of IDCODE, or one bit of BYPASS
    OmBitVector irBits;               // captured instruction registers, nearest TDO first
    // The chain was found through the ATmega's fault: whatever comes before its first device could
    // not be seen, and only the user knows it.
    bool beginningHidden = false;
};

// Scans the chain of the present connection and tells what fails. Without devices, nothing was
// found.
OmExaminedChain ExamineConnectedChain();

// What is shown of a device.
struct OmChainRow {
    std::wstring manufacturer; // empty if unknown
    std::wstring idcode;       // hexadecimal digits; empty for a device without an IDCODE
};

std::vector<OmChainRow> DescribeChain(std::span<const OmBitVector> devices);

// The page of the result, an HTML document.
std::wstring MakeChainPage(const std::vector<OmChainRow>& rows, bool beginningHidden);

// Asks how many devices come before `first`.
std::wstring MakePrecedingLabel(const OmChainRow& first);

// Puts devices without an IDCODE at the beginning of the chain.
void InsertPrecedingDevices(std::vector<OmBitVector>& devices, unsigned count);
