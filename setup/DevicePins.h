// What the user can choose from when a signal is connected to a pin of a chain device: its pins
// with their names, package pins and abilities, and what a typed text means. No windows here.
#pragma once

#include "setup/DesignSetup.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// One pin of a device: a port, or one element of a vector port.
struct OmPinChoice {
    std::string portName;
    int32_t portIndex = -1; // -1 for a scalar
    std::string packagePin; // empty if the device's pin map has none
    std::wstring text;      // "AB1 / DATA(3)", as the user sees it
    bool canDrive = false;  // a boundary cell can put a level on it
    bool canSense = false;  // a boundary cell can tell its level
};

// "DATA(3)", and with the package pin in front "AB1 / DATA(3)".
std::wstring FormatPinText(const std::string& packagePin, const std::string& portName,
                           int32_t portIndex);

// Same for all spellings of one pin of a device: names are compared without regard to case.
std::string MakePinKey(std::string_view portName, int32_t portIndex);

// All pins of one device that a signal could be connected to, in the order of the BSDL file.
class OmDevicePins {
  public:
    explicit OmDevicePins(const OmChainDevice& device);

    const std::vector<OmPinChoice>& GetChoices() const { return choices_; }

    // Null for a pin that cannot be chosen.
    const OmPinChoice* Find(std::string_view portName, int32_t portIndex) const;

    // The one pin that `text` names by its package pin, its port and bit ("DATA(3)", "data3") or
    // its whole text, case ignored. Null if there is none or more than one.
    const OmPinChoice* FindByName(const std::wstring& text) const;

    // The same for a text that may not be complete: the only pin that it can become counts too.
    const OmPinChoice* FindByText(const std::wstring& text) const;

    // Indexes of the choices that `text` may be the beginning of; all of them for an empty one.
    std::vector<size_t> Filter(const std::wstring& text) const;

  private:
    // What a typed text is compared with, in lower case.
    struct Spellings {
        std::wstring package;
        std::wstring port;      // "data(3)"
        std::wstring loosePort; // "data3"
        std::wstring whole;     // "ab1 / data(3)"
    };

    void AddPort(const OmBsdlPort& port);
    void AddPin(const std::string& portName, int32_t portIndex);
    void ReadPackagePins(const OmChainDevice& device);
    void ReadAbilities(const OmBsdlData& bsdl);
    void Spell();
    const OmPinChoice* FindOnly(bool (*matches)(const Spellings&, const std::wstring&),
                                const std::wstring& typed) const;

    std::vector<OmPinChoice> choices_;
    std::vector<Spellings> spellings_;                // of each choice
    std::unordered_map<std::string, size_t> indexes_; // by pin key
};

// The pins of every device of a chain, worked out when they are first asked for.
class OmChainPins {
  public:
    // `devices` is not owned and must outlive this; call Forget when it changes.
    explicit OmChainPins(const std::vector<OmChainDevice>& devices) : devices_(devices) {}

    const std::vector<OmChainDevice>& GetDevices() const { return devices_; }

    // `device` must be one of the chain.
    const OmDevicePins& Get(int32_t device) const;

    // Null for a pin that is not connected or cannot be chosen.
    const OmPinChoice* Find(const OmDevicePin& pin) const;

    // "AB1 / DATA(3)"; without the package pin if it is not known.
    std::wstring FormatPin(const OmDevicePin& pin) const;

    void Forget() { pins_.clear(); }

  private:
    const std::vector<OmChainDevice>& devices_;
    mutable std::vector<std::optional<OmDevicePins>> pins_; // by device
};
