// What each host system supplies, one implementation in posix/ and one in windows/. Included only
// by the sources of this folder.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

class OmClock;
class OmLibraryLoader;
class OmPortDriverOpener;
class OmUsbBus;

OmClock& GetHostClock();
OmLibraryLoader& GetHostLibraryLoader();
OmPortDriverOpener& GetHostPortDriverOpener();
OmUsbBus& GetHostUsbBus();

// Full path of the running program's file; empty if the system cannot tell.
std::wstring GetHostProgramPath();

// The languages that the user wants to read, best first, as "de_AT" or "de"; none if the user has
// not said.
std::vector<std::string> GetHostLanguages();

// Files to write, null if they cannot be opened. `text`: lines end as the host ends them.
std::FILE* CreateHostFile(const std::filesystem::path& path, bool text); // must not exist yet
std::FILE* OpenHostFile(const std::filesystem::path& path, bool text);

bool IsHostFileWritable(const std::filesystem::path& path);

// Gives one file the permissions of another, as far as the system allows.
void CopyHostFileAccess(const std::filesystem::path& from, const std::filesystem::path& to);

// Waits until what was written is on the disk.
bool SyncHostFile(std::FILE* stream);
