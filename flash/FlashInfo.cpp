#include "flash/FlashInfo.h"

#include "bsdl/Idcode.h"
#include "platform/Text.h"

#include <algorithm>

namespace {

constexpr wchar_t kTableOpening[] =
    L"<table border=0 cellspacing=1 cellpadding=4 bgcolor=#d0cdbc>\n";

// Writes table rows with alternating background.
class RowWriter {
  public:
    explicit RowWriter(std::wstring& html) : html_(html) {}

    void OpenRow(const wchar_t* label) {
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
        name = L"Unknown";
    return OmFormat(L"%02Xh (%ls)", code, name.c_str());
}

void AppendHeader(std::wstring& html, int wordSize, size_t chips) {
    html += L"<tr bgcolor=#ffffff><td width=270 align=center><b>Parameter</b></td>";
    const int bits = wordSize * 8;
    for (int i = 0; i < static_cast<int>(chips); ++i)
        html += OmFormat(L"<td width=120 align=center><b>Chip %d / D%d-D%d</b></td>", i + 1,
                         (i + 1) * bits - 1, i * bits);
    html += L"</tr>\n";
}

template <class Format>
void AppendChipRow(RowWriter& rows, const wchar_t* label, const std::vector<OmChipInfo>& chips,
                   Format format) {
    rows.OpenRow(label);
    for (const OmChipInfo& chip : chips)
        rows.Cell(format(chip));
}

void AppendIdentification(std::wstring& html, RowWriter& rows, const std::wstring& commandSet,
                          const std::vector<OmChipInfo>& chips) {
    rows.OpenRow(L"Detected Command Set");
    html += OmFormat(L"<td colspan=%d align=center>", static_cast<int>(chips.size())) + commandSet +
            L"</td>";
    rows.CloseRow();
    AppendChipRow(rows, L"Manufacturer", chips,
                  [](const OmChipInfo& chip) { return FormatManufacturer(chip.manufacturer); });
    rows.CloseRow();
    AppendChipRow(rows, L"Device Code", chips,
                  [](const OmChipInfo& chip) { return OmFormat(L"%02Xh", chip.device); });
    rows.CloseRow();
    AppendChipRow(rows, L"Common Flash Interface (CFI) Compliant", chips,
                  [](const OmChipInfo& chip) { return chip.cfi.empty() ? L"No" : L"Yes"; });
    rows.CloseRow();
}

void AppendCfiTable(std::wstring& html, RowWriter& rows, const std::vector<OmChipInfo>& chips) {
    std::vector<std::vector<std::wstring>> columns;
    size_t rowCount = 0;
    for (const OmChipInfo& chip : chips) {
        columns.push_back(FormatCfiRows(chip.cfi));
        rowCount = std::max(rowCount, columns.back().size());
    }
    html += L"<br><br>Common Flash Interface (CFI) Information\n";
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
