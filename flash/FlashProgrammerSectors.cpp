// Erase, lock and unlock: one loop over sectors, with the texts in tables.
#include "flash/AmdCommands.h"
#include "flash/BoundaryScanBus.h"
#include "flash/FlashProgrammer.h"
#include "flash/IntelCommands.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"

#include <limits>
#include <optional>

// Sectors one after the other, by their offsets.
struct OmSectorWork {
    unsigned total = 0;
    std::function<std::optional<uint32_t>()> next; // nothing behind the last
};

namespace {

// What one kind of work on sectors says.
struct SectorTexts {
    const wchar_t* opening;
    const wchar_t* item; // format with the number of the sector and how many there are
    const wchar_t* stopped;
    const wchar_t* timedOut;
    const wchar_t* failed;      // goes on with the offsets
    const wchar_t* severalLead; // ahead of more than one offset
    const wchar_t* locked;      // likewise as `failed`
    const wchar_t* lockedAdvice;
};

constexpr SectorTexts kEraseTexts = {
    L"Erasing sectors...",
    L"Erasing sector %u of %u...",
    L"Erase operation was aborted by user.",
    L"Erase timeout error.",
    L"An erase error occured while attempting to erase ",
    L"the following sectors: ",
    L"An Intel Block Locked error occured while attempting to erase ",
    L"\n\nTo unlock sectors go to menu Actions > Intel Specific > Unlock Sectors.",
};

constexpr SectorTexts kLockTexts = {
    L"Locking sectors...",
    L"Locking sector %u of %u...",
    L"Sector lock operation was aborted by user.",
    L"Sector lock timeout error.",
    L"Sector lock operation failed while attempting to lock ",
    L"following sectors: ",
    nullptr,
    nullptr,
};

constexpr SectorTexts kUnlockTexts = {
    L"Unlocking sectors...",
    L"Unlocking sector %u of %u...",
    L"Sector unlock operation was aborted by user.",
    L"Sector unlock timeout error.",
    L"Sector unlock operation failed while attempting to unlock ",
    L"following sectors: ",
    nullptr,
    nullptr,
};

// How the sectors ended that did not end well.
struct SectorOutcome {
    bool stopped = false;
    bool timedOut = false;
    std::vector<uint32_t> failed;
    std::vector<uint32_t> locked;

    bool IsGood() const { return !stopped && !timedOut && failed.empty() && locked.empty(); }

    // False if the sectors behind this one must be left alone.
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

SectorOutcome RunOverSectors(OmProgressCallback& callback, OmSectorWork work,
                             const SectorTexts& texts,
                             const std::function<OmFlashResult(uint32_t offset)>& action) {
    SectorOutcome outcome;
    unsigned number = 0;
    while (const std::optional<uint32_t> offset = work.next()) {
        const std::wstring text = OmFormat(texts.item, ++number, work.total);
        outcome.stopped = !callback.OnProgress(-1, text.c_str());
        if (outcome.stopped || !outcome.Take(action(*offset), *offset))
            break;
    }
    return outcome;
}

std::wstring ListOffsets(const std::vector<uint32_t>& offsets, const wchar_t* severalLead) {
    std::wstring text = offsets.size() == 1 ? L"sector " : severalLead;
    const wchar_t* separator = L"";
    for (const uint32_t offset : offsets) {
        text += separator + OmFormat(L"%05Xh", offset);
        separator = L", ";
    }
    return text + L".";
}

// Hides the progress display first, so that it does not cover the box.
void Tell(OmProgressCallback& callback, const std::wstring& text, OmMessageStyle style) {
    callback.OnFinish();
    ShowMessage(text, style);
}

bool Report(OmProgressCallback& callback, const SectorOutcome& outcome, const SectorTexts& texts) {
    if (outcome.stopped)
        Tell(callback, texts.stopped, kWarningBox);
    if (outcome.timedOut)
        Tell(callback, texts.timedOut, kErrorBox);
    if (!outcome.failed.empty())
        Tell(callback, texts.failed + ListOffsets(outcome.failed, texts.severalLead), kErrorBox);
    if (!outcome.locked.empty())
        Tell(callback,
             texts.locked + ListOffsets(outcome.locked, texts.severalLead) + texts.lockedAdvice,
             kWarningBox);
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
        Tell(callback, kEraseTexts.stopped, kWarningBox);
    else if (result == OmFlashResult::TimeOut)
        Tell(callback, kEraseTexts.timedOut, kErrorBox);
    else
        Tell(callback, L"An erase error occured.", kErrorBox);
    return false;
}

} // namespace

bool OmFlashProgrammer::EraseEach(OmProgressCallback& callback, const OmSectorWork& work) {
    return Guarded(&callback, [&] {
        callback.OnProgress(-1, kEraseTexts.opening);
        if (commandSet == OmCommandSet::Unknown)
            return true;
        OmBoundaryScanBus bus;
        OpenBus(bus);
        const auto erase = [&](uint32_t offset) {
            return IsIntel(commandSet) ? IntelEraseBlock(bus, callback, offset)
                                       : AmdEraseSector(bus, callback, offset);
        };
        return Report(callback, RunOverSectors(callback, work, kEraseTexts, erase), kEraseTexts);
    });
}

bool OmFlashProgrammer::EraseSectors(OmProgressCallback& callback,
                                     const OmSectorRange& chipOffsets) {
    return EraseEach(callback, WorkOf(chipOffsets));
}

bool OmFlashProgrammer::SetSectorLocks(OmProgressCallback& callback,
                                       const OmSectorRange& chipOffsets, bool lock) {
    const SectorTexts& texts = lock ? kLockTexts : kUnlockTexts;
    return Guarded(&callback, [&] {
        callback.OnProgress(-1, texts.opening);
        OmBoundaryScanBus bus;
        OpenBus(bus, OmCommandSet::IntelStandard);
        const auto setLock = [&](uint32_t offset) {
            return IntelSetBlockLock(bus, callback, lock, offset);
        };
        return Report(callback, RunOverSectors(callback, WorkOf(chipOffsets), texts, setLock),
                      texts);
    });
}

bool OmFlashProgrammer::LockSectors(OmProgressCallback& callback,
                                    const OmSectorRange& chipOffsets) {
    return SetSectorLocks(callback, chipOffsets, true);
}

bool OmFlashProgrammer::UnlockSectors(OmProgressCallback& callback,
                                      const OmSectorRange& chipOffsets) {
    return SetSectorLocks(callback, chipOffsets, false);
}

// Intel flash has no chip erase command.
bool OmFlashProgrammer::EraseChip(OmProgressCallback& callback) {
    if (IsIntel(commandSet))
        return EraseEach(callback, WorkOf(sectors));
    if (!IsAmd(commandSet))
        return false;
    return Guarded(&callback, [&] {
        callback.OnProgress(-1, L"Erasing the entire flash...");
        OmBoundaryScanBus bus;
        OpenBus(bus);
        return ReportChipErase(callback, AmdEraseChip(bus, callback));
    });
}
