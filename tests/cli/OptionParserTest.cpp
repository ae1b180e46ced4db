#include "cli/OptionParser.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

class OptionParser : public ::testing::Test {
  protected:
    // Words of `line` after the program's name.
    const OmParsedLine& Parse(const std::string& line) {
        std::vector<std::string> words{"velflash-cli"};
        std::istringstream stream(line);
        for (std::string word; stream >> word;)
            words.push_back(word);
        std::vector<const char*> arguments;
        for (const std::string& word : words)
            arguments.push_back(word.c_str());
        out_.str("");
        err_.str("");
        parsed_ =
            ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(), out_, err_);
        return parsed_;
    }

    std::string CommandName() const { return parsed_.command ? parsed_.command->name : "none"; }

    OmParsedLine parsed_;
    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(OptionParser, EveryCommandIsFound) {
    struct {
        const char* line;
        const char* command;
    } const cases[] = {
        {"chain", "chain"},
        {"check a.velflash", "check"},
        {"info a.velflash", "info"},
        {"read a.velflash o.bin", "read"},
        {"erase a.velflash", "erase"},
        {"erase a.velflash data.hex", "erase"},
        {"blank-check a.velflash", "blank-check"},
        {"program a.velflash data.hex", "program"},
        {"verify a.velflash data.hex", "verify"},
        {"lock a.velflash --all", "lock"},
        {"unlock a.velflash --sectors 0-3", "unlock"},
        {"reset", "reset"},
        {"bsdl a.bsd", "bsdl"},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(Parse(c.line).exitCode, 0);
        EXPECT_EQ(CommandName(), c.command) << err_.str();
    }
}

TEST_F(OptionParser, ValuesArriveFromEitherSideOfTheCommand) {
    const OmCliOptions& options =
        Parse("-c ft2232 --log program a.velflash d.hex -f 1.5M --serial X -o 0x40000 -e 0-3 "
              "--no-verify -y -q --adaptive")
            .options;
    EXPECT_EQ(CommandName(), "program") << err_.str();
    EXPECT_EQ(options.connection.cable, OmCableType::Ftd2xx);
    EXPECT_EQ(options.connection.frequency, 1500000);
    EXPECT_EQ(options.connection.serial, "X");
    EXPECT_EQ(options.connection.adaptiveClocking, true);
    EXPECT_EQ(options.setupFile, "a.velflash");
    EXPECT_EQ(options.dataFile, "d.hex");
    EXPECT_EQ(options.offset, 0x40000u);
    EXPECT_EQ(options.erase, OmEraseChoice::Sectors);
    EXPECT_EQ(options.sectors, (std::vector<OmSectorRun>{{0, 3}}));
    EXPECT_FALSE(options.verify);
    EXPECT_TRUE(options.yes && options.log && options.quiet);
}

// So that a wrapper's choice can be overruled.
TEST_F(OptionParser, LastOfSeveralCounts) {
    const OmCliOptions& options =
        Parse("-f 1M --serial A chain -f 2M --serial B -y -y -q --yes --adaptive --no-adaptive")
            .options;
    EXPECT_EQ(CommandName(), "chain") << err_.str();
    EXPECT_EQ(options.connection.frequency, 2000000);
    EXPECT_EQ(options.connection.serial, "B");
    EXPECT_TRUE(options.yes && options.quiet);
}

TEST_F(OptionParser, NothingIsChosenWithoutOptions) {
    const OmCliOptions& options = Parse("program a.velflash d.hex").options;
    EXPECT_EQ(options.connection, OmConnectionChoice());
    EXPECT_EQ(options.erase, OmEraseChoice::Automatic);
    EXPECT_TRUE(options.verify);
    EXPECT_FALSE(options.yes || options.log || options.quiet || options.offset);
}

TEST_F(OptionParser, EraseModesHaveNames) {
    struct {
        const char* text;
        OmEraseChoice choice;
    } const cases[] = {{"needed", OmEraseChoice::Needed},
                       {"chip", OmEraseChoice::Chip},
                       {"none", OmEraseChoice::None},
                       {"5", OmEraseChoice::Sectors}};

    for (const auto& c : cases)
        EXPECT_EQ(Parse(std::string("program s d -e ") + c.text).options.erase, c.choice);
}

