#include "cli/Cli.h"

#include "bsdl/Idcode.h"
#include "cli/Commands.h"
#include "cli/Connection.h"
#include "cli/ConsoleInterface.h"
#include "cli/ConsoleProgress.h"
#include "cli/DeviceChoice.h"
#include "cli/ExitCodes.h"
#include "cli/Interrupt.h"
#include "cli/OptionParser.h"
#include "cli/Terminal.h"
#include "flash/FlashProgrammer.h"
#include "jtag/LptPorts.h"
#include "platform/Paths.h"
#include "platform/Text.h"

#include <cerrno>
#include <iostream>

namespace {

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

// What keeps a file from being read; what stands in it if nothing does.
std::wstring DescribeUnread(const std::string& path, const wchar_t* content) {
    errno = 0;
    std::FILE* stream = std::fopen(path.c_str(), "rb");
    const bool read = stream && (std::fgetc(stream) != EOF || !std::ferror(stream));
    const int error = errno;
    if (stream)
        std::fclose(stream);
    return read ? content : DescribeSystemError(error);
}

bool LoadSetup(const OmCliOptions& options) {
    return OmFlashProgrammer::GetInstance().LoadDesignSetup(options.setupFile) ||
           Fail(L"Failed to load setup file '" + FromLocal(options.setupFile) + L"'.\n" +
                DescribeUnread(options.setupFile, L"It is no setup file, or a damaged one."));
}

bool FindPod(const OmCommand& command, const OmCliOptions& options) {
    return !(command.uses & kUsesConnection) ||
           ChooseDevice(options.connection, OmFlashProgrammer::GetInstance().settings);
}

// A missing port is the one reason that the log does not tell.
bool HasPort(const OmConnectionSettings& settings) {
    uint16_t addresses[3] = {};
    GetLptAddresses(&addresses[0], &addresses[1], &addresses[2]);
    return !HasParallelPort(settings.cableType) ||
           addresses[static_cast<size_t>(settings.lptPort)] != 0;
}

// Why a cable does not open stands in the log alone.
void HintAtLog(const OmCliOptions& options) {
    const OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.analyzer || programmer.cable)
        return;
    const std::string cable = GetCableName(programmer.settings.cableType);
    Fail(L"The cable is " + FromLocal(cable) +
         (options.connection.cable ? L"." : L", as set in velflash; --cable names another.") +
         (options.log ? L"" : L" The option --log shows what failed."));
    if (!HasPort(programmer.settings))
        Fail(OmFormat(L"This machine has no parallel port LPT%d, or does not let this user see it.",
                      static_cast<int>(programmer.settings.lptPort) + 1));
}

void ReportFrequency(const OmCliOptions& options) {
    const OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.cable || options.quiet)
        return;
    const std::string text =
        DescribeFrequency(options.connection, programmer.cable->GetJtagHAL()->GetFrequency());
    if (!text.empty())
        std::fprintf(stderr, "%s\n", text.c_str());
}

// A report that did not reach its reader is a failure. One who closes the pipe, as `head` does, has
// read enough and needs no message.
bool FlushReport() {
    errno = 0;
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return true;
    return errno == EPIPE ? false : Fail(L"Writing to standard output failed.");
}

// The cable is closed before the program ends, while what it uses is still there.
bool RunCommand(const OmCommand& command, const OmCliOptions& options) {
    OmConsoleProgress progress(stderr, ChooseProgressStyle(options.quiet));
    const bool good = (options.setupFile.empty() || LoadSetup(options)) &&
                      FindPod(command, options) && command.run(options, progress);
    if (!good && (command.uses & kUsesConnection))
        HintAtLog(options);
    if (command.uses & kUsesConnection) {
        ReportFrequency(options);
        OmFlashProgrammer::GetInstance().CloseCable();
    }
    return FlushReport() && good;
}

} // namespace

int RunCli(int argc, const char* const* argv) {
    const OmParsedLine line = ParseCommandLine(argc, argv, std::cout, std::cerr);
    const ConsoleSession session(line.options);
    if (!line.command) {
        std::cout.flush(); // a help page
        return FlushReport() ? line.exitCode : kExitFailed;
    }
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
