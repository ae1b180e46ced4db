// What the program tells its caller.
#pragma once

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitAborted = 130; // as shells report a program that Ctrl+C ended
