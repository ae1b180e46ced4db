// What each host system supplies, one implementation in posix/ and one in windows/. Included only
// by the sources of this folder.
#pragma once

#include <memory>
#include <string>

class OmClock;
class OmLibraryLoader;
class OmPortDriverOpener;

OmClock& GetHostClock();
OmLibraryLoader& GetHostLibraryLoader();
OmPortDriverOpener& GetHostPortDriverOpener();

// Full path of the running program's file; empty if the system cannot tell.
std::wstring GetHostProgramPath();
