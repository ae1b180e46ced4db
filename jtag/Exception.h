// The exception of the JTAG layer: the connection to the chain broke. Thrown by value, caught by
// reference by the outermost flash and connection operations.
#pragma once

#include <string>
#include <utility>

class OmException {
  public:
    explicit OmException(std::wstring text) : message(std::move(text)) {}

    // The system's error number is taken for the caller's convenience and not kept.
    OmException(std::wstring text, unsigned long /*systemError*/) : message(std::move(text)) {}

    virtual ~OmException() = default;
    OmException(const OmException&) = default;
    OmException& operator=(const OmException&) = default;

    virtual const std::wstring& GetText() const { return message; }

    std::wstring message;
};
