// The man page and the completion know every command and option that the help pages know.
#include "cli/OptionParser.h"
#include "data/DataFormats.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

namespace {

std::string ShowHelp(const char* command) {
    std::vector<const char*> arguments{"velflash-cli"};
    if (command)
        arguments.push_back(command);
    arguments.push_back("--help");
    std::ostringstream out;
    ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(), out, out);
    return out.str();
}

// Long options of the lines that describe one.
std::set<std::string> GetOptions(const char* command) {
    std::set<std::string> options;
    const std::string help = ShowHelp(command);
    const std::regex line("\n  (?:-[a-z],)?(--[a-z-]+)");
    for (std::sregex_iterator match(help.begin(), help.end(), line), end; match != end; ++match)
        options.insert((*match)[1]);
    return options;
}

// As the page has it: a minus sign is escaped there.
std::string Escape(const std::string& text) {
    return std::regex_replace(text, std::regex("-"), R"(\-)");
}

// What the shell offers after `line`, whose last word is the one to complete.
std::string Complete(const std::string& line) {
    const TemporaryFolder folder;
    folder.Write("script", "_init_completion() {\n"
                           "  words=(\"${COMP_WORDS[@]}\") cword=$COMP_CWORD split=false\n"
                           "  cur=${words[cword]} prev=${words[cword - 1]}\n"
                           "}\n"
                           "_filedir() { COMPREPLY=(FILE \"$@\"); }\n"
                           "source '" OM_COMPLETION "'\n"
                           "COMP_WORDS=(" +
                               line +
                               ")\n"
                               "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                               "_velflash_cli\n"
                               "echo \" ${COMPREPLY[*]} \"\n");
    const std::string command =
        "bash '" + folder.Path("script") + "' > '" + folder.Path("out") + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return ReadWholeFile(folder.Path("out"));
}

bool Holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(CliDocumentation, ManPageKnowsEveryCommandAndOption) {
    const std::string page = ReadWholeFile(OM_MAN_PAGE);
    for (const std::string& option : GetOptions(nullptr))
        EXPECT_TRUE(Holds(page, Escape(option))) << option;
    for (const OmCommand& command : GetCommands()) {
        const std::string name = Escape(command.name);
        EXPECT_TRUE(Holds(page, "\n.B " + name + "\n") || Holds(page, "\n.BI " + name + " \""))
            << command.name;
        for (const std::string& option : GetOptions(command.name))
            EXPECT_TRUE(Holds(page, Escape(option))) << command.name << " " << option;
    }
}

TEST(CliDocumentation, CompletionKnowsEveryCommandAndItsOptions) {
    const std::string commands = Complete("velflash-cli ''");
    for (const OmCommand& command : GetCommands()) {
        EXPECT_TRUE(Holds(commands, std::string(" ") + command.name + " ")) << command.name;
        const std::string offered = Complete(std::string("velflash-cli ") + command.name + " --");
        std::set<std::string> options = GetOptions(command.name);
        options.merge(GetOptions(nullptr));
        for (const std::string& option : options)
            EXPECT_TRUE(Holds(offered, " " + option + " ")) << command.name << " " << option;
    }
}

TEST(CliDocumentation, CompletionKnowsValuesAndFiles) {
    struct {
        const char* line;
        const char* offered;
    } const cases[] = {
        {"velflash-cli -c j", " jlink jlink-ip \n"},
        {"velflash-cli --format ''", " srec hex raw \n"},
        {"velflash-cli program b.velflash f.bin --erase n", " needed none \n"},
        {"velflash-cli -f ''", "  \n"},
        {"velflash-cli -c ft2232 check ''", " FILE velflash \n"},
        {"velflash-cli program b.velflash ''", " FILE \n"},
        {"velflash-cli bsdl ''", " FILE @(bsd|bsdl|bsm) \n"},
        {"velflash-cli chain ''", "  \n"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(Complete(c.line), c.offered) << c.line;
}

TEST(CliDocumentation, ManualAndCompletionKnowEveryFormat) {
    const std::string offered = Complete("velflash-cli --format ''");
    const std::string manual = ReadWholeFile(OM_MAN_PAGE);
    const std::string formats = manual.substr(manual.find(".BI \\-\\-format"), 200);
    for (const OmDataFormat& format : GetDataFormats()) {
        EXPECT_TRUE(Holds(offered, std::string(" ") + format.name + " ")) << format.name;
        EXPECT_TRUE(Holds(formats, format.name)) << format.name;
    }
}

} // namespace
