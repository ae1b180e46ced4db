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

Key SectorsKey() {
    return {
        "sectors",
        [](FlashParameters& flash, const std::string& text) { flash.sectors = ParseSectors(text); },
        [](const FlashParameters& flash) { return FormatSectors(flash.sectors); }};
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
        SectorsKey(),
        TimeKey("word-us", &T::wordMicroseconds),
        TimeKey("buffer-us", &T::bufferMicroseconds),
        TimeKey("sector-us", &T::sectorMicroseconds),
        TimeKey("chip-us", &T::chipMicroseconds),
        TimeKey("window-us", &T::eraseWindowMicroseconds),
        TimeKey("lock-us", &T::lockMicroseconds),
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

// Invented chips, each of the kind that its name says. Later keys overrule earlier ones.
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
};

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find(separator, start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

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
