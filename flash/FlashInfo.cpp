#include "flash/FlashInfo.h"

#include "bsdl/Idcode.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

std::wstring FormatManufacturer(const OmChipInfo& chip) {
    std::wstring name;
    if (!LookupManufacturer(chip.manufacturer, name))
        name = Translated("Unknown");
    return OmFormat(L"%02Xh (%ls)", chip.manufacturer, name.c_str());
}

std::wstring FormatDevice(const OmChipInfo& chip) {
    return OmFormat(L"%02Xh", chip.device);
}

std::wstring FormatCompliance(const OmChipInfo& chip) {
    return Translated(chip.cfi.empty() ? ForTranslation("No") : ForTranslation("Yes"));
}

struct ChipRow {
    const char* label;
    std::wstring (*format)(const OmChipInfo& chip);
};

constexpr ChipRow kChipRows[] = {
    {ForTranslation("Manufacturer"), FormatManufacturer},
    {ForTranslation("Device Code"), FormatDevice},
    {ForTranslation("Common Flash Interface (CFI) Compliant"), FormatCompliance},
};

OmReportRow MakeHeading(int wordSize, size_t chips) {
    OmReportRow row{Translated("Parameter"), {}};
    const int bits = wordSize * 8;
    for (int i = 0; i < static_cast<int>(chips); ++i)
        row.values.push_back(
            TranslatedFormat("Chip %d / D%d-D%d", i + 1, (i + 1) * bits - 1, i * bits));
    return row;
}

std::vector<OmReportRow> MakeChipRows(const std::vector<OmChipInfo>& chips) {
    std::vector<OmReportRow> rows;
    for (const ChipRow& chipRow : kChipRows) {
        OmReportRow& row = rows.emplace_back(OmReportRow{Translated(chipRow.label), {}});
        for (const OmChipInfo& chip : chips)
            row.values.push_back(chipRow.format(chip));
    }
    return rows;
}

std::vector<OmReportRow> MakeCfiRows(const std::vector<OmChipInfo>& chips) {
    std::vector<std::vector<std::wstring>> columns;
    size_t rowCount = 0;
    for (const OmChipInfo& chip : chips) {
        columns.push_back(FormatCfiRows(chip.cfi));
        rowCount = std::max(rowCount, columns.back().size());
    }
    std::vector<OmReportRow> rows;
    for (size_t index = 0; index < rowCount; ++index) {
        OmReportRow& row = rows.emplace_back(OmReportRow{GetCfiRowLabel(index), {}});
        for (const std::vector<std::wstring>& column : columns)
            row.values.push_back(index < column.size() ? column[index] : std::wstring());
    }
    return rows;
}

} // namespace

OmFlashReport MakeFlashReport(OmCommandSet commandSet, int wordSize,
                              const std::vector<OmChipInfo>& chips) {
    OmFlashReport report;
    report.heading = MakeHeading(wordSize, chips.size());
    report.commandSet = {Translated("Detected Command Set"), {GetCommandSetName(commandSet)}};
    report.commandSetKnown = commandSet != OmCommandSet::Unknown;
    report.chips = MakeChipRows(chips);
    report.cfiTitle = Translated("Common Flash Interface (CFI) Information");
    report.cfi = MakeCfiRows(chips);
    return report;
}
