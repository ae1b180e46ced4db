#include "cli/OptionParser.h"

#include "cli/Connection.h"
#include "cli/ExitCodes.h"
#include "cli/HelpFormatter.h"
#include "platform/Text.h"
#include "platform/Version.h"

namespace {

using ParseError = CLI::ValidationError;

constexpr char kProgram[] = "velflash-cli";

constexpr char kDescription[] =
    "Programs parallel NOR flash through a board's JTAG chain, with the "
    "setup files of velflash.";

constexpr char kFooter[] =
    "Options may stand before or after the command. Without cable options the connection set in "
    "velflash is used.\n"
    "Exit status: 0 done, 1 failed, 2 wrong command line, 130 stopped by Ctrl+C.";

constexpr char kGeneralHint[] =
    "velflash-cli --help shows the options of all commands: --cable, --frequency, --yes, --log ...";

constexpr char kNumbersHint[] =
    "Offsets are hexadecimal bytes of the whole data bus, with or without 0x; sizes are decimal, "
    "or hexadecimal with 0x; K and M after a decimal number stand for 1024 and 1048576.\n";

constexpr char kAnOffset[] = "an offset: hexadecimal, or decimal with K or M";
constexpr char kASize[] = "a size: decimal, hexadecimal with 0x, or decimal with K or M";

// "--cable" of "-c,--cable".
std::string GetLongName(const std::string& names) {
    return names.substr(names.find(',') + 1);
}

// An option whose text `parse` turns into `target`, or refuses.
template <typename Value, typename Parse>
CLI::Option* AddParsed(CLI::App& app, const std::string& name, Value& target, Parse parse,
                       const std::string& help, const std::string& expected) {
    return app.add_option_function<std::string>(
        name,
        [&target, parse, name, expected](const std::string& text) {
            const auto value = parse(text);
            if (!value)
                throw ParseError(GetLongName(name), "'" + text + "' is not " + expected);
            target = *value;
        },
        help);
}

std::optional<int32_t> ParsePort(const std::string& text) {
    const auto number = ParseSize(text);
    return number && *number <= 3 ? std::optional(static_cast<int32_t>(*number) - 1) : std::nullopt;
}

std::optional<const OmDataFormat*> ParseFormat(const std::string& text) {
    const OmDataFormat* format = FindDataFormat(text);
    return format ? std::optional(format) : std::nullopt;
}

// "srec, hex or raw"
std::string ListFormats() {
    std::string list;
    for (const OmDataFormat& format : GetDataFormats())
        list += (&format == &GetDataFormats().front()  ? ""
                 : &format == &GetDataFormats().back() ? " or "
                                                       : ", ") +
                std::string(format.name);
    return list;
}

void AddConnectionOptions(CLI::App& app, OmConnectionChoice& choice) {
    AddParsed(app, "-c,--cable", choice.cable, FindCable, "Cable: " + ListCableNames(),
              "one of " + ListCableNames())
        ->type_name("NAME");
    AddParsed(app, "-f,--frequency", choice.frequency, ParseFrequency,
              "TCK frequency in Hz; k and M are allowed: 6M",
              "a frequency such as 6000000, 6M or 200k")
        ->type_name("HZ");
    app.add_option("--serial", choice.serial,
                   "Serial number of the pod (number 0 to 3 of a J-Link, id of a Digilent)")
        ->type_name("TEXT");
    app.add_option("--description", choice.description, "Description of an FT2232 or USB-Blaster")
        ->type_name("TEXT");
    AddParsed(app, "--port", choice.lptPort, ParsePort, "Parallel port: 1 to 3", "1, 2 or 3")
        ->type_name("N");
    app.add_option("--server", choice.server, "Host, or host:port, of a J-Link on the network")
        ->type_name("HOST");
    app.add_flag_callback(
        "--adaptive", [&choice] { choice.adaptiveClocking = true; },
        "Adaptive clocking of an FT2232");
    app.add_flag_callback(
        "--no-adaptive", [&choice] { choice.adaptiveClocking = false; },
        "No adaptive clocking, whatever is set in velflash");
}

void AddGeneralOptions(CLI::App& app, OmCliOptions& options) {
    app.add_flag("-y,--yes", options.yes, "Answer every question with Yes; without it, No");
    app.add_flag("-l,--log", options.log, "Show the connection log");
    app.add_flag("-q,--quiet", options.quiet, "Show neither progress nor success");
    app.set_version_flag("--version", "velflash-cli " + ToLocal(kVersionText));
}

void AddFileOptions(CLI::App& app, unsigned uses, OmCliOptions& options) {
    if (uses & kUsesBsdl)
        app.add_option("FILE", options.bsdlFile, "BSDL file")->required();
    if (uses & kUsesSetup)
        app.add_option("SETUP", options.setupFile, "Setup file (*.velflash)")->required();
    if (uses & (kUsesData | kUsesOptionalData))
        app.add_option("DATA", options.dataFile, "Data file: S-record, Intel HEX or raw binary")
            ->required((uses & kUsesData) != 0);
    if (uses & kUsesOutput) {
        app.add_option("OUTPUT", options.outputFile, "File to write")->required();
        AddParsed(app, "--format", options.format, ParseFormat,
                  ListFormats() + "; by default what the extension of OUTPUT says", ListFormats())
            ->type_name("NAME");
    }
}

void AddPlaceOptions(CLI::App& app, unsigned uses, OmCliOptions& options) {
    if (uses & kUsesOffset)
        AddParsed(app, "-o,--offset", options.offset, ParseOffset,
                  "Where the data begins in the flash, instead of its own address", kAnOffset)
            ->type_name("OFFSET");
    if (uses & kUsesRange) {
        AddParsed(app, "--from", options.from, ParseOffset, "First offset; 0 by default", kAnOffset)
            ->type_name("OFFSET");
        AddParsed(app, "--size", options.size, ParseSize,
                  "Number of bytes; up to the end of the flash by default", kASize)
            ->type_name("BYTES");
    }
    if (uses & kUsesSectors)
        AddParsed(app, "-s,--sectors", options.sectors, ParseSectorList,
                  "Sectors by number from 0: 0-3,7", "a list of sectors such as 0-3,7")
            ->type_name("LIST");
    if (uses & kUsesAllSectors)
        app.add_flag("--all", options.allSectors, "All sectors");
}

// "needed", "chip", "none" or a list of sectors.
void SetErase(const std::string& text, OmCliOptions& options) {
    constexpr std::pair<const char*, OmEraseChoice> kNames[] = {{"needed", OmEraseChoice::Needed},
                                                                {"chip", OmEraseChoice::Chip},
                                                                {"none", OmEraseChoice::None}};
    for (const auto& [name, choice] : kNames) {
        if (text == name) {
            options.erase = choice;
            return;
        }
    }
    const auto sectors = ParseSectorList(text);
    if (!sectors)
        throw ParseError("--erase",
                         "'" + text + "' is not needed, chip, none or a list of sectors");
    options.erase = OmEraseChoice::Sectors;
    options.sectors = *sectors;
}

void AddProgramOptions(CLI::App& app, unsigned uses, OmCliOptions& options) {
    if (uses & kUsesErase)
        app.add_option_function<std::string>(
               "-e,--erase", [&options](const std::string& text) { SetErase(text, options); },
               "What to erase first: needed, chip, none, or sectors by number: 0-3,7. By default "
               "the sectors that the data needs, or the chip if its sectors are unknown")
            ->type_name("MODE");
    if (uses & kUsesVerify)
        app.add_flag_callback(
            "--no-verify", [&options] { options.verify = false; },
            "Do not compare the flash with the data");
}

void AddCommand(CLI::App& app, const OmCommand& command, OmParsedLine& line) {
    CLI::App& sub = *app.add_subcommand(command.name, command.help);
    sub.group("Commands");
    sub.fallthrough();
    const bool hasPlace = (command.uses & (kUsesRange | kUsesOffset)) != 0;
    sub.footer((hasPlace ? kNumbersHint : std::string()) + kGeneralHint);
    AddFileOptions(sub, command.uses, line.options);
    AddPlaceOptions(sub, command.uses, line.options);
    AddProgramOptions(sub, command.uses, line.options);
    sub.callback([&line, &command] { line.command = &command; });
}

// What one option alone cannot tell.
void CheckTogether(const OmCommand& command, OmCliOptions& options) {
    const bool inRange = options.from || options.size;
    const bool bySectors = !options.sectors.empty() && options.erase != OmEraseChoice::Sectors;
    if (!options.dataFile.empty() && (inRange || bySectors))
        throw ParseError("DATA", "cannot be given together with a part of the flash");
    if (options.dataFile.empty() && options.offset)
        throw ParseError("--offset", "needs a data file");
    if (bySectors && inRange)
        throw ParseError("--sectors", "cannot be given together with --from and --size");
    if (command.uses & kUsesAllSectors) {
        if (options.allSectors == (inRange || bySectors))
            throw ParseError("--sectors", "say which: --all, --sectors, or --from and --size");
    }
    if ((command.uses & kUsesOutput) && !options.format) {
        options.format = FindDataFormatOfPath(options.outputFile);
        if (!options.format)
            throw ParseError("OUTPUT", "'" + options.outputFile +
                                           "' has no extension of a data file; use --format");
    }
}

std::string JoinWords(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words)
        joined += (joined.empty() ? "" : " ") + word;
    return joined;
}

