#include "platform/Text.h"

#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <vector>
#include <wx/string.h>

std::string ToLocal(const std::wstring& text) {
    const wxCharBuffer whole = wxString(text).mb_str(wxConvLibc);
    if (whole.length() > 0 || text.empty())
        return {whole.data(), whole.length()};
    std::string result;
    for (const wchar_t character : text) {
        const wxCharBuffer one = wxString(character).mb_str(wxConvLibc);
        result += one.length() > 0 ? std::string(one.data(), one.length()) : "?";
    }
    return result;
}

std::wstring FromLocal(const std::string& text) {
    const wxString whole(text.data(), wxConvLibc, text.size());
    if (!whole.empty() || text.empty())
        return whole.ToStdWstring();
    // Not valid in the local encoding: keep the readable part of the text.
    std::wstring result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        result += byte < 0x80 ? static_cast<wchar_t>(byte) : L'?';
    }
    return result;
}

std::string OmFormat(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string result(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0)
        std::vsnprintf(result.data(), result.size() + 1, format, arguments);
    va_end(arguments);
    return result;
}

// vswprintf cannot measure, so the buffer grows until the text fits. A format that can never be
// converted (an %s that is not valid in the local encoding) ends at the limit with empty text.
std::wstring OmFormat(const wchar_t* format, ...) {
    constexpr size_t kLimit = size_t{1} << 24;
    std::vector<wchar_t> buffer(512);
    for (;;) {
        va_list arguments;
        va_start(arguments, format);
        const int length = std::vswprintf(buffer.data(), buffer.size(), format, arguments);
        va_end(arguments);
        if (length >= 0)
            return {buffer.data(), static_cast<size_t>(length)};
        if (buffer.size() >= kLimit)
            return {};
        buffer.resize(buffer.size() * 4);
    }
}
