#include "flash/Identification.h"

#include "data/DataImage.h"
#include "flash/BoundaryScanBus.h"
#include "flash/CommandAddresses.h"
#include "flash/CommandSets.h"
#include "flash/ImageWordCursor.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>

namespace {

constexpr const char* kSetupSectorsIgnored = ForTranslation(
    "The detected flash is CFI-compliant and provides information on sectors in the CFI table. "
    "Therefore the user-defined sectors configuration is ignored.\n\nTo disable this alert, please "
    "clear sectors configuration in Setup dialog by checking 'Flash is CFI-compliant -- no need to "
    "define sectors info' checkbox.");

constexpr const char* kSectorsUnknown = ForTranslation(
    "The detected flash is not CFI-compliant and does not provide sectors information. For non-CFI "
    "devices, sectors configuration can be manually entered using Setup dialog. Without this "
    "information it will not be possible to erase individual sectors and to lock/unlock sectors. "
    "In addition, if a chip does not support the 'full chip erase' command the entire flash erase "
    "operation will also be disabled.");

// The chips that the setup names, as many as the array can have.
std::span<const OmCfiBuffer> ChipsOf(const OmDesignSetup& setup, const CfiData& cfi) {
    return std::span(cfi.chips).first(
        static_cast<size_t>(std::clamp(setup.ChipCount, 1, kMaxChips)));
}

uint32_t ReadWord(OmBoundaryScanBus& bus, uint32_t busWord) {
    OmDataImage scratch;
    bus.ReadWords(nullptr, busWord, 1, scratch, nullptr);
    return OmImageWordCursor(scratch, bus.BusWordBytes(), 0).word;
}

// A manufacturer code of 0 is no answer; and what the array itself holds at the two places is none
// either.
bool HasAnswered(const OmBoundaryScanBus& bus, const OmFlashIds& ids, const OmFlashIds& array) {
    for (int chip = 0; chip < bus.chipCount; ++chip)
        if (bus.ChipLaneByte(chip, ids.manufacturer) == 0)
            return false;
    return ids != array;
}

} // namespace

// What the flash says in the language of one set.
struct OmFlashIdentifier::Answer {
    const OmCommandSetRow* row;
    OmFlashIds ids;
    bool answered;
};

void ResetFlashModes(OmBoundaryScanBus& bus) {
    bus.DriveBusIdle();
    ResetInEverySet(bus);
    bus.DriveBusIdle();
}

void OmFlashIdentifier::EnterNeutralMode(OmBoundaryScanBus& bus) const {
    std::wstring errors; // of a setup that has been found drivable: none
    bus.BuildFromSetup(setup_, setup_.devices, errors);
    bus.analyzer = &analyzer_;
    bus.EnterExtest();
    ResetFlashModes(bus);
}

const CfiData& OmFlashIdentifier::EnsureCfi() {
    if (cfi.read)
        return cfi;
    const OmBusyCursor busy;
    OmBoundaryScanBus bus;
    EnterNeutralMode(bus);
    cfi.read = true;
    const size_t chips = ChipsOf(setup_, cfi).size();
    for (size_t chip = 0; chip < chips; ++chip) {
        ReadCfi(bus, static_cast<int>(chip), cfi.chips[chip]);
        ResetFlashModes(bus);
    }
    return cfi;
}

std::vector<OmFlashIdentifier::Answer> OmFlashIdentifier::ReadIdentifiers() {
    const OmBusyCursor busy;
    OmBoundaryScanBus bus;
    EnterNeutralMode(bus);
    const uint32_t identifier = GetCommandAddresses(bus.addrCmdShift).identifier;
    const OmFlashIds array{ReadWord(bus, 0), ReadWord(bus, identifier)};
    std::vector<Answer> answers;
    for (const OmCommandSetRow* row : GetCommandSets()) {
        const OmFlashIds ids = row->readIds(bus);
        answers.push_back({row, ids, HasAnswered(bus, ids, array)});
        ResetFlashModes(bus);
    }
    return answers;
}

// The first set that has answered, or that the tables name, is the one.
bool OmFlashIdentifier::DetectCommandSet(OmDetectedFlash& found) {
    found = {};
    EnsureCfi();
    const OmCfiFindings findings = FindCommandSetInCfi(ChipsOf(setup_, cfi));
    found.commandSet = findings.commandSet;
    found.bufferBytes = findings.bufferBytes;
    const OmCommandSetRow* named = FindCommandSet(findings.commandSet);
    for (const Answer& answer : ReadIdentifiers()) {
        if (!answer.answered && answer.row != named)
            continue;
        found.ids = answer.ids;
        if (!named)
            found.commandSet = answer.row->words.set;
        break;
    }
    return found.commandSet != OmCommandSet::Unknown;
}

bool OmFlashIdentifier::EnsureCommandSet(OmCommandSet& commandSet, uint32_t& bufferBytes) {
    if (commandSet != OmCommandSet::Unknown)
        return true;
    if (const OmCommandSetRow* fixed = FindCommandSetOfSetup(setup_.CmdSet)) {
        commandSet = fixed->words.set;
        return true;
    }
    OmDetectedFlash found;
    const bool detected = DetectCommandSet(found);
    commandSet = setup_.UseBufferedProg ? found.commandSet : WordByWord(found.commandSet);
    bufferBytes = found.bufferBytes;
    return detected;
}

bool OmFlashIdentifier::EnsureSectors(OmFlashSectorLayout& sectors, bool& valid) {
    if (valid)
        return true;
    EnsureCfi();
    valid = FindSectorsInCfi(ChipsOf(setup_, cfi), sectors);
    const bool userDefined = !setup_.sectors.IsEmpty();
    if (valid) {
        if (userDefined)
            ShowMessage(Translated(kSetupSectorsIgnored), kInformationBox);
        return true;
    }
    sectors = setup_.sectors;
    valid = userDefined;
    if (!valid)
        ShowMessage(Translated(kSectorsUnknown), kWarningBox);
    return valid;
}
