// Ctrl+C, which ends an action as an Abort button does.
#pragma once

// From here on the first SIGINT, SIGTERM or SIGHUP only asks to stop; the next one ends the
// program, should a vendor library hang. A pipe that is closed at its other end and a file that
// would grow past a limit are ordinary write errors.
void InstallInterrupt();

bool IsInterrupted();

// As if the user had pressed Ctrl+C, or had never done so.
void SetInterrupted(bool interrupted);
