// The connection log: what the cables and the chain analyzer say of their work. Silent and nearly
// free unless a sink is installed.
#pragma once

#include "jtag/BitVector.h"

#include <string>

class OmLogSink {
  public:
    virtual ~OmLogSink() = default;
    virtual void Write(const std::wstring& text) = 0;
};

// Installs `sink` (not owned; null turns the log off) and returns the one installed before.
OmLogSink* SetLogSink(OmLogSink* sink);

// printf-style. Text of more than 1023 characters is dropped without a sign; so is empty text.
void OmLog(const wchar_t* format, ...);

// Element 0 first, in lines of 32; a line that is followed by another one ends with "+", each line
// with a line feed. An empty vector logs nothing.
void OmLogBits(const OmBitVector& bits);
