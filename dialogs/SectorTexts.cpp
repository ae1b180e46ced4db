#include "dialogs/SectorTexts.h"

#include "platform/Text.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

// As the formats want it.
using Wide = unsigned long long;

int CountHexDigits(uint64_t number) {
    int digits = 1;
    while (number >>= 4)
        ++digits;
    return digits;
}

class RowFormatter {
  public:
    RowFormatter(const OmFlashSectorLayout& layout, uint32_t chips)
        : chips_(chips), digits_(CountHexDigits(layout.GetSizeBytes() * chips - 1)) {}

    void AddGroup(const OmSectorGroup& group) {
        const uint64_t room = kMaxListedSectors - rows.size();
        const uint64_t count = std::min<uint64_t>(group.Count, room);
        for (uint64_t n = 0; n < count; ++n) {
            rows.push_back(FormatRow(group.Size));
            start_ += uint64_t{group.Size} * chips_;
        }
    }

    std::vector<std::wstring> rows;

  private:
    std::wstring FormatRow(uint32_t size) const {
        const Wide last = start_ + uint64_t{size} * chips_ - 1;
        std::wstring row =
            OmFormat(L"%2u) %0*llXh - %0*llXh, ", static_cast<unsigned>(rows.size() + 1), digits_,
                     static_cast<Wide>(start_), digits_, last);
        if (chips_ > 1)
            row += OmFormat(L"%u x ", static_cast<unsigned>(chips_));
        return row + OmFormat(L"%u", size);
    }

    const uint64_t chips_;
    const int digits_;
    uint64_t start_ = 0;
};

constexpr wchar_t kIndent[] = L"       ";

// The total, underlined; the rule grows up to three digits.
std::wstring FormatTotal(Wide count) {
    const auto number = static_cast<unsigned>(std::min<Wide>(count, UINT32_MAX));
    const std::wstring total = OmFormat(
        TranslatedPlural("%llu sectors total", "%llu sectors total", number).c_str(), count);
    const size_t room = total.size() - std::to_wstring(count).size() + 3;
    std::wstring rule(std::min(total.size(), room), L'-');
    rule.resize(room, L' ');
    return kIndent + total + L'\n' + kIndent + rule + L'\n';
}

} // namespace

std::wstring FormatSectorGroup(const OmSectorGroup& group) {
    return TranslatedFormat("%u x %u Bytes", group.Count, group.Size);
}

std::vector<std::wstring> FormatSectorRows(const OmFlashSectorLayout& layout, uint32_t chips) {
    RowFormatter formatter(layout, chips);
    for (const OmSectorGroup& group : layout.groups)
        formatter.AddGroup(group);
    return std::move(formatter.rows);
}

std::wstring FormatUnlistedNote(const OmFlashSectorLayout& layout) {
    const Wide count = layout.GetSectorCount();
    if (count <= kMaxListedSectors)
        return {};
    return TranslatedFormat("Only the first %u of %llu sectors are listed.", kMaxListedSectors,
                            count);
}

std::wstring FormatSectorTable(const OmFlashSectorLayout& layout) {
    if (layout.IsEmpty())
        return kIndent + Translated("(no sectors defined)");
    std::wstring table = FormatTotal(layout.GetSectorCount());
    for (const std::wstring& row : FormatSectorRows(layout, 1))
        table += row + L'\n';
    return table + FormatUnlistedNote(layout);
}

std::wstring FormatSelectedCount(size_t count) {
    const auto number = static_cast<unsigned>(count);
    return OmFormat(TranslatedPlural("1 sector selected", "%u sectors selected", number).c_str(),
                    number);
}
