#include "cli/HtmlText.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr size_t kColumnGap = 2;

using Row = std::vector<std::wstring>;

struct Entity {
    std::wstring_view name;
    wchar_t character;
};

constexpr Entity kEntities[] = {
    {L"&lt;", L'<'}, {L"&gt;", L'>'}, {L"&quot;", L'"'}, {L"&nbsp;", L' '}, {L"&amp;", L'&'}};

std::wstring DecodeEntities(std::wstring_view text) {
    std::wstring decoded;
    while (!text.empty()) {
        const auto* entity = std::ranges::find_if(
            kEntities, [&](const Entity& candidate) { return text.starts_with(candidate.name); });
        const bool found = entity != std::end(kEntities);
        decoded += found ? entity->character : text.front();
        text.remove_prefix(found ? entity->name.size() : 1);
    }
    return decoded;
}

std::wstring Trim(const std::wstring& text) {
    const size_t first = text.find_first_not_of(L" \t\r\n");
    if (first == std::wstring::npos)
        return {};
    return text.substr(first, text.find_last_not_of(L" \t\r\n") - first + 1);
}

// Collects rows; text outside of tables is a row of one cell.
class RowCollector {
  public:
    void AddText(std::wstring_view text) { cell_ += text; }

    void AddTag(std::wstring_view tag) {
        if (tag.starts_with(L"br"))
            BreakLine();
        else if (tag.starts_with(L"tr") || tag.starts_with(L"table"))
            EndLooseText();
        else if (tag.starts_with(L"/td"))
            EndCell();
        else if (tag.starts_with(L"/tr"))
            EndRow();
    }

    std::vector<Row> Finish() {
        EndLooseText();
        return std::move(rows_);
    }

  private:
    // A cell stays on one line; between tables breaks make at most one empty line.
    void BreakLine() {
        if (!row_.empty())
            cell_ += L' ';
        else if (!Trim(cell_).empty() || (!rows_.empty() && !rows_.back().empty()))
            EndLooseLine();
    }

    void EndLooseLine() {
        if (Trim(cell_).empty())
            EndRow();
        else
            EndLine();
    }

    void EndCell() {
        row_.push_back(DecodeEntities(Trim(cell_)));
        cell_.clear();
    }

    void EndRow() {
        rows_.push_back(std::move(row_));
        row_.clear();
        cell_.clear();
    }

    void EndLooseText() {
        if (!Trim(cell_).empty())
            EndLine();
        cell_.clear();
    }

    void EndLine() {
        EndCell();
        EndRow();
    }

    std::vector<Row> rows_;
    Row row_;
    std::wstring cell_;
};

std::vector<Row> CollectRows(std::wstring_view html) {
    RowCollector collector;
    while (!html.empty()) {
        const size_t open = std::min(html.find(L'<'), html.size());
        collector.AddText(html.substr(0, open));
        html.remove_prefix(open);
        const size_t close = std::min(html.find(L'>'), html.size());
        if (!html.empty())
            collector.AddTag(html.substr(1, close - std::min<size_t>(close, 1)));
        html.remove_prefix(std::min(close + 1, html.size()));
    }
    return collector.Finish();
}

std::vector<size_t> MeasureColumns(const std::vector<Row>& rows) {
    std::vector<size_t> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        // The last cell of a row takes what it needs.
        for (size_t column = 0; column + 1 < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    }
    return widths;
}

} // namespace

std::wstring HtmlToText(const std::wstring& html) {
    const std::vector<Row> rows = CollectRows(html);
    const std::vector<size_t> widths = MeasureColumns(rows);
    std::wstring text;
    for (const Row& row : rows) {
        for (size_t column = 0; column < row.size(); ++column) {
            text += row[column];
            if (column + 1 < row.size())
                text.append(widths[column] + kColumnGap - row[column].size(), L' ');
        }
        text += L'\n';
    }
    return text;
}
