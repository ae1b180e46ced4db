#include "flash/FlashInfo.h"

#include "bsdl/Idcode.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

constexpr wchar_t kTableOpening[] =
    L"<table border=0 cellspacing=1 cellpadding=4 bgcolor=#d0cdbc>\n";

// Writes table rows with alternating background.
class RowWriter {
  public:
    explicit RowWriter(std::wstring& html) : html_(html) {}

    void OpenRow(const std::wstring& label) {
        html_ += L"<tr bgcolor=";
        html_ += shaded_ ? L"#f0f0f0" : L"#ffffff";
        html_ += L"><td width=270>";
        html_ += label;
        html_ += L"</td>";
        shaded_ = !shaded_;
    }

    void Cell(const std::wstring& text) {
        html_ += L"<td width=120 align=center>" + text + L"</td>";
    }

    void CloseRow() { html_ += L"</tr>\n"; }

  private:
    std::wstring& html_;
    bool shaded_ = true;
};

std::wstring FormatManufacturer(uint8_t code) {
    std::wstring name;
    if (!LookupManufacturer(code, name))
        name = Translated("Unknown");
    return OmFormat(L"%02Xh (%ls)", code, name.c_str());
}

void AppendHeader(std::wstring& html, int wordSize, size_t chips) {
    html += L"<tr bgcolor=#ffffff><td width=270 align=center><b>" + Translated("Parameter") +
            L"</b></td>";
    const int bits = wordSize * 8;
    for (int i = 0; i < static_cast<int>(chips); ++i)
        html += L"<td width=120 align=center><b>" +
                TranslatedFormat("Chip %d / D%d-D%d", i + 1, (i + 1) * bits - 1, i * bits) +
                L"</b></td>";
    html += L"</tr>\n";
}

template <class Format>
void AppendChipRow(RowWriter& rows, const char* label, const std::vector<OmChipInfo>& chips,
                   Format format) {
    rows.OpenRow(Translated(label));
    for (const OmChipInfo& chip : chips)
        rows.Cell(format(chip));
}

void AppendIdentification(std::wstring& html, RowWriter& rows, const std::wstring& commandSet,
                          const std::vector<OmChipInfo>& chips) {
    rows.OpenRow(Translated("Detected Command Set"));
    html += OmFormat(L"<td colspan=%d align=center>", static_cast<int>(chips.size())) + commandSet +
            L"</td>";
    rows.CloseRow();
    AppendChipRow(rows, ForTranslation("Manufacturer"), chips,
                  [](const OmChipInfo& chip) { return FormatManufacturer(chip.manufacturer); });
    rows.CloseRow();
    AppendChipRow(rows, ForTranslation("Device Code"), chips,
                  [](const OmChipInfo& chip) { return OmFormat(L"%02Xh", chip.device); });
    rows.CloseRow();
    AppendChipRow(rows, ForTranslation("Common Flash Interface (CFI) Compliant"), chips,
                  [](const OmChipInfo& chip) {
                      return Translated(chip.cfi.empty() ? ForTranslation("No")
                                                         : ForTranslation("Yes"));
                  });
    rows.CloseRow();
}

void AppendCfiTable(std::wstring& html, RowWriter& rows, const std::vector<OmChipInfo>& chips) {
    std::vector<std::vector<std::wstring>> columns;
    size_t rowCount = 0;
    for (const OmChipInfo& chip : chips) {
        columns.push_back(FormatCfiRows(chip.cfi));
        rowCount = std::max(rowCount, columns.back().size());
    }
    html += L"<br><br>" + Translated("Common Flash Interface (CFI) Information") + L"\n";
    html += kTableOpening;
    for (size_t row = 0; row < rowCount; ++row) {
        rows.OpenRow(GetCfiRowLabel(row));
        for (const std::vector<std::wstring>& column : columns)
            rows.Cell(row < column.size() ? column[row] : std::wstring());
        rows.CloseRow();
    }
    html += L"</table>\n";
}

} // namespace

std::wstring FormatFlashInfo(const std::wstring& commandSet, int wordSize,
                             const std::vector<OmChipInfo>& chips) {
    std::wstring html = L"<html><body><center>\n";
    html += kTableOpening;
    RowWriter rows(html);
    AppendHeader(html, wordSize, chips.size());
    AppendIdentification(html, rows, commandSet, chips);
    html += L"</table>\n";
    const bool anyCfi = std::any_of(chips.begin(), chips.end(),
                                    [](const OmChipInfo& chip) { return !chip.cfi.empty(); });
    if (anyCfi)
        AppendCfiTable(html, rows, chips);
    return html + L"</center></body></html>";
}
