#include "jobs/FlashReach.h"

#include "data/DataImage.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <limits>

namespace {

// First address past the flash. The largest size that 32 bits can tell stands for all that they can
// address.
uint64_t FindFlashEnd(const OmFlashProgrammer& programmer) {
    const uint32_t size = programmer.GetFlashSizeBytes();
    return size == std::numeric_limits<uint32_t>::max() ? uint64_t{1} << 32 : size;
}

bool Refuse(const std::wstring& text) {
    ShowMessage(text, kWarningBox);
    return false;
}

} // namespace

bool FindFlashPart(const OmFlashProgrammer& programmer, const OmFlashPart& part,
                   OmAddressRange& range) {
    const uint64_t flashEnd = FindFlashEnd(programmer);
    const uint64_t end = part.size ? uint64_t{part.from} + *part.size : flashEnd;
    if (part.from < flashEnd && end <= flashEnd) {
        range = {part.from, static_cast<uint32_t>(end - part.from)};
        return true;
    }
    return Refuse(TranslatedFormat(
        "The range reaches past the end of the flash: there is nothing at offset %05llXh, the "
        "flash ends at %05llXh.",
        static_cast<unsigned long long>(std::max<uint64_t>(part.from, flashEnd)),
        static_cast<unsigned long long>(flashEnd - 1)));
}

bool CheckDataFit(const OmFlashProgrammer& programmer, const OmDataImage& image) {
    const uint64_t flashEnd = FindFlashEnd(programmer);
    return image.GetHighestAddress() < flashEnd ||
           Refuse(TranslatedFormat("The data reach past the end of the flash: the last byte is at "
                                   "offset %05Xh, the flash ends at %05llXh.",
                                   image.GetHighestAddress(),
                                   static_cast<unsigned long long>(flashEnd - 1)));
}
