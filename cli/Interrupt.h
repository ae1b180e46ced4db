// Ctrl+C, which ends an action as an Abort button does.
#pragma once

// From here on the first SIGINT or SIGTERM only asks to stop; the next one ends the program, should
// a vendor library hang. A pipe that is closed at its other end is an ordinary write error.
void InstallInterrupt();

bool IsInterrupted();

// As if the user had pressed Ctrl+C, or had never done so.
void SetInterrupted(bool interrupted);
