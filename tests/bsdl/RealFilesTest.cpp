// Files as chip vendors publish them. They are not ours to distribute, so the test looks for them
// in a folder beside the source tree, or in $VELFLASH_SHARED, and does nothing without.
#include "bsdl/BsdlData.h"
#include "bsdl/BsdlParser.h"
#include "bsdl/BsdlXml.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <numeric>

namespace {

// Counted with a script of regular expressions, not with our parser.
struct AcceptedFile {
    const char* name;
    const char* entity;
    int instructionLength;
    size_t boundaryLength;
    size_t ports;
    size_t pins;
    size_t instructions;
    size_t cellEntries;
    bool contentIsComplete;
};

// Of the files with a mistake these break only what no parser can see: a pin or port too many, too
// few or under a wrong name. A missing cell is what the content check is for. What follows the end
// of the first entity is another matter and never read.
constexpr AcceptedFile kAccepted[] = {
    {"10k50r240.bsd", "EPF10K50R240", 10, 960, 205, 240, 5, 960, true},
    {"BSDLLCMXO2-256HCQFN32.BSM", "LCMXO2_256HC_QFN32", 8, 104, 28, 32, 24, 104, true},
    {"CortexMx.bsd", "CortexMx", 4, 1, 5, 5, 6, 1, true},
    {"EP2C5Q208.BSD", "EP2C5Q208", 10, 498, 156, 208, 8, 498, true},
    {"EP2C8T144.BSD", "EP2C8T144", 10, 597, 99, 144, 8, 597, true},
    {"IMX8MN.bsdl", "IMX8MN", 5, 383, 232, 204, 8, 383, true},
    {"MPF100Tfcg484.bsdl", "MPF100Tfcg484", 8, 944, 313, 484, 11, 944, true},
    {"PG2L100H_FBG676.bsm", "PG2L100H_FBG676", 10, 645, 384, 566, 17, 645, true},
    {"STM32F301_F302_UFQFPN32.bsd", "STM32F301_F302_UFQFPN32", 5, 139, 35, 32, 5, 139, true},
    {"STM32F373_LQFP48.bsd", "STM32F373_LQFP48", 5, 241, 48, 48, 5, 241, true},
    {"STM32F405_415_407_417_LQFP176.bsd", "STM32F405_415_407_417_LQFP176", 5, 406, 151, 176, 5, 406,
     true},
    {"STM32G431_441_LQFP32.bsd", "STM32G431_441_LQFP32", 5, 240, 30, 32, 5, 240, true},
    {"STM32G471_473_474_483_484_LQFP128.bsd", "STM32G471_473_474_483_484_LQFP128", 5, 303, 113, 128,
     5, 303, true},
    {"STM32L431_433_443_LQFP64.bsdl", "STM32L431_433_443_LQFP64", 5, 234, 59, 64, 5, 234, true},
    {"STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5, 393, 59, 64, 5, 393, true},
    {"Verde_Processor.bsdl", "Verde_Processor", 5, 356, 80, 544, 10, 356, true},
    {"XA3S400_FG456.bsdl", "XA3S400_FG456", 6, 815, 286, 387, 19, 815, true},
    {"XC95108.bsdl", "XC95108", 8, 324, 135, 135, 12, 324, true},
    {"broken/bsr_length_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5, 393, 59, 64,
     5, 392, false},
    {"broken/bsr_to_ports_mapping_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5,
     393, 58, 64, 5, 393, true},
    {"broken/double_assigned_pins_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5,
     393, 59, 65, 5, 393, true},
    {"broken/entity_name_test0__CortexMx.bsd", "CortexMx", 4, 1, 5, 5, 6, 1, true},
    {"broken/entity_name_test1__CortexMx.bsd", "CortexMx", 4, 1, 5, 5, 6, 1, true},
    {"broken/extra_pins_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5, 393, 59, 65,
     5, 393, true},
    {"broken/pin_count_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5, 393, 59, 63,
     5, 393, true},
    {"broken/pin_to_port_mapping_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5, 393,
     58, 64, 5, 393, true},
    {"broken/port_to_pin_mapping_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5, 393,
     59, 63, 5, 393, true},
    {"broken/ports_and_pin_map_length_test1__STM32U575_U585_LQFP64.bsd", "STM32U575_U585_LQFP64", 5,
     393, 58, 64, 5, 393, true},
    {"ep1c3t100.bsd", "EP1C3T100", 10, 339, 80, 100, 8, 339, true},
    {"lae5um45fcsfbga285.bsm", "LAE5UM_45F_XXMG285", 8, 510, 156, 285, 24, 510, true},
    {"lfe5u25fcabga256.bsm", "LFE5U_25F_XXBG256", 8, 409, 218, 256, 24, 409, true},
    {"lfe5um5g_45f_cabga381.bsm", "LFE5UM5G_45F_XXBG381", 8, 510, 260, 381, 24, 510, true},
    {"mpc567xr_416_r1.bsdl", "MPC5676R", 5, 524, 95, 416, 26, 524, true},
    {"sctm002.bsm", "sn74bct8244a", 8, 18, 13, 100, 13, 20, true},
};

struct RefusedFile {
    const char* name;
    int line;
    const char* explanation; // after the place
};

constexpr RefusedFile kRefused[] = {
    {"broken/cell_desc_not_supported__STM32U575_U585_LQFP64.bsd", 236, "unknown Cell_Function\n"},
    {"broken/port_type_not_supported__STM32U575_U585_LQFP64.bsd", 36,
     "syntax error\n        : improper port declaration\n"},
};

std::filesystem::path FindRealFiles() {
    const char* shared = std::getenv("VELFLASH_SHARED");
    const std::filesystem::path parent = shared ? shared : OM_SOURCE_DIR "/../shared";
    std::error_code ignored; // a folder that cannot be examined is as good as none
    return std::filesystem::is_directory(parent / "bsdl", ignored) ? parent / "bsdl"
                                                                   : std::filesystem::path();
}

template <typename Container>
size_t SizeOfAll(const Container& lists) {
    return std::accumulate(lists.begin(), lists.end(), size_t{0},
                           [](size_t sum, const auto& list) { return sum + list.size(); });
}

size_t CountPins(const OmBsdlData& data) {
    size_t pins = 0;
    for (const auto& [name, entries] : data.pinMappings)
        pins += entries.size();
    return pins;
}

class RealFiles : public testing::Test {
  protected:
    void SetUp() override {
        folder = FindRealFiles();
        if (folder.empty())
            std::cout << "no vendor files here: nothing tested\n";
    }

    bool Parse(const char* name) {
        data = {};
        callback.text.clear();
        path = (folder / name).string();
        return ParseBsdlFile(path.c_str(), data, &callback);
    }

    std::filesystem::path folder;
    std::string path;
    OmBsdlData data;
    OmBsdlParserCallbackImpl callback;
};

} // namespace

TEST_F(RealFiles, AreReadCompletely) {
    if (folder.empty())
        return;
    for (const AcceptedFile& file : kAccepted) {
        SCOPED_TRACE(file.name);
        EXPECT_TRUE(Parse(file.name)) << callback.text;
        EXPECT_EQ(callback.text, "");
        EXPECT_EQ(data.entity, file.entity);
        EXPECT_EQ(data.GetInstructionLength(), file.instructionLength);
        EXPECT_EQ(data.GetBoundaryLength(), file.boundaryLength);
        EXPECT_EQ(data.ports.size(), file.ports);
        EXPECT_EQ(CountPins(data), file.pins);
        EXPECT_EQ(data.instructions.size(), file.instructions);
        EXPECT_EQ(SizeOfAll(data.cells), file.cellEntries);
        OmBsdlData copy;
        EXPECT_EQ(CheckBsdlContent(data, copy), file.contentIsComplete);
    }
}

TEST_F(RealFiles, ComeBackFromTheirXmlFormWhole) {
    if (folder.empty())
        return;
    for (const AcceptedFile& file : kAccepted) {
        if (!file.contentIsComplete)
            continue;
        SCOPED_TRACE(file.name);
        ASSERT_TRUE(Parse(file.name));
        OmBsdlData copy;
        ASSERT_TRUE(CheckBsdlContent(data, copy));
        EXPECT_EQ(copy.attributes.size(), 2u);
        copy.attributes = data.attributes;
        EXPECT_EQ(copy, data);
    }
}

TEST_F(RealFiles, WithAMistakeOfTheLanguageAreRefused) {
    if (folder.empty())
        return;
    for (const RefusedFile& file : kRefused) {
        EXPECT_FALSE(Parse(file.name));
        EXPECT_EQ(callback.text, "Error: (in '" + path + "' on line " + std::to_string(file.line) +
                                     ") " + file.explanation);
    }
}
