// The user's settings between runs: the registry on Windows, a file in the user's configuration
// folder elsewhere.
#pragma once

// Makes the store of this program the current wxConfigBase. The toolkit must be running, and the
// application and vendor names must be set before.
void OpenSettingsStore();

// Writes the store out and leaves none current.
void CloseSettingsStore();
