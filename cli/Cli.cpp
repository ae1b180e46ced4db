#include "cli/Cli.h"

#include "bsdl/Idcode.h"
#include "cli/Commands.h"
#include "cli/Connection.h"
#include "cli/ConsoleInterface.h"
#include "cli/ConsoleProgress.h"
#include "cli/ExitCodes.h"
#include "cli/Interrupt.h"
#include "cli/OptionParser.h"
#include "flash/FlashProgrammer.h"
#include "platform/Paths.h"
#include "platform/Text.h"

#include <iostream>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

bool IsTerminal(std::FILE* stream) {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

OmProgressStyle ChooseProgressStyle(bool quiet) {
    if (quiet)
        return OmProgressStyle::None;
    return IsTerminal(stderr) ? OmProgressStyle::Terminal : OmProgressStyle::Lines;
}

// Messages, log and Ctrl+C go the console's way for the time of a command.
class ConsoleSession {
  public:
    explicit ConsoleSession(const OmCliOptions& options)
        : interface_(stderr, options.yes, options.quiet), log_(stderr),
          previousInterface_(SetUserInterface(&interface_)),
          previousLog_(SetLogSink(options.log ? &log_ : nullptr)) {
        InstallInterrupt();
    }

    ~ConsoleSession() {
        SetUserInterface(previousInterface_);
        SetLogSink(previousLog_);
    }

    ConsoleSession(const ConsoleSession&) = delete;
    ConsoleSession& operator=(const ConsoleSession&) = delete;

  private:
    OmConsoleInterface interface_;
    OmConsoleLog log_;
    OmUserInterface* previousInterface_;
    OmLogSink* previousLog_;
};

bool LoadSetup(const OmCliOptions& options) {
    return OmFlashProgrammer::GetInstance().LoadDesignSetup(options.setupFile) ||
           Fail(L"Failed to load setup file '" + FromLocal(options.setupFile) + L"'.");
}

// Why a pod does not open stands in the log alone.
void HintAtLog(const OmCliOptions& options) {
    const OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (programmer.analyzer && !programmer.cable && !options.log)
        Fail(L"The option --log shows why.");
}

// The pod is closed before the program ends, while what it uses is still there.
bool RunCommand(const OmCommand& command, const OmCliOptions& options) {
    OmConsoleProgress progress(stderr, ChooseProgressStyle(options.quiet));
    const bool good =
        (options.setupFile.empty() || LoadSetup(options)) && command.run(options, progress);
    if (!good && (command.uses & kUsesConnection))
        HintAtLog(options);
    if (command.uses & kUsesConnection)
        OmFlashProgrammer::GetInstance().CloseCable();
    // A report that did not reach its reader is a failure.
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        return Fail(L"Writing to standard output failed.");
    return good;
}

} // namespace

int RunCli(int argc, const char* const* argv) {
    const OmParsedLine line = ParseCommandLine(argc, argv, std::cout, std::cerr);
    if (!line.command)
        return line.exitCode;
    const ConsoleSession session(line.options);
    SetManufacturerTablePath(ToLocal(GetProgramDirectory()) + "/mfrid.dat");
    if (line.command->uses & kUsesConnection) {
        std::string error;
        if (!ApplyConnection(line.options.connection, OmFlashProgrammer::GetInstance().settings,
                             error)) {
            std::cerr << error << '\n';
            return kExitUsage;
        }
    }
    if (RunCommand(*line.command, line.options))
        return kExitDone;
    return IsInterrupted() ? kExitAborted : kExitFailed;
}
