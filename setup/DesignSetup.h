// The whole description of one target: the JTAG chain, which device pin carries which flash signal,
// which pins are held at a level, how the flash array is organised and how it is programmed. A
// value type; holds no state of a running action.
#pragma once

#include "bsdl/BsdlData.h"
#include "jtag/BitVector.h"
#include "setup/SectorLayout.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

// One device of the chain. Owns its BSDL data; copying copies the data.
class OmChainDevice {
  public:
    OmChainDevice() = default;
    OmChainDevice(const OmChainDevice& other);
    OmChainDevice(OmChainDevice&&) = default;
    OmChainDevice& operator=(const OmChainDevice& other);
    OmChainDevice& operator=(OmChainDevice&&) = default;
    ~OmChainDevice() = default;

    // Compares BSDL data by value.
    bool operator==(const OmChainDevice& other) const;

    // Takes the data (null allowed) and where it came from, and resets PinMapping: the data's only
    // mapping, or empty.
    void SetBsdl(std::unique_ptr<OmBsdlData> data, const std::string& path);

    // From the BSDL data, from the IR capture, as entered: the first that is 2 or more; otherwise
    // -1.
    int GetIRLength() const;

    // First code of an instruction. False without BSDL data or without a code.
    bool GetInstructionCode(const char* name, OmBitVector& code) const;

    // One element a boundary cell: the first safe value that is not 'X', 1 if there is none. Empty
    // without BSDL data.
    void GetSafeBsrVector(OmBitVector& vector) const;

    std::unique_ptr<OmBsdlData> bsdl; // may be null
    std::string BsdlFile;             // where the data came from
    std::string PinMapping;           // selected package
    OmBitVector Idcode;               // 32 elements, or empty
    int32_t resolvedIRLen = -1;       // from the IR capture
    int32_t IRLen = -1;               // entered by the user
};

// Where a signal is connected: a pin of a chain device, by BSDL port.
struct OmDevicePin {
    int32_t Device = -1;    // index into the chain; negative: not connected
    std::string PortName;   // compared without regard to case
    int32_t PortIndex = -1; // element of a vector port; -1 for a scalar

    bool IsConnected() const { return Device >= 0; }

    bool operator==(const OmDevicePin& other) const;
};

struct SignalPin : OmDevicePin {
    bool Inverted = false; // between device pin and flash pin; used by CE, OE and WE only

    bool operator==(const SignalPin&) const = default;
};

struct StaticPin : OmDevicePin {
    uint8_t Value = 0; // 0, 1 or 'Z', for as long as an action lasts
    std::wstring Note;

    bool operator==(const StaticPin&) const = default;
};

// The flash signals and the shape of the flash bus: what the boundary-scan bus is built from.
struct OmFlashPins {
    SignalPin ce;
    SignalPin oe;
    SignalPin we;
    std::vector<SignalPin> addressPins; // element n is A<n>
    std::vector<SignalPin> dataPins;    // element n is D<n>
    std::vector<StaticPin> staticPins;
    int32_t ChipCount = -1;    // chips side by side on the data bus, 1 to 4
    int32_t WordSize = -1;     // data width of one chip in bytes: 1, 2, 4
    int32_t AddrCmdShift = -1; // shift of command addresses, 0 to 2

    bool operator==(const OmFlashPins&) const = default;
};

// Selection in the setup; what detection finds is OmCommandSet.
inline constexpr int kCmdSetAuto = 0;
inline constexpr int kCmdSetIntel = 1; // word by word
inline constexpr int kCmdSetAmd = 2;   // word by word

class OmDesignSetup : public OmFlashPins {
  public:
    unsigned GetDeviceCount() const { return static_cast<unsigned>(devices.size()); }

    // An index out of range is a programming error.
    const OmChainDevice& GetDevice(unsigned index) const { return devices[index]; }

    OmChainDevice& GetDevice(unsigned index) { return devices[index]; }

    // Replaces the chain: one device an IDCODE (may be empty), then resolves IR lengths.
    void SetChainDevices(std::span<const OmBitVector> idcodes, const OmBitVector& capture);

    // Works out the IR lengths of devices with neither BSDL data nor an entered length, from
    // `capture`, or from irCapture if that is empty. True if there is exactly one solution and it
    // settles something.
    bool ResolveIRLengths(const OmBitVector& capture);

    // Unconnects every pin and unselects the bus organisation.
    void ClearFlashPins();

    // Whether an action may go on: shows the first error and answers false; otherwise, unless
    // `quiet`, asks about everything odd. Bit 0 of `flags`: the action sends flash commands and
    // needs the full set of pins.
    bool CheckSetupIntegrity(unsigned flags, bool quiet) const;

    // Shows a box and answers false if a device pin carries more than one signal.
    bool CheckPinCollisions() const;

    bool operator==(const OmDesignSetup&) const = default;

    std::vector<OmChainDevice> devices; // index 0 is nearest TDI
    OmBitVector irCapture; // IR bits read when the chain was examined, nearest TDO first
    int32_t CmdSet = kCmdSetAuto;
    bool UseBufferedProg = true;
    bool DontCheckStatus = false;
    bool UseUnlockBypass = false;
    OmFlashSectorLayout sectors; // empty: the map comes from the flash itself
};

// "Dev1 (entity)" for messages: the index plus 1, and the entity name if known.
std::wstring FormatDeviceName(const std::vector<OmChainDevice>& devices, int index);
