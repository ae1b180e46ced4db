// Reads one BSDL file into an OmBsdlData. Scanner and parser hold process-wide state: one parse at
// a time.
#pragma once

#include "bsdl/BsdlParserCallback.h"

#include <string>

class OmBsdlData;

// Collects everything said into one text.
class OmBsdlParserCallbackImpl : public OmBsdlParserCallback {
  public:
    void Error(const char* message) override;
    void Info(const char* message) override;

    std::string text;
};

// True if the file was accepted without an error. A failed parse leaves `data` partly filled; the
// caller throws it away. `callback` may be null.
bool ParseBsdlFile(const char* path, OmBsdlData& data, OmBsdlParserCallback* callback);
