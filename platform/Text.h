// Text at the borders: wide text inside, 8-bit text in the user's local encoding at files and
// vendor libraries, and printf-style formatting into strings.
#pragma once

#include <string>

// Conversion through the local encoding (UTF-8 on today's Linux, the ANSI code page on Windows).
// A character that has no counterpart becomes '?'; the functions never fail and never return empty
// text for non-empty input.
std::string ToLocal(const std::wstring& text);
std::wstring FromLocal(const std::string& text);

// printf-style formatting with no length limit. The wide form takes wide formats; use %ls for wide
// and %s for 8-bit text arguments in both.
std::string OmFormat(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::wstring OmFormat(const wchar_t* format, ...);
