// The user's settings between runs: the registry on Windows, a file in the user's configuration
// folder elsewhere. Settings that are damaged, or cannot be read or written, are told on standard
// error and otherwise as good as missing.
#pragma once

// Who only reads leaves no folder where there was none.
enum class OmStoreAccess { Read, ReadAndWrite };

// Makes the store of this program the current wxConfigBase. The toolkit must be running, and the
// application and vendor names must be set before.
void OpenSettingsStore(OmStoreAccess access);

// Writes the store out and leaves none current.
void CloseSettingsStore();
