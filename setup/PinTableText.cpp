#include "setup/PinTableText.h"

#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "setup/DevicePins.h"
#include "setup/PinRowTexts.h"
#include "setup/SignalRows.h"

#include <algorithm>
#include <array>
#include <functional>
#include <set>

namespace {

constexpr size_t kMaxListedProblems = 20; // more would not fit a box

using Columns = std::array<std::wstring, kPinColumnCount>;

// A text that stands in one cell: the separators would break the table.
std::wstring MakeCell(std::wstring text) {
    std::ranges::replace_if(
        text, [](wchar_t c) { return c == L'\t' || c == L'\n' || c == L'\r'; }, L' ');
    return text;
}

std::wstring MakeLine(const OmPinRowTexts& texts) {
    std::wstring line = MakeCell(texts.front());
    for (size_t column = 1; column < texts.size(); ++column)
        line += L'\t' + MakeCell(texts[column]);
    return line + L'\n';
}

std::wstring Trim(const std::wstring& text) {
    constexpr wchar_t kWhiteSpace[] = L" \t\r\n";
    const size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::wstring::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::vector<std::wstring> Split(const std::wstring& text, wchar_t separator) {
    std::vector<std::wstring> parts;
    size_t start = 0;
    for (size_t end = 0; end != std::wstring::npos; start = end + 1) {
        end = text.find(separator, start);
        parts.push_back(text.substr(start, end - start));
    }
    return parts;
}

bool EqualsAnyCase(const std::wstring& one, const std::wstring& other) {
    return EqualsIgnoringCase(ToLocal(one), ToLocal(other));
}

// What stands in one line; missing columns are empty, more than there should be are left out.
Columns ReadColumns(const std::wstring& line) {
    Columns columns;
    const std::vector<std::wstring> parts = Split(line, L'\t');
    for (size_t column = 0; column < std::min(parts.size(), columns.size()); ++column)
        columns[column] = Trim(parts[column]);
    return columns;
}

bool IsHeading(const Columns& columns, const char* english) {
    return EqualsAnyCase(columns[0], FromLocal(english)) ||
           EqualsAnyCase(columns[0], Translated(english));
}

// Gives each line that holds something to `read`, which answers what is wrong with it, if anything.
template <typename Read>
std::vector<OmPasteProblem> ReadLines(const std::wstring& text, const char* heading, Read read) {
    std::vector<OmPasteProblem> problems;
    size_t number = 0;
    for (const std::wstring& line : Split(text, L'\n')) {
        ++number;
        const Columns columns = ReadColumns(line);
        if (Trim(line).empty() || IsHeading(columns, heading))
            continue;
        const std::wstring problem = read(columns);
        if (!problem.empty())
            problems.push_back({number, problem});
    }
    return problems;
}

int FindOnlyDevice(const std::vector<OmChainDevice>& devices,
                   const std::function<bool(int)>& isMeant) {
    int found = -1;
    for (int device = 0; device < static_cast<int>(devices.size()); ++device) {
        if (!isMeant(device))
            continue;
        if (found >= 0)
            return -1;
        found = device;
    }
    return found;
}

// -1 if the text means none, or more than one.
int FindDevice(const std::wstring& text, const std::vector<OmChainDevice>& devices) {
    const auto at = [&devices](int device) -> const OmChainDevice& {
        return devices[static_cast<size_t>(device)];
    };
    const auto hasNumber = [&](int device) {
        return EqualsAnyCase(text, FormatDeviceName(devices, device)) ||
               EqualsAnyCase(text, OmFormat(L"Dev%d", device + 1));
    };
    const auto hasEntity = [&](int device) {
        return at(device).bsdl && EqualsAnyCase(text, FromLocal(at(device).bsdl->entity));
    };
    if (text.empty())
        return FindOnlyDevice(devices, [&](int device) { return at(device).bsdl != nullptr; });
    const int numbered = FindOnlyDevice(devices, hasNumber);
    return numbered >= 0 ? numbered : FindOnlyDevice(devices, hasEntity);
}

// Empty if `pin` could be filled in.
std::wstring ReadPin(const std::wstring& deviceText, const std::wstring& pinText,
                     const OmChainPins& chain, OmDevicePin& pin) {
    const int device = FindDevice(deviceText, chain.GetDevices());
    if (device < 0 && deviceText.empty())
        return Translated("the device is missing");
    if (device < 0)
        return TranslatedFormat("there is no device \"%ls\"", deviceText.c_str());
    const OmPinChoice* choice = chain.Get(device).FindByName(pinText);
    if (!choice)
        return TranslatedFormat("%ls has no pin \"%ls\"",
                                FormatDeviceName(chain.GetDevices(), device).c_str(),
                                pinText.c_str());
    pin = {device, choice->portName, choice->portIndex};
    return {};
}

bool ReadLevel(const std::wstring& text, bool& isHigh) {
    isHigh = EqualsAnyCase(text, L"high") || EqualsAnyCase(text, FormatActiveLevel(true));
    return isHigh || EqualsAnyCase(text, L"low") || EqualsAnyCase(text, FormatActiveLevel(false));
}

std::wstring ReadSignal(const Columns& columns, const OmChainPins& chain, int row, SignalPin& pin) {
    if (columns[1].empty() && columns[2].empty())
        return {};
    const std::wstring problem = ReadPin(columns[1], columns[2], chain, pin);
    if (!problem.empty() || GetSignalKind(row) != OmSignalKind::Control ||
        ReadLevel(columns[3], pin.Inverted))
        return problem;
    return Translated("the active level must be \"high\" or \"low\"");
}

bool ReadValue(const std::wstring& text, uint8_t& value) {
    for (const uint8_t candidate : {uint8_t{0}, uint8_t{1}, kBitReleased})
        if (EqualsAnyCase(text, FormatStaticValue(candidate))) {
            value = candidate;
            return true;
        }
    return false;
}

std::wstring ReadStatic(const Columns& columns, const OmChainPins& chain, StaticPin& pin) {
    const std::wstring problem = ReadPin(columns[0], columns[1], chain, pin);
    if (!problem.empty())
        return problem;
    pin.Note = columns[3];
    return ReadValue(columns[2], pin.Value) ? std::wstring()
                                            : Translated("the pin value must be 0, 1 or Z");
}

bool IsSamePin(const OmDevicePin& one, const OmDevicePin& other) {
    return one == other;
}

std::wstring ListProblems(const std::vector<OmPasteProblem>& problems) {
    std::wstring text;
    for (size_t i = 0; i < std::min(problems.size(), kMaxListedProblems); ++i)
        text += TranslatedFormat("Line %u: %ls.\n", static_cast<unsigned>(problems[i].line),
                                 problems[i].text.c_str());
    if (problems.size() > kMaxListedProblems)
        text += TranslatedFormat("... and %u more.\n",
                                 static_cast<unsigned>(problems.size() - kMaxListedProblems));
    return text;
}

} // namespace

std::wstring FormatSignalTable(const OmFlashPins& pins, const OmChainPins& chain,
                               const std::vector<int>& rows) {
    std::wstring text;
    for (const int row : rows)
        text += MakeLine(FormatSignalRow(pins, chain, row));
    return text;
}

std::wstring FormatStaticTable(const OmFlashPins& pins, const OmChainPins& chain,
                               const std::vector<int>& rows) {
    std::wstring text;
    for (const int row : rows)
        text += MakeLine(FormatStaticRow(pins.staticPins[static_cast<size_t>(row)], chain));
    return text;
}

OmSignalPaste ParseSignalTable(const std::wstring& text, const OmChainPins& chain) {
    OmSignalPaste paste;
    std::set<int> seen;
    paste.problems = ReadLines(text, ForTranslation("Flash pin"), [&](const Columns& columns) {
        const int row = FindSignalRow(columns[0]);
        if (row < 0)
            return TranslatedFormat("there is no flash pin \"%ls\"", columns[0].c_str());
        SignalPin pin;
        std::wstring problem = ReadSignal(columns, chain, row, pin);
        if (problem.empty() && !seen.insert(row).second)
            problem = TranslatedFormat("%ls stands in a line above already", columns[0].c_str());
        if (problem.empty())
            paste.rows.emplace_back(row, pin);
        return problem;
    });
    return paste;
}

OmStaticPaste ParseStaticTable(const std::wstring& text, const OmChainPins& chain) {
    OmStaticPaste paste;
    paste.problems = ReadLines(text, ForTranslation("JTAG device"), [&](const Columns& columns) {
        StaticPin pin;
        std::wstring problem = ReadStatic(columns, chain, pin);
        const bool isKnown = std::ranges::any_of(
            paste.pins, [&pin](const StaticPin& other) { return IsSamePin(pin, other); });
        if (problem.empty() && isKnown)
            problem = TranslatedFormat("%ls stands in a line above already", columns[1].c_str());
        if (problem.empty())
            paste.pins.push_back(pin);
        return problem;
    });
    return paste;
}

void ApplyPaste(OmFlashPins& pins, const OmSignalPaste& paste) {
    for (const auto& [row, pin] : paste.rows)
        GetSignalPin(pins, row) = pin;
}

void ApplyPaste(OmFlashPins& pins, const OmStaticPaste& paste) {
    for (const StaticPin& pin : paste.pins) {
        const auto present = std::ranges::find_if(
            pins.staticPins, [&pin](const StaticPin& other) { return IsSamePin(pin, other); });
        if (present == pins.staticPins.end())
            pins.staticPins.push_back(pin);
        else
            *present = pin;
    }
}

bool ConfirmPaste(size_t usable, const std::vector<OmPasteProblem>& problems) {
    if (usable == 0) {
        const std::wstring text =
            problems.empty()
                ? Translated("There is no table of pins in the clipboard.")
                : Translated("None of the lines can be used:") + L"\n\n" + ListProblems(problems);
        ShowMessage(text, kWarningBox);
        return false;
    }
    if (problems.empty())
        return true;
    const auto count = static_cast<unsigned>(usable);
    const std::wstring question =
        OmFormat(TranslatedPlural("Do you wish to take %u other line?",
                                  "Do you wish to take %u other lines?", count)
                     .c_str(),
                 count);
    return ShowMessage(Translated("Some lines cannot be used:") + L"\n\n" + ListProblems(problems) +
                           L'\n' + question,
                       kWarningQuestionBox) == OmAnswer::Yes;
}
