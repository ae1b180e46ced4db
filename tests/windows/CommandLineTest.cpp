#include "app/CommandLine.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

struct Case {
    const char* what;
    std::vector<std::wstring> arguments;
    OmCommandLine expected;
};

const Case kCases[] = {
    {"nothing", {}, {}},
    {"setup only", {L"a"}, {L"a", L""}},
    {"setup and data", {L"a", L"b"}, {L"a", L"b"}},
    {"third name ends the scan", {L"a", L"b", L"c", L"--help"}, {L"a", L"b", false}},
    {"help before", {L"--help", L"a"}, {L"a", L"", true}},
    {"help between", {L"a", L"-h", L"b"}, {L"a", L"b", true}},
    {"short help", {L"-h"}, {L"", L"", true}},
    {"slash help", {L"/h"}, {L"", L"", true}},
    {"question mark", {L"-?"}, {L"", L"", true}},
    {"slash question mark", {L"/?"}, {L"", L"", true}},
    {"switches are compared exactly", {L"-H", L"--Help"}, {L"-H", L"--Help"}},
    {"empty setup counts as not given", {L"", L"b"}, {L"b", L""}},
    {"paths stay as they are", {L"./x/../a b.velflash"}, {L"./x/../a b.velflash", L""}},
};

} // namespace

TEST(CommandLine, TakesFilesAndSwitchesInOrder) {
    for (const Case& test : kCases) {
        SCOPED_TRACE(test.what);
        EXPECT_EQ(ParseCommandLine(test.arguments), test.expected);
    }
}
