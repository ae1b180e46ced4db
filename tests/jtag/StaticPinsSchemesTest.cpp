#include "jtag/StaticPinsSchemes.h"

#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/sstream.h>

namespace {

using Schemes = OmStaticPinsSchemes;

const OmFtd2xxStaticPinsScheme kJtagKey{L"Amontec JTAGkey", 0x0710, 0x0300, true};
const OmFtd2xxStaticPinsScheme kOlimex{L"Olimex ARM-USB-OCD", 0x0710, 0x0300, true};
const OmFtd2xxStaticPinsScheme kTurtelizer{L"Turtelizer 2", 0x0010, 0x0000, true};
const OmFtd2xxStaticPinsScheme kMine{L"My pod", 0x0510, 0x0100, false};
const OmFtd2xxStaticPinsScheme kOther{L"Other pod", 0xFFF0, 0xABC0, false};

class StaticPinsSchemesTest : public testing::Test {
  protected:
    StaticPinsSchemesTest() : previous_(wxConfigBase::Set(&store_)) {}

    ~StaticPinsSchemesTest() override { wxConfigBase::Set(previous_); }

    wxStringInputStream nothing_{wxString()};
    wxFileConfig store_{nothing_};

  private:
    wxConfigBase* previous_;
};

} // namespace

TEST_F(StaticPinsSchemesTest, EmptyStoreGivesThePredefinedSchemes) {
    EXPECT_EQ(LoadStaticPinsSchemes(), (Schemes{kJtagKey, kOlimex, kTurtelizer}));
}

TEST_F(StaticPinsSchemesTest, SavedSchemesComeBackBehindThePredefinedOnes) {
    SaveStaticPinsSchemes({kJtagKey, kMine, kOther});
    EXPECT_EQ(store_.Read("/Ftd2xxSchemeDesc_1", ""), "My pod");
    EXPECT_EQ(store_.ReadLong("/Ftd2xxSchemeGpioDir_1", 0), 0x0510);
    EXPECT_EQ(store_.ReadLong("/Ftd2xxSchemeGpioValue_2", 0), 0xABC0);
    EXPECT_FALSE(store_.HasEntry("/Ftd2xxSchemeDesc_3"));
    EXPECT_EQ(LoadStaticPinsSchemes(), (Schemes{kJtagKey, kOlimex, kTurtelizer, kMine, kOther}));
}

TEST_F(StaticPinsSchemesTest, SavingRemovesWhatWasThereAndNothingElse) {
    SaveStaticPinsSchemes({kMine, kOther});
    store_.Write("/ConnCableType", 6L);
    store_.Write("/Ftd2xxSchemeGpioDir_77", 1L);
    store_.SetPath("/Elsewhere");
    SaveStaticPinsSchemes({kOther});
    EXPECT_EQ(store_.GetPath(), "/Elsewhere");
    EXPECT_EQ(store_.ReadLong("/ConnCableType", 0), 6);
    EXPECT_FALSE(store_.HasEntry("/Ftd2xxSchemeGpioDir_77"));
    EXPECT_FALSE(store_.HasEntry("/Ftd2xxSchemeDesc_2"));
    EXPECT_EQ(LoadStaticPinsSchemes(), (Schemes{kJtagKey, kOlimex, kTurtelizer, kOther}));
}

TEST_F(StaticPinsSchemesTest, ReadingStopsAtAGap) {
    SaveStaticPinsSchemes({kMine, kOther, kMine});
    store_.DeleteEntry("/Ftd2xxSchemeGpioValue_2");
    EXPECT_EQ(LoadStaticPinsSchemes(), (Schemes{kJtagKey, kOlimex, kTurtelizer, kMine}));
    store_.DeleteEntry("/Ftd2xxSchemeGpioDir_1");
    EXPECT_EQ(LoadStaticPinsSchemes().size(), 3u);
    SaveStaticPinsSchemes({kMine});
    store_.Write("/Ftd2xxSchemeDesc_1", wxString());
    EXPECT_EQ(LoadStaticPinsSchemes().size(), 3u);
}

TEST_F(StaticPinsSchemesTest, ReadingEndsBeforeNumber1000) {
    SaveStaticPinsSchemes(Schemes(1200, kMine));
    EXPECT_EQ(LoadStaticPinsSchemes().size(), 3u + 999);
}

TEST_F(StaticPinsSchemesTest, SchemeWithoutADescriptionDoesNotHideThoseBehindIt) {
    SaveStaticPinsSchemes({{L"", 1, 1, false}, kMine});
    EXPECT_EQ(LoadStaticPinsSchemes(), (Schemes{kJtagKey, kOlimex, kTurtelizer, kMine}));
}

TEST(FindScheme, ComparesStatesWithoutTheJtagPins) {
    const Schemes schemes = {kJtagKey, kOlimex, kTurtelizer, kMine};

    const struct {
        const wchar_t* description;
        uint16_t gpioDir;
        uint16_t gpioValue;
        int index;
    } cases[] = {
        {L"", 0x0710, 0x0300, 0},
        {L"", 0x071B, 0x030A, 0},
        {L"Olimex ARM-USB-OCD", 0x071F, 0x0305, 1}, // the description decides between equals
        {L"My pod", 0x0710, 0x0300, 0},             // but not more
        {L"Turtelizer 2", 0x0020, 0x0000, -1},
        {L"", 0x0010, 0x0010, -1},
        {L"anything", 0x0510, 0x010F, 3},
    };

    for (const auto& c : cases)
        EXPECT_EQ(FindScheme(schemes, c.description, c.gpioDir, c.gpioValue), c.index)
            << c.gpioDir << " " << c.gpioValue;
}
