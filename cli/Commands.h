// The commands of the console, one row each.
#pragma once

#include "cli/Options.h"

#include <span>

class OmConsoleProgress;

// What a command takes; a mask.
enum OmCommandUses : unsigned {
    kUsesSetup = 1,
    kUsesData = 2,
    kUsesOptionalData = 4,
    kUsesOutput = 8, // with its format
    kUsesRange = 16,
    kUsesOffset = 32,
    kUsesErase = 64,
    kUsesSectors = 128,
    kUsesAllSectors = 256,
    kUsesVerify = 512,
    kUsesBsdl = 1024,
    kUsesConnection = 2048,
};

struct OmCommand {
    const char* name;
    const char* help;
    unsigned uses;
    // Reports its own failure and answers false. The setup is loaded.
    bool (*run)(const OmCliOptions& options, OmConsoleProgress& progress);
};

std::span<const OmCommand> GetCommands();

bool RunChain(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunCheck(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunInfo(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunRead(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunErase(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunBlankCheck(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunProgram(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunVerify(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunLock(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunUnlock(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunReset(const OmCliOptions& options, OmConsoleProgress& progress);
bool RunBsdl(const OmCliOptions& options, OmConsoleProgress& progress);

// --- shared by the commands

// A message of failure; answers false.
bool Fail(const std::wstring& text);

// What errno means, as a sentence.
std::wstring DescribeSystemError(int error);

void ReportSuccess(const std::wstring& text);
