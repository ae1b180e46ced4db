// Where the program stands in the file system.
#pragma once

#include <string>

// Folder of the running program's file, without a trailing separator; computed once.
const std::wstring& GetProgramDirectory();
