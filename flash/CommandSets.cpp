#include "flash/CommandSets.h"

#include "platform/Translation.h"

#include <algorithm>
#include <ranges>

// Each stands with the commands of its set.
extern const OmCommandSetRow kIntelCommandSet;
extern const OmCommandSetRow kAmdCommandSet;

namespace {

constexpr const OmCommandSetRow* kRows[] = {
    &kIntelCommandSet,
    &kAmdCommandSet,
};

OmCommandSetRows& RowsOfTests() {
    static OmCommandSetRows rows;
    return rows;
}

template <class Condition>
const OmCommandSetRow* FindRow(Condition condition) {
    const OmCommandSetRows rows = GetCommandSets();
    const auto row = std::ranges::find_if(
        rows, [&](const OmCommandSetRow* candidate) { return condition(*candidate); });
    return row == rows.end() ? nullptr : *row;
}

} // namespace

OmCommandSetRows GetCommandSets() {
    return RowsOfTests().empty() ? OmCommandSetRows(kRows) : RowsOfTests();
}

void SetCommandSets(OmCommandSetRows rows) {
    RowsOfTests() = rows;
}

const OmCommandSetRow* FindCommandSet(OmCommandSet set) {
    if (set == OmCommandSet::Unknown)
        return nullptr;
    return FindRow([set](const OmCommandSetRow& row) {
        return row.words.set == set || row.buffers.set == set;
    });
}

const OmProgramForm* FindProgramForm(OmCommandSet set) {
    const OmCommandSetRow* row = FindCommandSet(set);
    if (!row)
        return nullptr;
    return row->words.set == set ? &row->words : &row->buffers;
}

const OmCommandSetRow* FindCommandSetOfSetup(int setupChoice) {
    if (setupChoice == kNoSetupChoice)
        return nullptr;
    return FindRow(
        [setupChoice](const OmCommandSetRow& row) { return row.setupChoice == setupChoice; });
}

const OmCommandSetRow* FindLockingCommandSet(OmCommandSet set) {
    if (CanLockSectors(set))
        return FindCommandSet(set);
    return FindRow([](const OmCommandSetRow& row) { return row.setLock != nullptr; });
}

OmCommandSet WordByWord(OmCommandSet set) {
    const OmCommandSetRow* row = FindCommandSet(set);
    return row ? row->words.set : set;
}

bool CanEraseChip(OmCommandSet set) {
    const OmCommandSetRow* row = FindCommandSet(set);
    return row && row->eraseChip;
}

bool CanLockSectors(OmCommandSet set) {
    const OmCommandSetRow* row = FindCommandSet(set);
    return row && row->setLock;
}

// The set that is asked first has the last word: an Intel flash takes the AMD reset for data.
void ResetInEverySet(OmBoundaryScanBus& bus) {
    for (const OmCommandSetRow* row : std::views::reverse(GetCommandSets()))
        row->reset(bus);
}

std::wstring GetCommandSetName(OmCommandSet set) {
    const OmProgramForm* form = FindProgramForm(set);
    return Translated(form ? form->name : ForTranslation("Unknown"));
}
