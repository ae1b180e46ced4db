#include "jobs/FlashReach.h"
#include "tests/jobs/JobsFixture.h"

namespace {

constexpr uint32_t kTop = 0xFFFFFFFF;

} // namespace

TEST_F(JobsTest, PartWithoutASizeGoesToTheEnd) {
    UseSetup(kCmdSetAmd);
    OmAddressRange range;
    EXPECT_TRUE(FindFlashPart(programmer, {0x1F0, std::nullopt}, range));
    EXPECT_EQ(range.start, 0x1F0u);
    EXPECT_EQ(range.size, 0x10u);
}

TEST_F(JobsTest, FirstOffsetThatIsMissingIsNamed) {
    UseSetup(kCmdSetAmd);

    struct {
        OmFlashPart part;
        const wchar_t* missing;
    } const cases[] = {
        {{0x1FF, 2}, L"00200h"},
        {{0x200, std::nullopt}, L"00200h"},
        {{0x1FE, kTop}, L"00200h"},
        {{kTop, kTop}, L"FFFFFFFFh"},
    };

    OmAddressRange range;
    for (const auto& c : cases) {
        ui.Expect(std::wstring(L"The range reaches past the end of the flash: there is nothing at "
                               L"offset ") +
                      c.missing + L", the flash ends at 001FFh.",
                  kWarningBox);
        EXPECT_FALSE(FindFlashPart(programmer, c.part, range));
    }
}

TEST_F(JobsTest, LargestFlashReachesEveryAddress) {
    UseSetup(kCmdSetAmd);
    OmDesignSetup setup = programmer.setup;
    setup.addressPins.resize(32, setup.addressPins.front());
    programmer.SetDesignSetup(setup);
    EXPECT_TRUE(CheckDataFit(programmer, ImageOf(kTop, {1})));
    OmAddressRange range;
    EXPECT_TRUE(FindFlashPart(programmer, {kTop, 1}, range));
}
