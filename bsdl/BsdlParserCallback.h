// Who hears what is wrong with a BSDL file.
#pragma once

class OmBsdlParserCallback {
  public:
    virtual ~OmBsdlParserCallback() = default;
    virtual void Error(const char* text) = 0; // a located error
    virtual void Info(const char* text) = 0;  // a line that explains the error before it
};
