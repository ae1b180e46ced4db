// Opens a file in the user's text editor.
#pragma once

#include <string>

// Starts the editor without waiting for it. The path reaches the editor as one argument and never
// passes a shell. False if no editor could be started.
bool OpenInTextEditor(const std::wstring& path);
