#include "virtualboard/FlashParameters.h"

#include "virtualboard/Numbers.h"

#include <bit>
#include <functional>
#include <stdexcept>
#include <utility>

namespace vb {

namespace {

template <typename Value>
struct Named {
    const char* name;
    Value value;
};

constexpr Named<CommandSet> kCommandSets[] = {{"amd", CommandSet::Amd},
                                              {"intel", CommandSet::Intel}};
constexpr Named<CfiKind> kCfiKinds[] = {{"full", CfiKind::Full},
                                        {"none", CfiKind::None},
                                        {"short", CfiKind::Short},
                                        {"no-regions", CfiKind::NoRegions},
                                        {"alternative", CfiKind::Alternative}};
constexpr Named<LockScheme> kLockSchemes[] = {
    {"none", LockScheme::None}, {"single", LockScheme::Single}, {"together", LockScheme::Together}};
constexpr Named<Suspends> kSuspends[] = {
    {"none", Suspends::None}, {"erase", Suspends::Erase}, {"all", Suspends::All}};
constexpr Named<BypassCommands> kBypassCommands[] = {{"program", BypassCommands::Program},
                                                     {"all", BypassCommands::All}};
constexpr Named<QueryEntry> kQueryEntries[] = {
    {"55", QueryEntry::At55}, {"555", QueryEntry::At555}, {"unlocked", QueryEntry::Unlocked}};
constexpr Named<Continuation> kContinuations[] = {{"none", Continuation::None},
                                                  {"manufacturer", Continuation::AtManufacturer},
                                                  {"three", Continuation::AtThree}};
constexpr Named<bool> kSwitches[] = {{"no", false}, {"yes", true}};

template <typename Value, size_t count>
Value FromName(const Named<Value> (&table)[count], const std::string& text) {
    for (const auto& row : table)
        if (text == row.name)
            return row.value;
    throw std::runtime_error("'" + text + "' is none of the choices");
}

template <typename Value, size_t count>
std::string ToName(const Named<Value> (&table)[count], Value value) {
    for (const auto& row : table)
        if (value == row.value)
            return row.name;
    return "";
}

// One row for each key, with its way in and its way out.
struct Key {
    const char* name;
    std::function<void(FlashParameters&, const std::string&)> set;
    std::function<std::string(const FlashParameters&)> get;
};

template <typename Owner, typename Number>
Key NumberKey(const char* name, Number Owner::*field) {
    return {name,
            [field](FlashParameters& flash, const std::string& text) {
                flash.*field = static_cast<Number>(ParseNumber(text));
            },
            [field](const FlashParameters& flash) { return std::to_string(flash.*field); }};
}

Key TimeKey(const char* name, uint32_t FlashTimes::*field) {
    return {name,
            [field](FlashParameters& flash, const std::string& text) {
                flash.times.*field = ParseNumber(text);
            },
            [field](const FlashParameters& flash) { return std::to_string(flash.times.*field); }};
}

template <typename Value, size_t count>
Key ChoiceKey(const char* name, Value FlashParameters::*field, const Named<Value> (&table)[count]) {
    return {name,
            [field, &table](FlashParameters& flash, const std::string& text) {
                flash.*field = FromName(table, text);
            },
            [field, &table](const FlashParameters& flash) { return ToName(table, flash.*field); }};
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find(separator, start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

std::vector<uint32_t> ParseNumbers(const std::string& text) {
    std::vector<uint32_t> numbers;
    if (!text.empty())
        for (const std::string& part : Split(text, ','))
            numbers.push_back(ParseNumber(part));
    return numbers;
}

std::string FormatNumbers(const std::vector<uint32_t>& numbers) {
    std::string text;
    for (uint32_t number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

Key SectorsKey(const char* name, std::vector<SectorGroup> FlashParameters::*field) {
    return {name,
            [field](FlashParameters& flash, const std::string& text) {
                flash.*field = text.empty() ? std::vector<SectorGroup>() : ParseSectors(text);
            },
            [field](const FlashParameters& flash) { return FormatSectors(flash.*field); }};
}

Key ListKey(const char* name, std::vector<uint32_t> FlashParameters::*field) {
    return {name,
            [field](FlashParameters& flash, const std::string& text) {
                flash.*field = ParseNumbers(text);
            },
            [field](const FlashParameters& flash) { return FormatNumbers(flash.*field); }};
}

const std::vector<Key>& Keys() {
    using P = FlashParameters;
    using T = FlashTimes;
    static const std::vector<Key> kKeys = {
        ChoiceKey("set", &P::commandSet, kCommandSets),
        NumberKey("width", &P::widthBits),
        NumberKey("shift", &P::commandShift),
        NumberKey("decode", &P::decodedBits),
        NumberKey("manufacturer", &P::manufacturer),
        NumberKey("id", &P::device),
        NumberKey("buffer", &P::bufferBytes),
        ChoiceKey("bypass", &P::unlockBypass, kSwitches),
        ChoiceKey("bypass-commands", &P::bypassCommands, kBypassCommands),
        ChoiceKey("suspend", &P::suspends, kSuspends),
        ChoiceKey("raised-bit-fails", &P::raisedBitFails, kSwitches),
        ChoiceKey("abort-dq5", &P::abortShowsDq5, kSwitches),
        NumberKey("status-fill", &P::statusFill),
        NumberKey("seed", &P::seed),
        ChoiceKey("locks", &P::lockScheme, kLockSchemes),
        NumberKey("partitions", &P::partitions),
        ChoiceKey("busy-read-modes", &P::busyReadModes, kSwitches),
        ChoiceKey("cfi", &P::cfi, kCfiKinds),
        NumberKey("primary", &P::primaryCode),
        SectorsKey("sectors", &P::sectors),
        SectorsKey("cfi-sectors", &P::cfiSectors),
        ListKey("cfi-times", &P::cfiTimes),
        NumberKey("cfi-buffer", &P::cfiBufferBytes),
        NumberKey("primary-version", &P::primaryVersion),
        ListKey("primary-bytes", &P::primaryBytes),
        ChoiceKey("query-entry", &P::queryEntry, kQueryEntries),
        ChoiceKey("exact-unlock", &P::exactUnlock, kSwitches),
        ChoiceKey("continuation", &P::continuation, kContinuations),
        NumberKey("id2", &P::device2),
        NumberKey("id3", &P::device3),
        NumberKey("sector-erase", &P::sectorErase),
        NumberKey("block-erase", &P::blockErase),
        NumberKey("block", &P::blockBytes),
        NumberKey("page", &P::pageBytes),
        TimeKey("word-us", &T::wordMicroseconds),
        TimeKey("buffer-us", &T::bufferMicroseconds),
        TimeKey("sector-us", &T::sectorMicroseconds),
        TimeKey("chip-us", &T::chipMicroseconds),
        TimeKey("window-us", &T::eraseWindowMicroseconds),
        TimeKey("lock-us", &T::lockMicroseconds),
        TimeKey("page-load-us", &T::pageLoadMicroseconds),
        TimeKey("limit-factor", &T::limitFactor),
        TimeKey("program-limit-factor", &T::programLimitFactor),
        TimeKey("suspend-us", &T::suspendMicroseconds),
        TimeKey("least-percent", &T::leastPercent),
    };
    return kKeys;
}

struct Model {
    const char* name;
    const char* keys;
};

// Invented chips, each of the kind that its name says, and some like real ones. Later keys overrule
// earlier ones.
constexpr Model kModels[] = {
    {"amd16-64m", "set=amd width=16 id=0x227E buffer=32 sectors=128x64K"},
    {"amd16-64m-top", "set=amd width=16 id=0x2201 sectors=127x64K,8x8K"},
    {"amd16-64m-bottom", "set=amd width=16 id=0x2202 sectors=8x8K,127x64K"},
    {"amd16-in-x8", "set=amd width=8 shift=1 id=0x7E buffer=32 sectors=128x64K"},
    {"amd8-4m", "set=amd width=8 decode=15 manufacturer=0x20 id=0xE3 sectors=8x64K cfi=none"},
    {"amd32-64m", "set=amd width=32 id=0x227E sectors=64x128K"},
    {"intel16-64m",
     "set=intel width=16 manufacturer=0x89 id=0x8817 buffer=64 sectors=4x32K,63x128K"},
    {"intel16-j3", "set=intel width=16 manufacturer=0x89 id=0x17 buffer=32 sectors=64x128K "
                   "locks=together"},
    {"intel16-std", "set=intel width=16 manufacturer=0xB0 id=0x66 sectors=32x64K locks=none"},
    {"intel8-std", "set=intel width=8 manufacturer=0x89 id=0xA6 sectors=32x64K locks=none"},
    {"intel32-128m",
     "set=intel width=32 manufacturer=0x89 id=0x17 buffer=64 sectors=64x256K locks=together"},
    // By the data sheets of real ones, but for the erase times.
    {"s29gl128n", "set=amd width=16 id=0x227E id2=0x2221 id3=0x2201 buffer=32 sectors=128x128K "
                  "word-us=60 buffer-us=240 least-percent=33 chip-us=0 suspend=all "
                  "bypass-commands=all cfi-times=7,7,10,0,1,5,4,0 primary-bytes=15,4"},
    {"s29gl064n-top", "set=amd width=16 id=0x227E id2=0x2210 id3=0x2201 buffer=32 "
                      "sectors=127x64K,8x8K cfi-sectors=8x8K,127x64K suspend=all "
                      "primary-bytes=15,3"},
    // A table of 64 sectors for a chip of 128.
    {"s29gl064n-short", "set=amd width=16 id=0x227E id2=0x220C id3=0x2201 buffer=32 "
                        "sectors=128x64K cfi-sectors=64x64K suspend=all primary-bytes=15,4"},
    // Primary table 1.0: the boot block is told by bit 7 of the device identifier alone.
    {"am29lv160-top", "set=amd width=16 id=0x22C4 sectors=31x64K,1x32K,2x8K,1x16K suspend=erase "
                      "cfi-sectors=1x16K,2x8K,1x32K,31x64K primary-version=10"},
    {"at49bv-top", "set=amd width=16 manufacturer=0x1F id=0xC2 sectors=31x64K,8x8K "
                   "cfi-sectors=8x8K,31x64K primary-version=10 primary-bytes=6,0 bypass=no"},
    // Both ways to erase it stand in the table, which so sums to twice the chip.
    {"sst39vf1601", "set=amd width=16 decode=15 manufacturer=0xBF id=0x234B bypass=no window-us=0 "
                    "sectors=512x4K cfi-sectors=512x4K,32x64K block=64K block-erase=0x50 "
                    "query-entry=unlocked primary=0x0701"},
    {"sst39vf1601c", "set=amd width=16 manufacturer=0xBF id=0x234F window-us=0 bypass=no "
                     "sectors=512x4K cfi-sectors=512x4K,32x64K block=64K block-erase=0x30 "
                     "sector-erase=0x50 query-entry=555"},
    // A buffer with no time of its own in the table.
    {"m29w128g", "set=amd width=16 manufacturer=0x20 id=0x227E id2=0x2221 id3=0x2201 buffer=64 "
                 "sectors=128x128K suspend=all cfi-times=4,0,9,16,4,0,3,3 primary-bytes=15,4"},
    {"m29ew-x8", "set=amd width=8 shift=1 manufacturer=0x89 id=0x7E id2=0x22 id3=0x01 buffer=256 "
                 "cfi-buffer=1024 sectors=64x128K suspend=all primary-bytes=15,4"},
    {"s29ns-exact", "set=amd width=16 id=0x277E id2=0x2234 id3=0x2200 buffer=64 decode=16 "
                    "exact-unlock=yes query-entry=555 sectors=127x64K,4x16K suspend=all"},
    {"en29lv160-top", "set=amd width=16 manufacturer=0x1C id=0x22C4 continuation=manufacturer "
                      "sectors=31x64K,1x32K,2x8K,1x16K cfi=none suspend=erase"},
    {"pm39lv040", "set=amd width=8 manufacturer=0x9D id=0x3E continuation=three bypass=no "
                  "sectors=128x4K cfi=none window-us=0"},
    {"am29lv040", "set=amd width=8 id=0x4F sectors=8x64K cfi=none suspend=erase"},
    {"at29c040a", "set=amd width=8 decode=15 manufacturer=0x1F id=0xA4 sectors=1x512K cfi=none "
                  "page=256 word-us=10000 bypass=no"},
    {"w30", "set=intel width=16 manufacturer=0x89 id=0x8854 sectors=63x64K,8x8K locks=single "
            "partitions=8 busy-read-modes=yes suspend=all"},
    {"l18", "set=intel width=16 manufacturer=0x89 id=0x880B buffer=64 sectors=63x128K,4x32K "
            "locks=single partitions=8 suspend=all"},
    // The performance code of the command set's maker.
    {"m18", "set=intel width=16 manufacturer=0x89 id=0x8903 buffer=1024 sectors=32x256K "
            "locks=single partitions=8 suspend=all primary=0x0200"},
};

void SetFlashParameters(FlashParameters& flash, const std::string& keys) {
    for (const std::string& part : Split(keys, ' ')) {
        const size_t sign = part.find('=');
        SetFlashParameter(flash, part.substr(0, sign), part.substr(sign + 1));
    }
}

} // namespace

uint32_t FlashParameters::SizeBytes() const {
    uint32_t bytes = 0;
    for (const SectorGroup& group : sectors)
        bytes += group.count * group.bytes;
    return bytes;
}

uint64_t FlashParameters::ChipEraseMicroseconds() const {
    return times.chipMicroseconds != 0 ? times.chipMicroseconds
                                       : uint64_t{SectorCount()} * times.sectorMicroseconds;
}

unsigned FlashParameters::AddressPins() const {
    return static_cast<unsigned>(std::bit_width(SizeWords() - 1));
}

uint32_t FlashParameters::SectorCount() const {
    uint32_t count = 0;
    for (const SectorGroup& group : sectors)
        count += group.count;
    return count;
}

uint32_t FlashParameters::SectorOf(uint32_t byteOffset) const {
    uint32_t before = 0;
    for (const SectorGroup& group : sectors) {
        if (byteOffset / group.bytes < group.count)
            return before + byteOffset / group.bytes;
        byteOffset -= group.count * group.bytes;
        before += group.count;
    }
    return before == 0 ? 0 : before - 1;
}

uint32_t FlashParameters::SectorStart(uint32_t sector) const {
    uint32_t start = 0;
    for (const SectorGroup& group : sectors) {
        if (sector < group.count)
            return start + sector * group.bytes;
        sector -= group.count;
        start += group.count * group.bytes;
    }
    return start;
}

uint32_t FlashParameters::SectorBytes(uint32_t sector) const {
    for (const SectorGroup& group : sectors) {
        if (sector < group.count)
            return group.bytes;
        sector -= group.count;
    }
    return 0;
}

FlashParameters FlashByName(const std::string& name) {
    for (const Model& model : kModels) {
        if (name != model.name)
            continue;
        FlashParameters flash;
        SetFlashParameters(flash, model.keys);
        return flash;
    }
    throw std::runtime_error("no flash model is called '" + name + "'");
}

std::vector<std::string> FlashNames() {
    std::vector<std::string> names;
    for (const Model& model : kModels)
        names.emplace_back(model.name);
    return names;
}

void SetFlashParameter(FlashParameters& flash, const std::string& key, const std::string& value) {
    for (const Key& row : Keys()) {
        if (key == row.name) {
            row.set(flash, value);
            return;
        }
    }
    throw std::runtime_error("a flash has no property '" + key + "'");
}

std::vector<SectorGroup> ParseSectors(const std::string& text) {
    std::vector<SectorGroup> sectors;
    for (const std::string& part : Split(text, ',')) {
        const size_t sign = part.find('x');
        if (sign == std::string::npos)
            throw std::runtime_error("'" + part + "' is not a sector group such as 8x64K");
        const SectorGroup group{ParseNumber(part.substr(0, sign)),
                                ParseNumber(part.substr(sign + 1))};
        if (group.count == 0 || group.bytes == 0)
            throw std::runtime_error("'" + part + "' is an empty sector group");
        sectors.push_back(group);
    }
    return sectors;
}

std::string FormatSectors(const std::vector<SectorGroup>& sectors) {
    std::string text;
    for (const SectorGroup& group : sectors)
        text += (text.empty() ? "" : ",") + std::to_string(group.count) + "x" +
                std::to_string(group.bytes);
    return text;
}

std::string FormatFlashParameters(const FlashParameters& flash) {
    std::string text;
    for (const Key& row : Keys())
        text += (text.empty() ? "" : " ") + std::string(row.name) + "=" + row.get(flash);
    return text;
}

} // namespace vb
