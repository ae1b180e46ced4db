#include "bsdl/ManufacturerTable.h"

#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <sstream>

namespace {

constexpr const char* kKeyOfOne = "10000000000";   // code 1 in bank 1
constexpr const char* kKeyInBank2 = "10000001000"; // code 1 in bank 2

// The name, or "-" for none.
std::wstring Find(const std::string& table, const char* key = kKeyOfOne) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("names.dat", table);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "r"),
                                                               std::fclose);
    std::wstring name;
    return FindManufacturer(file.get(), key, name) ? name : L"-";
}

std::vector<std::string> SuppliedLines() {
    std::istringstream stream(ReadWholeFile(OM_SOURCE_DIR "/resources/mfrid.dat"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool IsEntry(const std::string& line) {
    return !line.empty() && line[0] >= '0' && line[0] <= '1';
}

} // namespace

TEST(ManufacturerTable, LinesAreReadAsTheFormatSays) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"00000001 AMD\n", L"AMD"},
        {"00000001\tAMD \t \n", L"AMD"},
        {"  \t00000001  \t A B\tC\n", L"A B\tC"},
        {"00000001 AMD", L"AMD"},
        {"00000001 AMD\r\n", L"AMD"},
        {"00000001 AMD\rnext", L"AMD"},
        {"10000001 parity takes no part\n", L"parity takes no part"},
        {"00000001 first\n00000001 second\n", L"first"},
        {"\n\n  \n00000001 AMD\n", L"AMD"},
        {"comment\n#00000001 x\n00000001 AMD\n", L"AMD"},
        {"00000001 \xE4\n", L"\u00E4"},
        {"0000001 seven\n", L"-"},
        {"000000001 nine\n", L"-"},
        {"0000000x1 no bit\n", L"-"},
        {"00000001x glued\n", L"-"},
        {"00000001\n", L"-"},
        {"00000001 \n", L"-"},
        {"00000001 \t", L"-"},
        {"00000010 other\n", L"-"},
        {"", L"-"},
        {"00000001 1010\n", L"1010"},
        {"00000001 [x]\n", L"[x]"},
    };
    for (const auto& [table, name] : cases)
        EXPECT_EQ(Find(table), name) << table;
}

TEST(ManufacturerTable, SectionsChooseTheBank) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"[Bank 2]\n00000001 two\n", L"two"},
        {"  [Bank 2]\n00000001 two\n", L"two"},
        {"[Bank   2 of JEP106\n00000001 two\n", L"two"},
        {"[Bank2]\n00000001 two\n", L"two"},
        {"00000001 one\n[Bank 2]\n00000001 two\n", L"two"},
        {"[Bank 2]\n[Bank 1]\n00000001 one\n[Bank 2]\n00000001 two", L"two"},
        {"[Bank 1]\n00000001 one\n", L"-"},
        {"[Bank 17]\n[Bank 2]\n00000001 two\n", L"-"},
        {"[Bank 0]\n[Bank 2]\n00000001 two\n", L"-"},
        {"[Bank -2]\n[Bank 2]\n00000001 two\n", L"-"},
        {"[Bank 99999999999]\n[Bank 2]\n00000001 two\n", L"-"},
        {"[bank 2]\n[Bank 2]\n00000001 two\n", L"-"},
        {"[Notes]\n[Bank 2]\n00000001 two\n", L"-"},
        {"[\n[Bank 2]\n00000001 two\n", L"-"},
    };
    for (const auto& [table, name] : cases)
        EXPECT_EQ(Find(table, kKeyInBank2), name) << table;
}

TEST(ManufacturerTable, LowBitsComeFirstInAKey) {
    EXPECT_EQ(Find("[Bank 16]\n10001110 E\n", "01110001111"), L"E");
    EXPECT_EQ(Find("[Bank 9]\n01000000 F\n", "00000010001"), L"F");
}

