#include "cli/FlashReportText.h"

#include <algorithm>

namespace {

constexpr size_t kColumnGap = 2;

using Line = std::vector<std::wstring>;

void AddLine(std::vector<Line>& lines, const OmReportRow& row) {
    Line& line = lines.emplace_back(Line{row.label});
    for (std::wstring value : row.values) {
        std::ranges::replace(value, L'\n', L' '); // a value stays on its line
        line.push_back(std::move(value));
    }
}

std::vector<Line> CollectLines(const OmFlashReport& report) {
    std::vector<Line> lines;
    AddLine(lines, report.heading);
    AddLine(lines, report.commandSet);
    for (const OmReportRow& row : report.chips)
        AddLine(lines, row);
    if (!report.cfi.empty())
        lines.insert(lines.end(), {Line{}, Line{report.cfiTitle}});
    for (const OmReportRow& row : report.cfi)
        AddLine(lines, row);
    return lines;
}

std::vector<size_t> MeasureColumns(const std::vector<Line>& lines) {
    std::vector<size_t> widths;
    for (const Line& line : lines) {
        widths.resize(std::max(widths.size(), line.size()));
        // The last value of a line takes what it needs.
        for (size_t column = 0; column + 1 < line.size(); ++column)
            widths[column] = std::max(widths[column], line[column].size());
    }
    return widths;
}

} // namespace

std::wstring MakeFlashReportText(const OmFlashReport& report) {
    const std::vector<Line> lines = CollectLines(report);
    const std::vector<size_t> widths = MeasureColumns(lines);
    std::wstring text;
    for (const Line& line : lines) {
        for (size_t column = 0; column < line.size(); ++column) {
            text += line[column];
            if (column + 1 < line.size())
                text.append(widths[column] + kColumnGap - line[column].size(), L' ');
        }
        text += L'\n';
    }
    return text;
}
