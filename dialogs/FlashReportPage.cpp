#include "dialogs/FlashReportPage.h"

#include "platform/Text.h"

namespace {

constexpr wchar_t kTableOpening[] =
    L"<table border=0 cellspacing=1 cellpadding=4 bgcolor=#d0cdbc>\n";

std::wstring WithLineBreaks(const std::wstring& text) {
    std::wstring html;
    for (const wchar_t character : text)
        html += character == L'\n' ? std::wstring(L"<br>") : std::wstring(1, character);
    return html;
}

std::wstring MakeCell(const std::wstring& html) {
    return L"<td width=120 align=center>" + html + L"</td>";
}

std::wstring MakeHeading(const OmReportRow& row) {
    std::wstring html =
        L"<tr bgcolor=#ffffff><td width=270 align=center><b>" + row.label + L"</b></td>";
    for (const std::wstring& value : row.values)
        html += MakeCell(L"<b>" + value + L"</b>");
    return html + L"</tr>\n";
}

// Table rows with alternating background, which goes on from table to table.
class RowWriter {
  public:
    std::wstring Write(const OmReportRow& row) {
        std::wstring cells;
        for (const std::wstring& value : row.values)
            cells += MakeCell(WithLineBreaks(value));
        return WriteCells(row.label, cells);
    }

    std::wstring Write(const std::vector<OmReportRow>& rows) {
        std::wstring html;
        for (const OmReportRow& row : rows)
            html += Write(row);
        return html;
    }

    std::wstring WriteCells(const std::wstring& label, const std::wstring& cells) {
        const std::wstring colour = shaded_ ? L"#f0f0f0" : L"#ffffff";
        shaded_ = !shaded_;
        return L"<tr bgcolor=" + colour + L"><td width=270>" + label + L"</td>" + cells +
               L"</tr>\n";
    }

  private:
    bool shaded_ = true;
};

// One cell across all chips.
std::wstring MakeCommandSetCell(const OmFlashReport& report) {
    const std::wstring& name = report.commandSet.values.front();
    return OmFormat(L"<td colspan=%d align=center>",
                    static_cast<int>(report.heading.values.size())) +
           (report.commandSetKnown ? name : L"<font color=\"#ce0022\">" + name + L"</font>") +
           L"</td>";
}

} // namespace

std::wstring MakeFlashReportPage(const OmFlashReport& report) {
    RowWriter rows;
    std::wstring html = L"<html><body><center>\n";
    html += kTableOpening + MakeHeading(report.heading);
    html += rows.WriteCells(report.commandSet.label, MakeCommandSetCell(report));
    html += rows.Write(report.chips) + L"</table>\n";
    if (!report.cfi.empty())
        html += L"<br><br>" + report.cfiTitle + L"\n" + kTableOpening + rows.Write(report.cfi) +
                L"</table>\n";
    return html + L"</center></body></html>";
}
