#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

TEST(UserInterface, WithoutAWindowEveryQuestionIsAnsweredWithWhatChangesNothing) {
    EXPECT_EQ(ShowMessage(L"text", kErrorBox), OmAnswer::Ok);
    EXPECT_EQ(ShowMessage(L"text", kLossQuestionBox), OmAnswer::No);
    EXPECT_EQ(ShowMessage(L"text", kSaveQuestionBox), OmAnswer::Cancel);
}

TEST(UserInterface, BoxesBearTheProductName) {
    RecordingUserInterface user;
    user.Expect(L"Lost?", kLossQuestionBox, OmAnswer::Yes, L"Velmora Flash Programmer");
    EXPECT_EQ(ShowMessage(L"Lost?", kLossQuestionBox), OmAnswer::Yes);
}

TEST(UserInterface, TheRecorderFailsOnABoxNobodyExpected) {
    EXPECT_NONFATAL_FAILURE(
        {
            RecordingUserInterface user;
            ShowMessage(L"surprise", kErrorBox);
        },
        "unexpected box");
}

TEST(UserInterface, TheRecorderFailsOnABoxThatDidNotCome) {
    EXPECT_NONFATAL_FAILURE(
        {
            RecordingUserInterface user;
            user.Expect(L"never", kErrorBox);
        },
        "did not come");
}

TEST(UserInterface, BusyCursorsNest) {
    RecordingUserInterface user;
    {
        const OmBusyCursor outer;
        const OmBusyCursor inner;
        EXPECT_EQ(user.busyDepth, 2);
    }
    EXPECT_EQ(user.busyDepth, 0);
}
