#include "jtag/Log.h"

#include <algorithm>
#include <cstdarg>
#include <cwchar>

namespace {

constexpr size_t kMaxLogText = 1023;
constexpr size_t kLogLineBits = 32;

OmLogSink* installed = nullptr;

} // namespace

OmLogSink* SetLogSink(OmLogSink* sink) {
    OmLogSink* previous = installed;
    installed = sink;
    return previous;
}

void OmLog(const wchar_t* format, ...) {
    if (!installed)
        return;
    wchar_t buffer[kMaxLogText + 1];
    va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it was, a line above
    const int length = std::vswprintf(buffer, kMaxLogText + 1, format, arguments);
    va_end(arguments);
    if (length > 0)
        installed->Write({buffer, static_cast<size_t>(length)});
}

void OmLogBits(const OmBitVector& bits) {
    if (!installed)
        return;
    const std::string text = BitsToText(bits, OmBitOrder::LowestFirst);
    for (size_t start = 0; start < text.size(); start += kLogLineBits) {
        const auto first = text.begin() + static_cast<ptrdiff_t>(start);
        const size_t count = std::min(kLogLineBits, text.size() - start);
        const std::wstring line(first, first + static_cast<ptrdiff_t>(count));
        OmLog(start + count < text.size() ? L"%ls+\n" : L"%ls\n", line.c_str());
    }
}
