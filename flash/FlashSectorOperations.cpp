// Erase, lock and unlock: one loop over sectors, with the texts in tables.
#include "flash/BoundaryScanBus.h"
#include "flash/CommandSets.h"
#include "flash/FlashOperations.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <functional>
#include <limits>
#include <optional>

// Sectors one after the other, by their offsets.
struct OmSectorWork {
    unsigned total = 0;
    std::function<std::optional<uint32_t>()> next; // nothing after the last
};

namespace {

// What one kind of work on sectors says, for translation.
struct SectorTexts {
    const char* opening;
    const char* item; // format with the number of the sector and how many there are
    const char* stopped;
    const char* timedOut;
    const char* failed;  // format with the offsets, as ListOffsets has them
    const char* several; // format with more than one offset, for `failed` and `locked`
    const char* locked;  // likewise as `failed`
};

constexpr SectorTexts kEraseTexts = {
    ForTranslation("Erasing sectors..."),
    ForTranslation("Erasing sector %u of %u..."),
    ForTranslation("Erase operation was aborted by user."),
    ForTranslation("Erase timeout error."),
    ForTranslation("An erase error occured while attempting to erase %ls."),
    ForTranslation("the following sectors: %ls"),
    ForTranslation(
        "An Intel Block Locked error occured while attempting to erase %ls.\n\nTo unlock "
        "sectors go to menu Actions > Intel Specific > Unlock Sectors."),
};

constexpr SectorTexts kLockTexts = {
    ForTranslation("Locking sectors..."),
    ForTranslation("Locking sector %u of %u..."),
    ForTranslation("Sector lock operation was aborted by user."),
    ForTranslation("Sector lock timeout error."),
    ForTranslation("Sector lock operation failed while attempting to lock %ls."),
    ForTranslation("following sectors: %ls"),
    nullptr,
};

constexpr SectorTexts kUnlockTexts = {
    ForTranslation("Unlocking sectors..."),
    ForTranslation("Unlocking sector %u of %u..."),
    ForTranslation("Sector unlock operation was aborted by user."),
    ForTranslation("Sector unlock timeout error."),
    ForTranslation("Sector unlock operation failed while attempting to unlock %ls."),
    ForTranslation("following sectors: %ls"),
    nullptr,
};

// How the sectors ended that did not end well.
struct SectorOutcome {
    bool stopped = false;
    bool timedOut = false;
    std::vector<uint32_t> failed;
    std::vector<uint32_t> locked;

    bool IsGood() const { return !stopped && !timedOut && failed.empty() && locked.empty(); }

