#include "app/CommandLine.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

bool IsHelpSwitch(const std::wstring& argument) {
    static constexpr std::array<std::wstring_view, 5> kSwitches = {L"-h", L"/h", L"-?", L"/?",
                                                                   L"--help"};
    return std::find(kSwitches.begin(), kSwitches.end(), argument) != kSwitches.end();
}

} // namespace

OmCommandLine ParseCommandLine(std::span<const std::wstring> arguments) {
    OmCommandLine result;
    for (const std::wstring& argument : arguments) {
        if (IsHelpSwitch(argument))
            result.helpWanted = true;
        else if (result.setupFile.empty())
            result.setupFile = argument;
        else if (result.dataFile.empty())
            result.dataFile = argument;
        else
            break;
    }
    return result;
}
