#include "bsdl/Idcode.h"

#include "bsdl/ManufacturerTable.h"
#include "jtag/IdcodeLayout.h"
#include "platform/Translation.h"

#include <cstdio>
#include <map>
#include <memory>

namespace {

constexpr size_t kMaxCacheSize = 1000;

// Fields of an IDCODE: IEEE 1149.1, 12.1.1.
struct BitRange {
    size_t low;
    size_t high;
};

constexpr BitRange kManufacturer = {1, 11};
constexpr BitRange kPart = {12, 27};
constexpr BitRange kVersion = {28, 31};

using NameCache = std::map<std::string, std::wstring>;

std::string tablePath;
NameCache idcodeCache;
NameCache flashCache;

struct FileCloser {
    void operator()(std::FILE* file) const {
        std::fclose(file); // was only read: nothing can be lost
    }
};

OmBitVector Cut(const OmBitVector& bits, BitRange range) {
    const auto begin = bits.begin();
    return {begin + static_cast<ptrdiff_t>(range.low),
            begin + static_cast<ptrdiff_t>(range.high) + 1};
}

std::wstring Widen(const std::string& text) {
    return {text.begin(), text.end()};
}

std::wstring BinaryText(const OmBitVector& bits) {
    return Widen(BitsToText(bits));
}

std::wstring HexadecimalText(const OmBitVector& bits) {
    std::string text;
    return BitsToHex(bits, text) ? Widen(text) : Translated("ERROR");
}

// The file may appear or change while the program runs, so what it lacks is not remembered.
bool FindInFile(const std::string& key, std::wstring& name) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(tablePath.c_str(), "r"));
    return file && FindManufacturer(file.get(), key, name);
}

bool Lookup(NameCache& cache, const std::string& key, std::wstring& name) {
    const auto cached = cache.find(key);
    if (cached != cache.end()) {
        name = cached->second;
        return true;
    }
    if (!FindInFile(key, name))
        return false;
    if (cache.size() > kMaxCacheSize)
        cache.clear();
    cache.emplace(key, name);
    return true;
}

} // namespace

OmIdcodeFields DecodeIdcode(const OmBitVector& idcode) {
    OmIdcodeFields fields;
    if (idcode.size() != kIdcodeBits)
        return fields;
    fields.whole = BinaryText(idcode);
    fields.hexadecimal = HexadecimalText(idcode);
    if (!LookupManufacturer(idcode, fields.manufacturerName))
        fields.manufacturerName = Translated("(Unknown)");
    fields.manufacturer = BinaryText(Cut(idcode, kManufacturer));
    fields.part = BinaryText(Cut(idcode, kPart));
    fields.version = BinaryText(Cut(idcode, kVersion));
    return fields;
}

void SetManufacturerTablePath(const std::string& path) {
    tablePath = path;
    idcodeCache.clear();
    flashCache.clear();
}

bool LookupManufacturer(const OmBitVector& idcode, std::wstring& name) {
    if (idcode.size() != kIdcodeBits)
        return false;
    return Lookup(idcodeCache, BitsToText(Cut(idcode, kManufacturer), OmBitOrder::LowestFirst),
                  name);
}

bool LookupManufacturer(uint8_t id, std::wstring& name) {
    std::string key;
    for (int bit = 0; bit < 7; ++bit)
        key += ((id >> bit) & 1) != 0 ? '1' : '0';
    return Lookup(flashCache, key + "0000", name);
}