TEST(ManufacturerTable, OverlongNamesAndSectionsAreCut) {
    const std::string name(400, 'n');
    EXPECT_EQ(Find("00000001 " + name + "\n"), std::wstring(301, L'n'));
    EXPECT_EQ(Find("00000001 " + std::string(300, 'n') + "\n"), std::wstring(300, L'n'));
    EXPECT_EQ(Find("[Bank" + std::string(600, ' ') + "2]\n00000001 two\n", kKeyInBank2), L"-");
    EXPECT_EQ(Find("[Bank 2" + std::string(600, '2') + "\n00000001 two\n", kKeyInBank2), L"-");
    EXPECT_EQ(Find("[Bank 2]" + std::string(600, '2') + "\n00000001 two\n", kKeyInBank2), L"two");
}

TEST(SuppliedManufacturers, EveryEntryHasOddParityAndAName) {
    int entries = 0;
    for (const std::string& line : SuppliedLines()) {
        if (!IsEntry(line))
            continue;
        ++entries;
        ASSERT_GT(line.size(), 9u) << line;
        EXPECT_EQ(line.substr(0, 8).find_first_not_of("01"), std::string::npos) << line;
        EXPECT_EQ(line[8], ' ') << line;
        EXPECT_NE(line[9], ' ') << line;
        EXPECT_EQ(std::count(line.begin(), line.begin() + 8, '1') % 2, 1) << line;
    }
    EXPECT_GT(entries, 200);
}

TEST(SuppliedManufacturers, NoBankOccursTwiceAndNoCodeTwiceInABank) {
    std::set<std::string> codes;
    std::set<std::string> banks;
    for (const std::string& line : SuppliedLines()) {
        if (line.starts_with("[")) {
            EXPECT_TRUE(banks.insert(line).second) << line;
            codes.clear();
        } else if (IsEntry(line)) {
            EXPECT_FALSE(banks.empty()) << "before any bank: " << line;
            EXPECT_TRUE(codes.insert(line.substr(1, 7)).second) << line;
        }
    }
    EXPECT_EQ(banks.count("[Bank 1]"), 1u);
}

TEST(SuppliedManufacturers, EveryEntryIsFoundThroughItsKey) {
    const std::string table = ReadWholeFile(OM_SOURCE_DIR "/resources/mfrid.dat");
    int bank = 0;
    for (const std::string& line : SuppliedLines()) {
        if (line.starts_with("[")) {
            ASSERT_EQ(std::sscanf(line.c_str(), "[Bank %d]", &bank), 1) << line;
        }
        if (!IsEntry(line))
            continue;
        std::string key(line.rend() - 8, line.rend() - 1);
        for (int bit = 0; bit < 4; ++bit)
            key += ((bank - 1) >> bit) % 2 != 0 ? '1' : '0';
        const std::string name = line.substr(9);
        EXPECT_EQ(Find(table, key.c_str()), std::wstring(name.begin(), name.end())) << line;
    }
}

TEST(SuppliedManufacturers, BankOneIsComplete) {
    const std::vector<std::string> lines = SuppliedLines();
    const auto begin = std::ranges::find(lines, "[Bank 1]");
    const auto end = std::ranges::find(lines, "[Bank 2]");
    EXPECT_EQ(std::count_if(begin, end, IsEntry), 126);
}

TEST(SuppliedManufacturers, WellKnownCodesAreRight) {
    const std::string table = ReadWholeFile(OM_SOURCE_DIR "/resources/mfrid.dat");
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"10010010000", L"Xilinx"},                           // IDCODE manufacturer 0x049
        {"01110110000", L"Altera"},                           // 0x06E
        {"00000100000", L"STMicroelectronics (SGS-Thomson)"}, // 0x020
        {"10000100000", L"Lattice Semiconductor"},            // 0x021
        {"01110000000", L"Freescale (Motorola)"},             // 0x00E
        {"11101000000", L"Texas Instruments"},                // 0x017
        {"11111100000", L"SST"},                              // 0x03F
        {"01000011000", L"-"},                                // 0x0C2: bank 2 has a gap there
        {"11011100010", L"ARM"},                              // 0x23B
        {"11001001001", L"Raspberry Pi"},                     // 0x493
    };
    for (const auto& [key, name] : cases)
        EXPECT_EQ(Find(table, key), name) << key;
}