std::string DescribeFailure(const CLI::App* app, const CLI::Error& error) {
    const auto commands = app->get_subcommands();
    const std::string command = commands.empty() ? "" : commands.front()->get_name() + " ";
    const std::string reason = dynamic_cast<const CLI::ExtrasError*>(&error)
                                   ? "not expected: " + JoinWords(app->remaining(true))
                                   : error.what();
    return OmFormat("%s: %s\n%s %s--help tells more.\n", kProgram, reason.c_str(), kProgram,
                    command.c_str());
}

} // namespace

OmParsedLine ParseCommandLine(int argc, const char* const* argv, std::ostream& out,
                              std::ostream& err) {
    OmParsedLine line;
    CLI::App app(kDescription, kProgram);
    app.formatter(std::make_shared<OmHelpFormatter>());
    app.failure_message(DescribeFailure);
    app.footer(kFooter);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.require_subcommand(0, 1); // with 1 an unknown command would not be named
    AddGeneralOptions(app, line.options);
    AddConnectionOptions(app, line.options.connection);
    for (const OmCommand& command : GetCommands())
        AddCommand(app, command, line);
    try {
        app.parse(argc, argv);
        if (!line.command)
            throw CLI::RequiredError("A command");
        CheckTogether(*line.command, line.options);
    } catch (const CLI::ParseError& error) {
        line.command = nullptr;
        line.exitCode = app.exit(error, out, err) == 0 ? kExitDone : kExitUsage;
    }
    return line;
}
