#include "cli/ConsoleInterface.h"

#include "tests/cli/StreamText.h"

namespace {

TEST(ConsoleInterface, MessagesAreLinesWithoutTheProductsName) {
    StreamText text;
    OmConsoleInterface user(text.stream, false, false);
    EXPECT_EQ(user.ShowMessage(L"It failed.", kProductName, kErrorBox), OmAnswer::Ok);
    EXPECT_EQ(text.Take(), "It failed.\n");
    EXPECT_EQ(user.ShowMessage(L"No pins.", L"Setup Integrity Check Error", kWarningBox),
              OmAnswer::Ok);
    EXPECT_EQ(text.Take(), "Setup Integrity Check Error: No pins.\n");
}

TEST(ConsoleInterface, FailureIsFollowedByItsReason) {
    StreamText text;
    OmConsoleInterface user(text.stream, false, true);
    user.ShowFailure(L"It failed.", L"The plug is out.");
    EXPECT_EQ(text.Take(), "It failed.\nThe plug is out.\n");
    user.ShowFailure(L"It failed.", L"");
    EXPECT_EQ(text.Take(), "It failed.\n");
}

TEST(ConsoleInterface, QuietLeavesOutOnlyTheMessagesOfSuccess) {
    StreamText text;
    OmConsoleInterface user(text.stream, true, true);
    user.ShowMessage(L"Done.", kProductName, kInformationBox);
    EXPECT_EQ(text.Take(), "");
    user.ShowMessage(L"Failed.", kProductName, kErrorBox);
    EXPECT_EQ(text.Take(), "Failed.\n");
    user.ShowMessage(L"Sure?", kProductName, kQuestionBox);
    EXPECT_EQ(text.Take(), "Sure?\nAnswered Yes.\n");
}

TEST(ConsoleInterface, QuestionsAreAnsweredByTheOption) {
    struct {
        OmButtons buttons;
        OmAnswer withYes;
        OmAnswer without;
    } const cases[] = {
        {OmButtons::YesNo, OmAnswer::Yes, OmAnswer::No},
        {OmButtons::OkCancel, OmAnswer::Ok, OmAnswer::Cancel},
        {OmButtons::YesNoCancel, OmAnswer::Yes, OmAnswer::Cancel},
    };

    for (const auto& c : cases) {
        StreamText text;
        const OmMessageStyle style{c.buttons, OmIcon::Question};
        OmConsoleInterface willing(text.stream, true, false);
        EXPECT_EQ(willing.ShowMessage(L"Sure?", kProductName, style), c.withYes);
        EXPECT_EQ(text.Take(), "Sure?\nAnswered Yes.\n");
        OmConsoleInterface careful(text.stream, false, false);
        EXPECT_EQ(careful.ShowMessage(L"Sure?", kProductName, style), c.without);
        EXPECT_EQ(text.Take(), "Sure?\nAnswered No. The option --yes answers Yes.\n");
    }
}

TEST(ConsoleInterface, LogIsWrittenAsItComes) {
    StreamText text;
    OmConsoleLog log(text.stream);
    log.Write(L"Creating OmFtd2xx\n");
    log.Write(L"0101+\n");
    EXPECT_EQ(text.Take(), "Creating OmFtd2xx\n0101+\n");
}

} // namespace
