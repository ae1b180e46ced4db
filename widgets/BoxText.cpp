#include "widgets/BoxText.h"

#include <algorithm>
#include <vector>

namespace {

constexpr size_t kColumns = 90;
constexpr size_t kMaxLineLength = 8 * kColumns;
constexpr size_t kMaxRows = 36;
constexpr size_t kLastRows = 6; // of a longer text: a question stands at its end
constexpr wchar_t kLeftOut[] = L" ... ";

std::vector<std::wstring> SplitLines(const std::wstring& text) {
    std::vector<std::wstring> lines;
    size_t start = 0;
    for (size_t end; (end = text.find(L'\n', start)) != std::wstring::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    lines.push_back(text.substr(start));
    return lines;
}

std::wstring LeaveOutMiddle(const std::wstring& line) {
    if (line.size() <= kMaxLineLength)
        return line;
    const size_t half = kMaxLineLength / 2;
    return line.substr(0, half) + kLeftOut + line.substr(line.size() - half);
}

// Where the row that begins at `start` ends, the blank at the break included.
size_t FindBreak(const std::wstring& line, size_t start) {
    if (line.size() - start <= kColumns)
        return line.size();
    const size_t blank = line.rfind(L' ', start + kColumns);
    return blank == std::wstring::npos || blank <= start ? start + kColumns : blank + 1;
}

void AppendRows(std::vector<std::wstring>& rows, const std::wstring& line) {
    size_t start = 0;
    do {
        const size_t end = FindBreak(line, start);
        rows.push_back(line.substr(start, end - start));
        start = end;
    } while (start < line.size());
}

void LeaveOutRows(std::vector<std::wstring>& rows) {
    if (rows.size() <= kMaxRows)
        return;
    const auto first = rows.begin() + (kMaxRows - kLastRows);
    rows.erase(first + 1, rows.end() - kLastRows);
    *first = L"...";
}

} // namespace

std::wstring FitIntoBox(const std::wstring& text) {
    std::vector<std::wstring> rows;
    for (const std::wstring& line : SplitLines(text))
        AppendRows(rows, LeaveOutMiddle(line));
    LeaveOutRows(rows);
    std::wstring fitted;
    for (const std::wstring& row : rows)
        fitted += (&row == rows.data() ? L"" : L"\n") + row;
    return fitted;
}
