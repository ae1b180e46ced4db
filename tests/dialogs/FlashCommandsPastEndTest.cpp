// Commands that are asked for more than the flash has: 512 bytes, so up to 1FFh. What lies further
// up would come round to the beginning, since the upper bits of an address fall away.
#include "tests/dialogs/FlashCommandsFixture.h"

namespace {

constexpr wchar_t kDataPastEnd[] =
    L"The data reach past the end of the flash: the last byte is at offset 00203h, the flash ends "
    L"at 001FFh.";

ModalSteps::Step Move(const char* check, const char* start) {
    return [=](wxDialog& shown) {
        ClickCheck(shown, check);
        Type(shown, check, start);
        PressButton(shown, wxID_OK);
    };
}

ModalSteps::Step FillPiece(const char* from, const char* size) {
    return [=](wxDialog& shown) {
        Type(shown, "&From address:", from);
        Type(shown, "&Size in bytes:", size);
        PressButton(shown, wxID_OK);
    };
}

} // namespace

class FlashPastEndTest : public FlashCommandsTest {
  protected:
    FlashPastEndTest() {
        UseSetup(kCmdSetAmd);
        FillFlash(Bytes(8, 0x5A));
    }

    // Nothing but the identification has reached the flash.
    void ExpectUntouched() const {
        EXPECT_FALSE(target_.chips[0].Saw(0xA0)); // Program
        EXPECT_FALSE(target_.chips[0].Saw(0x80)); // the erase commands
        EXPECT_EQ(ErasedSectors(), Sectors());
        EXPECT_EQ(FlashBytes(0, 8), Bytes(8, 0x5A));
    }
};

TEST_F(FlashPastEndTest, ProgramIsRefusedBeforeItErases) {
    LoadData(0x1FC, Bytes(8, 0x11));
    dialogs_.ExpectAndPress("Program", wxID_OK);
    user_.Expect(kDataPastEnd, kWarningBox);
    ChooseMenu(*frame_, kIdProgram);
    ExpectUntouched();
}

TEST_F(FlashPastEndTest, ProgramOfDataMovedThereIsRefused) {
    LoadData(0, Bytes(8, 0x11));
    dialogs_.Expect("Program", Move("&Ignore the data view contents address and instead program "
                                    "data into the flash starting at address:",
                                    "1fc"));
    user_.Expect(kDataPastEnd, kWarningBox);
    ChooseMenu(*frame_, kIdProgram);
    ExpectUntouched();
}

TEST_F(FlashPastEndTest, EraseForTheDataIsRefused) {
    LoadData(0x1FC, Bytes(8, 0x11));
    dialogs_.Expect("Erase", [](wxDialog& shown) {
        ClickRadio(shown, "Erase only sectors &necessary to program data view contents");
        PressButton(shown, wxID_OK);
    });
    user_.Expect(kDataPastEnd, kWarningBox);
    ChooseMenu(*frame_, kIdErase);
    ExpectUntouched();
}

TEST_F(FlashPastEndTest, VerifySaysSoInsteadOfEndingQuietly) {
    LoadData(0x1FC, Bytes(8, 0xFF));
    dialogs_.ExpectAndPress("Verify", wxID_OK);
    user_.Expect(kDataPastEnd, kWarningBox);
    ChooseMenu(*frame_, kIdVerify);
}

TEST_F(FlashPastEndTest, BlankCheckForTheDataSaysSo) {
    LoadData(0x1FC, Bytes(8, 0xFF));
    dialogs_.ExpectAndPress("Blank Check", wxID_OK);
    user_.Expect(kDataPastEnd, kWarningBox);
    ChooseMenu(*frame_, kIdBlankCheck);
}

TEST_F(FlashPastEndTest, PieceOfMemoryIsToldForBlankCheckAndRead) {
    LoadData(0, {1, 2});

    const struct {
        int id;
        const char* title;
        const char* from;
        const char* size;
        const wchar_t* told;
    } cases[] = {
        {kIdBlankCheck, "Blank Check", "1fc", "5",
         L"The range reaches past the end of the flash: there is nothing at offset 00200h, the "
         L"flash "
         L"ends at 001FFh."},
        {kIdRead, "Read", "200", "1",
         L"The range reaches past the end of the flash: there is nothing at offset 00200h, the "
         L"flash "
         L"ends at 001FFh."},
        {kIdRead, "Read", "7FFFFFFF", "2147483647",
         L"The range reaches past the end of the flash: there is nothing at offset 7FFFFFFFh, the "
         L"flash ends at 001FFh."},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.title << " " << c.from);
        dialogs_.Expect(c.title, [c](wxDialog& shown) {
            if (c.id == kIdBlankCheck)
                ClickRadio(shown, "S&pecify a piece of memory to blank check");
            FillPiece(c.from, c.size)(shown);
        });
        user_.Expect(c.told, kWarningBox);
        ChooseMenu(*frame_, c.id);
    }
    EXPECT_EQ(GetCaption(), " data.srec, 2 Bytes"); // the shown data stay
}
