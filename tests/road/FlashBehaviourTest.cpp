// How programming lives with flash chips that need time, forget bits or refuse.
#include "flash/BoundaryScanBus.h"
#include "flash/IntelCommands.h"
#include "tests/road/RoadFixture.h"

namespace {

OmDataImage ImageOf(const std::vector<uint8_t>& bytes) {
    OmDataImage image;
    image.SetBytes(0, bytes);
    return image;
}

} // namespace

TEST(FlashBehaviour, SettlesAboveTheProgrammingTimeAndIsKept) {
    const RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Set("buffer", "0").Set("sectors", "16x4K").Set("word-us", "100");
    Road road(builder);
    ASSERT_TRUE(road.PrepareToProgram());
    const std::vector<uint8_t> bytes = Firmware(1024, 3);
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, ImageOf(bytes)));
    road.ExpectContent(bytes);
    const int wait = road.programmer.waitScans;
    EXPECT_GT(wait, 0);
    road.FillFlash(0xFF);
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, ImageOf(bytes)));
    road.ExpectContent(bytes);
    EXPECT_EQ(road.programmer.waitScans, wait);
    road.ExpectNoViolation();
}

// What a busy flash takes for the end of the bypass mode is all over this image.
TEST(FlashBehaviour, SlowFlashInBypassModeLosesNothing) {
    const RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Set("buffer", "0").Set("sectors", "16x4K").Set("word-us", "100");
    Road road(builder);
    road.programmer.setup.UseUnlockBypass = true;
    ASSERT_TRUE(road.PrepareToProgram());
    std::vector<uint8_t> bytes;
    for (int i = 0; i < 300; ++i)
        bytes.insert(bytes.end(), {0x90, 0x00, 0x00, 0x00});
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, ImageOf(bytes)));
    road.ExpectContent(bytes);
    road.ExpectNoViolation();
}

TEST(FlashBehaviour, BitThatDoesNotProgramIsFoundByTheVerify) {
    RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Set("buffer", "0").Set("sectors", "16x4K").Line("fault stuck-bit F1 5 3");
    Road road(builder);
    ASSERT_TRUE(road.PrepareToProgram());
    const OmDataImage image = ImageOf(std::vector<uint8_t>(64, 0x00));
    EXPECT_TRUE(road.programmer.ProgramFlash(road.progress, image)) << "a hole is no failure here";
    user.Expect(L"Data verification failed at offset 0000Ah.\n"
                L"Byte read from flash: 08h; byte expected: 00h.",
                kErrorBox);
    EXPECT_FALSE(road.programmer.VerifyFlash(road.united, image));
}

TEST(FlashBehaviour, AbortedWriteBuffersAreLoadedAgain) {
    const RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Set("buffer", "32").Set("sectors", "16x4K").Line("fault buffer-aborts F1 3");
    Road road(builder);
    ASSERT_TRUE(road.PrepareToProgram());
    const std::vector<uint8_t> bytes = Firmware(2048, 4);
    EXPECT_TRUE(road.programmer.ProgramFlash(road.progress, ImageOf(bytes)));
    road.ExpectContent(bytes);
    road.ExpectNoViolation();
}

TEST(FlashBehaviour, SectorThatFailsToEraseIsNamedAndTheOthersAreErased) {
    RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Set("sectors", "16x4K").Set("sector-us", "1000").Line("fault erase-fails F1 1");
    Road road(builder);
    ASSERT_TRUE(road.PrepareToProgram());
    road.FillFlash(0x00);
    user.Expect(L"An erase error occured while attempting to erase sector 01000h.", kErrorBox);
    EXPECT_FALSE(road.programmer.EraseSectors(road.progress, {0, 4096, 8192}));
    EXPECT_EQ(road.Content(1)[0], 0xFF);
    EXPECT_EQ(road.Content(8193)[8192], 0xFF);
    EXPECT_EQ(road.Content(12289)[12288], 0x00);
}

TEST(FlashBehaviour, LockedBlocksAreRefusedUntilTheyAreUnlocked) {
    RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Flash("intel16-64m").Set("sectors", "16x4K").Set("sector-us", "1000");
    Road road(builder);
    ASSERT_TRUE(road.PrepareToProgram());
    user.Expect(L"An Intel Block Locked error occured while attempting to erase sector 00000h.\n\n"
                L"To unlock sectors go to menu Actions > Intel Specific > Unlock Sectors.",
                kWarningBox);
    EXPECT_FALSE(road.programmer.EraseSectors(road.progress, {0}));
    const std::vector<uint8_t> bytes = Firmware(128, 5);
    user.Expect(L"An Intel Block Locked error occured while attempting to program the flash.\n"
                L"To unlock erase blocks (sectors) go to menu Actions > Intel Specific > Unlock "
                L"Sectors.",
                kWarningBox);
    EXPECT_FALSE(road.programmer.ProgramFlash(road.progress, ImageOf(bytes)));
    EXPECT_TRUE(road.programmer.UnlockSectors(road.progress, {0}));
    EXPECT_TRUE(road.programmer.EraseSectors(road.progress, {0}));
    EXPECT_TRUE(road.programmer.ProgramFlash(road.progress, ImageOf(bytes)));
    road.ExpectContent(bytes);
    EXPECT_TRUE(road.programmer.LockSectors(road.progress, {0}));
    user.Expect(L"An Intel Block Locked error occured while attempting to erase sector 00000h.\n\n"
                L"To unlock sectors go to menu Actions > Intel Specific > Unlock Sectors.",
                kWarningBox);
    EXPECT_FALSE(road.programmer.EraseSectors(road.progress, {0}));
    road.ExpectNoViolation();
}

// What the checker lets pass of an Intel flash, and what it does not.
TEST(FlashBehaviour, ClearStatusIsTheOnlyWriteThatMayComeWithoutAnAddress) {
    const RecordingUserInterface user;
    Road road(vb::BoardBuilder().Flash("intel16-64m").Chips(2).Set("sectors", "16x4K"));
    ASSERT_TRUE(road.PrepareToProgram());
    OmBoundaryScanBus bus;
    std::wstring errors;
    ASSERT_TRUE(bus.BuildFromSetup(road.programmer.setup, road.programmer.setup.devices, errors));
    bus.analyzer = road.programmer.analyzer.get();
    bus.EnterExtest();
    IntelClearStatus(bus);
    EXPECT_EQ(road.board->Violations().Count(), 0u);
    for (const uint8_t command : {kIntelReadArray, kIntelReadId, kIntelEraseSetUp}) {
        OmBusCycleBatch batch(bus);
        batch.SelectForWriting();
        batch.AppendWriteData(OnAllLanes(command));
        batch.AppendRise();
        batch.Run();
        // 15 address lines, seen by two chips
        EXPECT_EQ(road.board->Violations().Count(vb::ViolationKind::FloatingInput), 30u)
            << int{command};
        road.board->Violations().Clear();
    }
}
