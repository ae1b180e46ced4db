// The kernel port driver behind parallel-port pods: opened by name, one control call, closed. On
// Windows it is a device of that name; elsewhere the same three control codes are served over the
// system's own parallel-port devices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

// Control codes and their records. Addresses are 16-bit port addresses, low byte first.
inline constexpr uint32_t kPortRead = 0x9C402004;      // in: address (2); out: value (1)
inline constexpr uint32_t kPortWrite = 0x9C402008;     // in: address (2), value (1); out: none
inline constexpr uint32_t kPortEnumerate = 0x9C40200C; // in: none; out: LPT1..LPT3 (6), 0 = absent

class OmPortDriver {
  public:
    virtual ~OmPortDriver() = default; // closes

    // One control call. `returned` receives the number of bytes put into `out`. False if the driver
    // refuses the call; `out` is then undefined.
    virtual bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                         size_t& returned) = 0;

    // What a user can do something about, if that was why the last call was refused; otherwise
    // empty.
    virtual std::wstring RefusalReason() const { return {}; }
};

class OmPortDriverOpener {
  public:
    virtual ~OmPortDriverOpener() = default;

    // Opens the driver named `name` ("ompio2"). Null if it is absent or refuses.
    virtual std::unique_ptr<OmPortDriver> Open(const std::string& name) = 0;
};

OmPortDriverOpener& GetPortDriverOpener();

// Installs `opener` (not owned; null restores the host's); returns the one installed before, null
// for the host's.
OmPortDriverOpener* SetPortDriverOpener(OmPortDriverOpener* opener);
