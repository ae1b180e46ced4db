#include "jtag/ChainAnalyzer.h"

#include "jtag/IdcodeLayout.h"
#include "jtag/Log.h"

#include <algorithm>

namespace {

// The longest filler bounds the chain that can be found: its register bits must push out no more
// than the filler pushes in.
constexpr size_t kMaxFillerLength = 4096;
constexpr size_t kFirstDrFillerLength = 256;
constexpr size_t kFirstIrFillerLength = 64;

// Far beyond the instruction registers of any chain that can be found.
constexpr uint64_t kMaxChainIrBits = 1 << 20;

constexpr size_t kFlatLineBits = 500;

OmBitVector WithFiller(const OmBitVector& marker, size_t length, uint8_t value) {
    OmBitVector bits = marker;
    AppendBits(bits, length, value);
    return bits;
}

// A marker at index 0 would be a chain without a register: TDI shorted to TDO.
bool IsChainEnd(ptrdiff_t markerPosition) {
    return markerPosition >= 1;
}

bool AllEqual(std::span<const uint8_t> bits, uint8_t value) {
    return std::all_of(bits.begin(), bits.end(), [value](uint8_t bit) { return bit == value; });
}

bool HasFlatTail(const OmBitVector& received) {
    OmLog(L"Checking for all bits are either ones or zeros...\n");
    if (!AllEqual(std::span(received).last(kFlatLineBits), received.back()))
        return false;
    OmLog(L"Last %d bits we received are either only ones or only zeros\n",
          static_cast<int>(kFlatLineBits));
    return true;
}

void ScanLogged(OmJtagHAL& hal, const OmBitVector& sent, OmBitVector& received) {
    hal.ResetTap();
    OmLog(L"TAP reset\n");
    OmLog(L"Scan DR...\nBits to be shifted in:\n");
    OmLogBits(sent);
    hal.ScanDR(sent, &received, kScanFromIdle, kScanToIdle);
    OmLog(L"Bits shifted out:\n");
    OmLogBits(received);
}

// Pushes the marker through the data registers, ever longer fillers after it. Returns its index in
// the last `received`; a dead TDO line ends the search early.
ptrdiff_t FindDrMarker(OmJtagHAL& hal, OmBitVector& received) {
    const OmBitVector marker = BitsFromText("000011111111");
    ptrdiff_t position = -1;
    bool checkedTail = false;
    for (size_t length = kFirstDrFillerLength; length <= kMaxFillerLength; length *= 2) {
        ScanLogged(hal, WithFiller(marker, length, 0), received);
        position = FindBits(received, marker);
        if (IsChainEnd(position)) {
            OmLog(L"End marker found\n");
            break;
        }
        if (received.size() > kFlatLineBits && !checkedTail) {
            checkedTail = true;
            if (HasFlatTail(received))
                break;
        }
    }
    return position;
}

enum class AllOnesGroup { IsIdcode, EndsWalk };

// The registers in the order in which they came out. False if a 1, which opens an IDCODE, has fewer
// than 32 bits left.
bool CollectRegisters(const OmBitVector& received, AllOnesGroup allOnes,
                      std::vector<OmBitVector>& registers) {
    const std::span bits(received);
    for (size_t i = 0; i < bits.size();) {
        if (bits[i] == 0) {
            OmLog(L"BYPASS register\n");
            registers.push_back({0});
            ++i;
            continue;
        }
        OmLog(L"IDCODE register\n");
        if (i + kIdcodeBits > bits.size())
            return false;
        const auto group = bits.subspan(i, kIdcodeBits);
        if (allOnes == AllOnesGroup::EndsWalk && AllEqual(group, 1))
            return true;
        registers.emplace_back(group.begin(), group.end());
        OmLogBits(registers.back());
        i += kIdcodeBits;
    }
    return true;
}

// What came out first stands nearest TDO, and so last in the chain.
bool CollectChain(const OmBitVector& received, AllOnesGroup allOnes,
                  std::vector<OmBitVector>& chain) {
    chain.clear();
    const bool whole = CollectRegisters(received, allOnes, chain);
    std::reverse(chain.begin(), chain.end());
    return whole;
}

bool ReportNoChain() {
    OmLog(L"NO JTAG chain found\n");
    return false;
}

bool HoldsBothLevels(const OmBitVector& received) {
    const auto contains = [&received](uint8_t value) {
        return std::find(received.begin(), received.end(), value) != received.end();
    };
    if (contains(1) && contains(0)) {
        OmLog(L"Received bits have both ones and zeros\n");
        return true;
    }
    OmLog(L"Received bits are either only ones or only zeros\n");
    return false;
}

// JEDEC manufacturer field of an IDCODE (IEEE 1149.1, 12.1.1): bits 1 to 11.
bool IsAtmelIdcode(const OmBitVector& entry) {
    if (entry.size() != kIdcodeBits)
        return false;
    return BitsToText(OmBitVector(entry.begin() + 1, entry.begin() + 12)) == "00000011111";
}

// Some ATmega devices mask TDI while IDCODE is selected, so that the marker never comes back and
// the IDCODE is the last register that can be seen.
bool CheckAtmelBug(const OmBitVector& received, std::vector<OmBitVector>& chain, bool& atmelBug) {
    OmLog(L"JTAG chain NOT found, checking for Atmel ATmega bug...\n");
    if (!HoldsBothLevels(received))
        return ReportNoChain();
    if (!CollectChain(received, AllOnesGroup::EndsWalk, chain))
        return false;
    if (chain.empty())
        return ReportNoChain();
    OmLog(L"Some idcode(s) collected\n");
    if (!IsAtmelIdcode(chain.front()))
        return ReportNoChain();
    OmLog(L"JTAG chain contains buggy Atmel ATmega\n");
    atmelBug = true;
    return true;
}

void AppendInstruction(OmBitVector& bits, const OmChainDeviceIr& device, int kind) {
    if (kind == kInstructionBypass)
        AppendBits(bits, device.irLength, 1); // BYPASS is all ones in every device
    else if (kind >= 1 && kind <= 4)
        AppendBits(bits, device.codes[kind - 1]);
}

} // namespace