TEST_F(OptionParser, OutputFormatComesFromOptionOrExtension) {
    EXPECT_EQ(Parse("read s o.hex").options.format, FindDataFormat("hex"));
    EXPECT_EQ(Parse("read s o.hex --format srec").options.format, FindDataFormat("srec"));
    EXPECT_EQ(Parse("read s o --format raw").options.format, FindDataFormat("raw"));
}

TEST_F(OptionParser, WrongLinesAreExplainedAndEndWithTwo) {
    struct {
        const char* line;
        const char* error;
    } const cases[] = {
        {"", "A command is required"},
        {"frob", "not expected: frob"},
        {"check", "SETUP is required"},
        {"program s", "DATA is required"},
        {"chain extra", "not expected: extra"},
        {"chain --frob", "not expected: --frob"},
        {"chain --cabel ft2232", "not expected: --cabel ft2232"},
        {"chain -c none", "velflash-cli: --cable: 'none' is not one of ft2232"},
        {"chain -f fast", "'fast' is not a frequency"},
        {"chain --port 4", "'4' is not 1, 2 or 3"},
        {"read s o.bin --from xyz", "'xyz' is not an offset"},
        {"read s o.bin --size 1F", "'1F' is not a size: decimal, hexadecimal with 0x, or"},
        {"read s o.bin --size 0", "'0' is not a size"},
        {"program s", "velflash-cli program --help tells more."},
        {"frob", "\nvelflash-cli --help tells more."},
        {"read s o.xyz", "'o.xyz' has no extension of a data file; use --format"},
        {"read s o.bin --format elf", "'elf' is not srec, hex or raw"},
        {"program s d -e all", "'all' is not needed, chip, none or a list of sectors"},
        {"program s d --from 0", "not expected: --from 0"},
        {"erase s --offset 10", "--offset: needs a data file"},
        {"erase s d --sectors 1", "DATA: cannot be given together with a part of the flash"},
        {"erase s --sectors 1 --from 0", "cannot be given together with --from and --size"},
        {"lock s", "say which: --all, --sectors, or --from and --size"},
        {"lock s --all --sectors 1", "say which: --all, --sectors, or --from and --size"},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(Parse(c.line).exitCode, 2) << c.line;
        EXPECT_EQ(CommandName(), "none");
        EXPECT_NE(err_.str().find(c.error), std::string::npos) << c.line << "\n" << err_.str();
        EXPECT_EQ(out_.str(), "");
    }
}

TEST_F(OptionParser, HelpIsNoError) {
    EXPECT_EQ(Parse("--help").exitCode, 0);
    EXPECT_EQ(CommandName(), "none");
    for (const OmCommand& command : GetCommands()) {
        EXPECT_NE(out_.str().find(std::string("\n  ") + command.name + " "), std::string::npos)
            << command.name;
    }
    EXPECT_EQ(Parse("program --help").exitCode, 0);
    EXPECT_NE(out_.str().find("--no-verify"), std::string::npos);
}

TEST_F(OptionParser, HelpFitsATerminal) {
    std::vector<std::string> lines{"--help"};
    for (const OmCommand& command : GetCommands())
        lines.push_back(std::string(command.name) + " --help");
    for (const std::string& line : lines) {
        EXPECT_EQ(Parse(line).exitCode, 0) << line;
        std::istringstream text(out_.str());
        for (std::string row; std::getline(text, row);)
            EXPECT_LT(row.size(), 80u) << row;
        EXPECT_EQ(out_.str().find("TEXT REQUIRED"), std::string::npos) << line;
        EXPECT_NE(out_.str().find("--cable"), std::string::npos) << line;
    }
}

TEST_F(OptionParser, VersionIsTheProducts) {
    EXPECT_EQ(Parse("--version").exitCode, 0);
    EXPECT_EQ(out_.str(), "velflash-cli Version 1.3.1, build 1525, Aug 13 2010\n");
}

} // namespace
