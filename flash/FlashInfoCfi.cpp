// The decoded values of a CFI query structure (JESD68) as texts.
#include "flash/Cfi.h"
#include "flash/FlashInfo.h"
#include "platform/Text.h"

namespace {

constexpr unsigned kQueryBase = 0x10; // address of the byte at index 0

struct CodeName {
    unsigned code;
    const wchar_t* name;
};

constexpr CodeName kCommandSets[] = {
    {0x0001, L"Intel/Sharp Ext"},
    {0x0002, L"AMD/Fujitsu Std"},
    {0x0003, L"Intel Std"},
    {0x0004, L"AMD/Fujitsu Ext"},
    {0x0006, L"Winbond Std"},
    {0x0100, L"Mitsubishi Std"},
    {0x0101, L"Mitsubishi Ext"},
    {0x0102, L"Page Write"},
    {0x0200, L"Intel Performance Code Command"},
    {0x0210, L"Intel Data Command Set"},
};

constexpr CodeName kInterfaces[] = {
    {0, L"x8 async"},  {1, L"x16 async"},     {2, L"x8/x16 async"},
    {3, L"x32 async"}, {4, L"x16/x32 async"},
};

template <size_t N>
const wchar_t* FindName(const CodeName (&table)[N], unsigned code) {
    for (const CodeName& entry : table)
        if (entry.code == code)
            return entry.name;
    return nullptr;
}

struct CfiRow {
    const wchar_t* label;
    size_t index; // the highest byte of the row's fixed place
    std::wstring (*format)(const OmCfiBuffer& cfi, const CfiRow& row);
    const wchar_t* unit = nullptr;
};

std::wstring CommandSetText(unsigned code) {
    const wchar_t* name = FindName(kCommandSets, code);
    return name ? name : L"Unknown";
}

std::wstring PrimarySet(const OmCfiBuffer& cfi, const CfiRow& row) {
    return CommandSetText(GetCfiValue(cfi, row.index - 1));
}

std::wstring AlternativeSet(const OmCfiBuffer& cfi, const CfiRow& row) {
    const unsigned code = GetCfiValue(cfi, row.index - 1);
    return code == 0 ? L"N/A" : CommandSetText(code);
}

std::wstring Volts(const OmCfiBuffer& cfi, const CfiRow& row) {
    return OmFormat(L"%u.%u V", unsigned{cfi[row.index]} >> 4, unsigned{cfi[row.index]} & 15U);
}

std::wstring VoltsIfAny(const OmCfiBuffer& cfi, const CfiRow& row) {
    return cfi[row.index] == 0 ? L"N/A" : Volts(cfi, row);
}

std::wstring PowerOfTwo(unsigned exponent, const wchar_t* unit) {
    if (exponent > 31)
        return OmFormat(L"2^%u %ls", exponent, unit);
    return OmFormat(L"%u %ls", 1U << exponent, unit);
}

std::wstring TypicalTime(const OmCfiBuffer& cfi, const CfiRow& row) {
    return cfi[row.index] == 0 ? L"N/A" : PowerOfTwo(cfi[row.index], row.unit);
}

// The maximum is given as a factor of the typical time, four bytes earlier.
std::wstring MaximumTime(const OmCfiBuffer& cfi, const CfiRow& row) {
    const unsigned factor = cfi[row.index];
    const unsigned typical = cfi[row.index - 4];
    return factor == 0 || typical == 0 ? L"N/A" : PowerOfTwo(factor + typical, row.unit);
}

std::wstring DeviceSize(const OmCfiBuffer& cfi, const CfiRow& row) {
    return PowerOfTwo(cfi[row.index], L"Bytes");
}

std::wstring Interface(const OmCfiBuffer& cfi, const CfiRow& row) {
    const unsigned code = GetCfiValue(cfi, row.index - 1);
    const wchar_t* name = FindName(kInterfaces, code);
    return name ? name : OmFormat(L"Unknown [%u]", code);
}

std::wstring BufferSize(const OmCfiBuffer& cfi, const CfiRow& row) {
    return PowerOfTwo(GetCfiValue(cfi, row.index - 1), L"Bytes");
}

std::wstring Region(const OmCfiBuffer& cfi, size_t index) {
    const unsigned size = GetCfiValue(cfi, index + 2);
    return OmFormat(L"%u x %u Bytes", GetCfiValue(cfi, index) + 1, size == 0 ? 128U : size * 256);
}

std::wstring Regions(const OmCfiBuffer& cfi, const CfiRow& row) {
    if (cfi[row.index] == 0)
        return L"1";
    std::wstring text;
    for (size_t r = 0; r < cfi[row.index]; ++r)
        text += (r == 0 ? L"" : L",<br>") + Region(cfi, kCfiRegions + 4 * r);
    return text;
}

constexpr CfiRow kRows[kCfiRowCount] = {
    {L"Primary Command Set", 4, PrimarySet},
    {L"Alternative Command Set", 8, AlternativeSet},
    {L"Vcc Min Program/Erase Voltage", 11, Volts},
    {L"Vcc Max Program/Erase Voltage", 12, Volts},
    {L"Vpp Min Program/Erase Voltage", 13, VoltsIfAny},
    {L"Vpp Max Program/Erase Voltage", 14, VoltsIfAny},
    {L"Typ Timeout per Single Byte/Word Program", 15, TypicalTime, L"us"},
    {L"Typ Timeout for Multi-Byte Program", 16, TypicalTime, L"us"},
    {L"Typ Timeout per Individual Block Erase", 17, TypicalTime, L"ms"},
    {L"Typ Timeout for Full Chip Erase", 18, TypicalTime, L"ms"},
    {L"Max Timeout for Byte/Word Program", 19, MaximumTime, L"us"},
    {L"Max Timeout for Multi-Byte Program", 20, MaximumTime, L"us"},
    {L"Max Timeout per Individual Block Erase", 21, MaximumTime, L"ms"},
    {L"Max Timeout for Full Chip Erase", 22, MaximumTime, L"ms"},
    {L"Device Size", 23, DeviceSize},
    {L"Flash Device Interface", 25, Interface},
    {L"Max Number of Bytes in Multi-Byte Program", 27, BufferSize},
    {L"Sectors", kCfiRegionCount, Regions},
};

// The highest byte that a row reads.
size_t LastByte(const OmCfiBuffer& cfi, const CfiRow& row) {
    const bool regions = row.index == kCfiRegionCount && row.index < cfi.size();
    return row.index + (regions ? size_t{4} * cfi[kCfiRegionCount] : 0);
}

} // namespace

const wchar_t* GetCfiRowLabel(size_t row) {
    return kRows[row].label;
}

// The extended tables bound the query structure: what lies behind their beginning is not part of
// it, whatever was read there. The command set codes precede every table.
std::vector<std::wstring> FormatCfiRows(const OmCfiBuffer& cfi) {
    const uint32_t end = GetCfiTableEnd(cfi);
    std::vector<std::wstring> texts;
    for (const CfiRow& row : kRows) {
        const size_t last = LastByte(cfi, row);
        const bool fits = row.index <= 8 || last + kQueryBase < end;
        if (last >= cfi.size() || !fits)
            break;
        texts.push_back(row.format(cfi, row));
    }
    return texts;
}