    // False if the sectors after this one must be left alone.
    bool Take(OmFlashResult result, uint32_t offset) {
        stopped = result == OmFlashResult::Stopped;
        timedOut = result == OmFlashResult::TimeOut;
        if (result == OmFlashResult::FlashError)
            failed.push_back(offset);
        if (result == OmFlashResult::BlockLocked)
            locked.push_back(offset);
        return !stopped && !timedOut;
    }
};

SectorOutcome RunOverSectors(OmProgressCallback& callback, const OmSectorWork& work,
                             const SectorTexts& texts,
                             const std::function<OmFlashResult(uint32_t offset)>& action) {
    SectorOutcome outcome;
    unsigned number = 0;
    while (const std::optional<uint32_t> offset = work.next()) {
        const std::wstring text = TranslatedFormat(texts.item, ++number, work.total);
        outcome.stopped = !callback.OnProgress(-1, text.c_str());
        if (outcome.stopped || !outcome.Take(action(*offset), *offset))
            break;
    }
    return outcome;
}

std::wstring ListOffsets(const std::vector<uint32_t>& offsets, const char* several) {
    std::wstring list;
    for (const uint32_t offset : offsets)
        list += (list.empty() ? L"" : L", ") + OmFormat(L"%05Xh", offset);
    if (offsets.size() == 1)
        return TranslatedFormat("sector %ls", list.c_str());
    return TranslatedFormat(several, list.c_str());
}

std::wstring DescribeFailed(const char* format, const std::vector<uint32_t>& offsets,
                            const char* several) {
    return TranslatedFormat(format, ListOffsets(offsets, several).c_str());
}

// Hides the progress display first, so that it does not cover the box.
void Tell(OmProgressCallback& callback, const std::wstring& text, OmMessageStyle style) {
    callback.OnFinish();
    ShowMessage(text, style);
}

bool Report(OmProgressCallback& callback, const SectorOutcome& outcome, const SectorTexts& texts) {
    if (outcome.stopped)
        Tell(callback, Translated(texts.stopped), kWarningBox);
    if (outcome.timedOut)
        Tell(callback, Translated(texts.timedOut), kErrorBox);
    if (!outcome.failed.empty())
        Tell(callback, DescribeFailed(texts.failed, outcome.failed, texts.several), kErrorBox);
    if (!outcome.locked.empty())
        Tell(callback, DescribeFailed(texts.locked, outcome.locked, texts.several), kWarningBox);
    return outcome.IsGood();
}

OmSectorWork WorkOf(const OmSectorRange& chipOffsets) {
    return {static_cast<unsigned>(chipOffsets.size()),
            [next = chipOffsets.begin(), end = chipOffsets.end()]() mutable {
                return next == end ? std::optional<uint32_t>() : *next++;
            }};
}

// Every sector that 32 bits of address reach. A user may enter billions of them by hand: they are
// not written out.
OmSectorWork WorkOf(const OmFlashSectorLayout& layout) {
    uint32_t index = 0;
    uint32_t count = 0;
    layout.GetSectorRange(1, 0, std::numeric_limits<uint32_t>::max(), index, count);
    return {count, [&layout, index, end = index + count]() mutable {
                uint32_t offset = 0;
                uint32_t size = 0;
                const bool more = index < end && layout.GetSector(index++, offset, size);
                return more ? std::optional(offset) : std::nullopt;
            }};
}

bool ReportChipErase(OmProgressCallback& callback, OmFlashResult result) {
    if (result == OmFlashResult::Done)
        return true;
    if (result == OmFlashResult::Stopped)
        Tell(callback, Translated(kEraseTexts.stopped), kWarningBox);
    else if (result == OmFlashResult::TimeOut)
        Tell(callback, Translated(kEraseTexts.timedOut), kErrorBox);
    else
        Tell(callback, Translated("An erase error occured."), kErrorBox);
    return false;
}

} // namespace

bool OmFlashOperations::EraseEach(OmProgressCallback& callback, const OmSectorWork& work) {
    callback.OnProgress(-1, Translated(kEraseTexts.opening).c_str());
    const OmCommandSetRow* row = FindCommandSet(facts_.commandSet);
    if (!row)
        return true;
    OmBoundaryScanBus bus;
    OpenBus(bus);
    const auto erase = [&](uint32_t offset) { return row->eraseSector(bus, callback, offset); };
    return Report(callback, RunOverSectors(callback, work, kEraseTexts, erase), kEraseTexts);
}

bool OmFlashOperations::EraseSectors(OmProgressCallback& callback,
                                     const OmSectorRange& chipOffsets) {
    return EraseEach(callback, WorkOf(chipOffsets));
}

bool OmFlashOperations::SetSectorLocks(OmProgressCallback& callback,
                                       const OmSectorRange& chipOffsets, bool lock) {
    const SectorTexts& texts = lock ? kLockTexts : kUnlockTexts;
    callback.OnProgress(-1, Translated(texts.opening).c_str());
    const OmCommandSetRow* row = FindLockingCommandSet(facts_.commandSet);
    if (!row)
        return true;
    OmBoundaryScanBus bus;
    OpenBus(bus, row->words.set);
    const auto setLock = [&](uint32_t offset) { return row->setLock(bus, callback, lock, offset); };
    return Report(callback, RunOverSectors(callback, WorkOf(chipOffsets), texts, setLock), texts);
}

// A set without a command for the whole chip has its sectors erased one by one.
bool OmFlashOperations::EraseChip(OmProgressCallback& callback) {
    const OmCommandSetRow* row = FindCommandSet(facts_.commandSet);
    if (!row)
        return false;
    if (!row->eraseChip)
        return EraseEach(callback, WorkOf(facts_.sectors));
    callback.OnProgress(-1, Translated("Erasing the entire flash...").c_str());
    OmBoundaryScanBus bus;
    OpenBus(bus);
    return ReportChipErase(callback, row->eraseChip(bus, callback));
}