OmChainAnalyzer::OmChainAnalyzer(OmCable* cable) {
    SetCable(cable);
}

void OmChainAnalyzer::SetCable(OmCable* cable) {
    hal = cable ? cable->GetJtagHAL() : nullptr;
}

bool OmChainAnalyzer::AnalyzeChain(std::vector<OmBitVector>& chain, bool& atmelBug) {
    OmLog(L"Analyzing the JTAG chain...\n");
    atmelBug = false;
    OmBitVector received;
    const ptrdiff_t position = FindDrMarker(*hal, received);
    if (!IsChainEnd(position))
        return CheckAtmelBug(received, chain, atmelBug);
    received.resize(static_cast<size_t>(position));
    OmLog(L"JTAG chain found, captured DR bits:\n");
    OmLogBits(received);
    if (!CollectChain(received, AllOnesGroup::IsIdcode, chain))
        return false;
    OmLog(L"Chain succesfully analyzed\n");
    return true;
}

// Unlike the data registers, the instruction registers capture a mixed pattern of their own
// (IEEE 1149.1 fixes the two lowest bits to 01), so that here a flat line is judged over the whole
// capture.
bool OmChainAnalyzer::CaptureChainIr(OmBitVector& captured) {
    captured.clear();
    const OmBitVector marker = BitsFromAscii("Tarnwick Ombrine");
    ptrdiff_t position = -1;
    bool checkedAll = false;
    for (size_t length = kFirstIrFillerLength; length <= kMaxFillerLength; length *= 2) {
        hal->ResetTap();
        hal->ScanIR(WithFiller(marker, length, 1), &captured, kScanFromIdle, kScanToIdle);
        position = FindBits(captured, marker);
        if (IsChainEnd(position))
            break;
        if (captured.size() > kFlatLineBits && !checkedAll) {
            checkedAll = true;
            if (AllEqual(captured, captured.front()))
                break;
        }
    }
    if (!IsChainEnd(position))
        return false;
    captured.resize(static_cast<size_t>(position));
    return true;
}

bool OmChainAnalyzer::LoadInstructions(std::span<const int> kinds) {
    if (devices.empty() || kinds.size() != devices.size())
        return false;
    uint64_t length = 0;
    for (const OmChainDeviceIr& device : devices) {
        length += device.irLength;
        if (length > kMaxChainIrBits) // as with an unknown length
            return false;
    }
    OmBitVector bits;
    bits.reserve(static_cast<size_t>(length));
    for (size_t i = devices.size(); i-- > 0;) // what is shifted first ends up nearest TDO
        AppendInstruction(bits, devices[i], kinds[i]);
    OmBitVector ignored;
    hal->ScanIR(bits, &ignored, kScanFromIdle, kScanToIdle);
    return true;
}

void OmChainAnalyzer::ResetTap() {
    hal->ResetTap();
}

void OmChainAnalyzer::ScanDR(const OmBitVector& in, OmBitVector& out) {
    hal->ScanDR(in, &out, kScanFromIdle, kScanToIdle);
}

void OmChainAnalyzer::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    hal->ScanVectors(vectors, captured);
}

uint32_t OmChainAnalyzer::GetFrequency() {
    return hal->GetFrequency();
}

void OmChainAnalyzer::GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind,
                                            float* status) {
    hal->GetVectorsPerTransfer(bits, reading, blind, status);
}
