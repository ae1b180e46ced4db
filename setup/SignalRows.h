// The flash pins as the rows of one table: CE, OE, WE, A0 to A31, D0 to D31; and what each needs
// from the device pin it is connected to.
#pragma once

#include "setup/DesignSetup.h"

#include <string>

struct OmPinChoice;

inline constexpr int kControlRowCount = 3; // CE, OE, WE
inline constexpr int kBusRowCount = 32;    // of each bus
inline constexpr int kFirstAddressRow = kControlRowCount;
inline constexpr int kFirstDataRow = kFirstAddressRow + kBusRowCount;
inline constexpr int kSignalRowCount = kFirstDataRow + kBusRowCount;

enum class OmSignalKind { Control, Address, Data };

OmSignalKind GetSignalKind(int row);

// "CE", "A31"
std::wstring GetSignalName(int row);

// The row with this name, case ignored; -1 if there is none.
int FindSignalRow(const std::wstring& name);

// The buses must have been padded.
SignalPin& GetSignalPin(OmFlashPins& pins, int row);
const SignalPin& GetSignalPin(const OmFlashPins& pins, int row);

// Makes the address and data pins 32 each, or takes the unconnected ones at their ends away.
void PadBusPins(OmFlashPins& pins);
void StripBusPins(OmFlashPins& pins);

// Why a device pin cannot serve a row, as a sentence for the user; empty if it can. The flash reads
// address and control pins, so they must be driven; data pins must be driven and sensed.
std::wstring FindPinFault(const OmPinChoice& pin, OmSignalKind kind);

// The same for a pin held at `value` (0, 1 or 'Z'): a level must be driven.
std::wstring FindStaticPinFault(const OmPinChoice& pin, uint8_t value);
