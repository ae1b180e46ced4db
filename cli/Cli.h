// The console companion: one command a run.
#pragma once

// The toolkit must be running, with the settings store open. Answers the exit code.
int RunCli(int argc, const char* const* argv);
