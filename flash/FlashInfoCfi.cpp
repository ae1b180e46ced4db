// The decoded values of a CFI query structure (JESD68) as texts.
#include "flash/Cfi.h"
#include "flash/FlashInfo.h"
#include "platform/Text.h"
#include "platform/Translation.h"

namespace {

constexpr unsigned kQueryBase = 0x10; // address of the byte at index 0

struct CodeName {
    unsigned code;
    const char* name;
};

constexpr CodeName kCommandSets[] = {
    {0x0001, ForTranslation("Intel/Sharp Ext")},
    {0x0002, ForTranslation("AMD/Fujitsu Std")},
    {0x0003, ForTranslation("Intel Std")},
    {0x0004, ForTranslation("AMD/Fujitsu Ext")},
    {0x0006, ForTranslation("Winbond Std")},
    {0x0100, ForTranslation("Mitsubishi Std")},
    {0x0101, ForTranslation("Mitsubishi Ext")},
    {0x0102, ForTranslation("Page Write")},
    {0x0200, ForTranslation("Intel Performance Code Command")},
    {0x0210, ForTranslation("Intel Data Command Set")},
};

constexpr CodeName kInterfaces[] = {
    {0, ForTranslation("x8 async")},      {1, ForTranslation("x16 async")},
    {2, ForTranslation("x8/x16 async")},  {3, ForTranslation("x32 async")},
    {4, ForTranslation("x16/x32 async")},
};

template <size_t N>
const char* FindName(const CodeName (&table)[N], unsigned code) {
    for (const CodeName& entry : table)
        if (entry.code == code)
            return entry.name;
    return nullptr;
}

struct CfiRow {
    const char* label;
    size_t index; // the highest byte of the row's fixed place
    std::wstring (*format)(const OmCfiBuffer& cfi, const CfiRow& row);
    const char* unit = nullptr;
};

std::wstring CommandSetText(unsigned code) {
    const char* name = FindName(kCommandSets, code);
    return Translated(name ? name : ForTranslation("Unknown"));
}

std::wstring PrimarySet(const OmCfiBuffer& cfi, const CfiRow& row) {
    return CommandSetText(GetCfiValue(cfi, row.index - 1));
}

std::wstring AlternativeSet(const OmCfiBuffer& cfi, const CfiRow& row) {
    const unsigned code = GetCfiValue(cfi, row.index - 1);
    return code == 0 ? Translated("N/A") : CommandSetText(code);
}

std::wstring Volts(const OmCfiBuffer& cfi, const CfiRow& row) {
    return OmFormat(L"%u.%u V", unsigned{cfi[row.index]} >> 4, unsigned{cfi[row.index]} & 15U);
}

std::wstring VoltsIfAny(const OmCfiBuffer& cfi, const CfiRow& row) {
    return cfi[row.index] == 0 ? Translated("N/A") : Volts(cfi, row);
}

std::wstring PowerOfTwo(unsigned exponent, const char* unit) {
    if (exponent > 31)
        return OmFormat(L"2^%u %ls", exponent, Translated(unit).c_str());
    return OmFormat(L"%u %ls", 1U << exponent, Translated(unit).c_str());
}

std::wstring TypicalTime(const OmCfiBuffer& cfi, const CfiRow& row) {
    return cfi[row.index] == 0 ? Translated("N/A") : PowerOfTwo(cfi[row.index], row.unit);
}

// The maximum is given as a factor of the typical time, four bytes earlier.
std::wstring MaximumTime(const OmCfiBuffer& cfi, const CfiRow& row) {
    const unsigned factor = cfi[row.index];
    const unsigned typical = cfi[row.index - 4];
    return factor == 0 || typical == 0 ? Translated("N/A") : PowerOfTwo(factor + typical, row.unit);
}

std::wstring DeviceSize(const OmCfiBuffer& cfi, const CfiRow& row) {
    return PowerOfTwo(cfi[row.index], ForTranslation("Bytes"));
}

std::wstring Interface(const OmCfiBuffer& cfi, const CfiRow& row) {
    const unsigned code = GetCfiValue(cfi, row.index - 1);
    const char* name = FindName(kInterfaces, code);
    return name ? Translated(name) : TranslatedFormat("Unknown [%u]", code);
}

std::wstring BufferSize(const OmCfiBuffer& cfi, const CfiRow& row) {
    return PowerOfTwo(GetCfiValue(cfi, row.index - 1), ForTranslation("Bytes"));
}

std::wstring Region(const OmCfiBuffer& cfi, size_t index) {
    const unsigned size = GetCfiValue(cfi, index + 2);
    return TranslatedFormat("%u x %u Bytes", GetCfiValue(cfi, index) + 1,
                            size == 0 ? 128U : size * 256);
}

std::wstring Regions(const OmCfiBuffer& cfi, const CfiRow& row) {
    if (cfi[row.index] == 0)
        return L"1";
    std::wstring text;
    for (size_t r = 0; r < cfi[row.index]; ++r)
        text += (r == 0 ? L"" : L",\n") + Region(cfi, kCfiRegions + 4 * r);
    return text;
}

constexpr CfiRow kRows[kCfiRowCount] = {
    {ForTranslation("Primary Command Set"), 4, PrimarySet},
    {ForTranslation("Alternative Command Set"), 8, AlternativeSet},
    {ForTranslation("Vcc Min Program/Erase Voltage"), 11, Volts},
    {ForTranslation("Vcc Max Program/Erase Voltage"), 12, Volts},
    {ForTranslation("Vpp Min Program/Erase Voltage"), 13, VoltsIfAny},
    {ForTranslation("Vpp Max Program/Erase Voltage"), 14, VoltsIfAny},
    {ForTranslation("Typ Timeout per Single Byte/Word Program"), 15, TypicalTime,
     ForTranslation("us")},
    {ForTranslation("Typ Timeout for Multi-Byte Program"), 16, TypicalTime, ForTranslation("us")},
    {ForTranslation("Typ Timeout per Individual Block Erase"), 17, TypicalTime,
     ForTranslation("ms")},
    {ForTranslation("Typ Timeout for Full Chip Erase"), 18, TypicalTime, ForTranslation("ms")},
    {ForTranslation("Max Timeout for Byte/Word Program"), 19, MaximumTime, ForTranslation("us")},
    {ForTranslation("Max Timeout for Multi-Byte Program"), 20, MaximumTime, ForTranslation("us")},
    {ForTranslation("Max Timeout per Individual Block Erase"), 21, MaximumTime,
     ForTranslation("ms")},
    {ForTranslation("Max Timeout for Full Chip Erase"), 22, MaximumTime, ForTranslation("ms")},
    {ForTranslation("Device Size"), 23, DeviceSize},
    {ForTranslation("Flash Device Interface"), 25, Interface},
    {ForTranslation("Max Number of Bytes in Multi-Byte Program"), 27, BufferSize},
    {ForTranslation("Sectors"), kCfiRegionCount, Regions},
};

// The highest byte that a row reads.
size_t LastByte(const OmCfiBuffer& cfi, const CfiRow& row) {
    const bool regions = row.index == kCfiRegionCount && row.index < cfi.size();
    return row.index + (regions ? size_t{4} * cfi[kCfiRegionCount] : 0);
}

} // namespace

std::wstring GetCfiRowLabel(size_t row) {
    return Translated(kRows[row].label);
}

// The extended tables bound the query structure: what lies behind their beginning is not part of
// it, whatever was read there. The command set codes precede every table that counts as one.
std::vector<std::wstring> FormatCfiRows(const OmCfiBuffer& cfi) {
    const uint32_t end = GetCfiTableEnd(cfi);
    std::vector<std::wstring> texts;
    for (const CfiRow& row : kRows) {
        const size_t last = LastByte(cfi, row);
        if (last >= cfi.size() || last + kQueryBase >= end)
            break;
        texts.push_back(row.format(cfi, row));
    }
    return texts;
}
