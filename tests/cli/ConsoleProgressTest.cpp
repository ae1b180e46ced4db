#include "cli/ConsoleProgress.h"

#include "cli/Interrupt.h"
#include "tests/cli/StreamText.h"
#include "tests/support/VirtualClock.h"

namespace {

class ConsoleProgress : public ::testing::Test {
  protected:
    VirtualClock clock_;
    StreamText text_;
};

TEST_F(ConsoleProgress, LinesTellEveryTenth) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Lines);
    EXPECT_TRUE(progress.OnProgress(0, L"Reading..."));
    for (const int percent : {1, 9, 10, 11, 35, 39, 100})
        EXPECT_TRUE(progress.OnProgress(percent, nullptr));
    EXPECT_EQ(text_.Take(), "Reading...\nReading... 10%\nReading... 30%\nReading... 100%\n");
    EXPECT_TRUE(progress.OnProgress(-1, L"Erasing sector 1 of 2..."));
    EXPECT_TRUE(progress.OnProgress(-1, L"Erasing sector 1 of 2..."));
    EXPECT_TRUE(progress.OnProgress(-1, L"Erasing sector 2 of 2..."));
    progress.OnFinish();
    EXPECT_EQ(text_.Take(), "Erasing sector 1 of 2...\nErasing sector 2 of 2...\n");
}

TEST_F(ConsoleProgress, TerminalShowsPercentRateAndTimeLeft) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Terminal);
    progress.Begin(100 * 1024);
    progress.OnProgress(0, L"Reading...");
    EXPECT_EQ(text_.Take(), "\rReading...  0%");
    clock_.AdvanceMilliseconds(5000);
    progress.OnProgress(25, nullptr);
    EXPECT_EQ(text_.Take(), "\rReading...  25%  5.0 KiB/s  0:15 left");
    clock_.AdvanceMilliseconds(99);
    progress.OnProgress(26, nullptr);
    EXPECT_EQ(text_.Take(), "") << "a line that changes too often costs more than the scans";
    progress.OnFinish();
    EXPECT_EQ(text_.Take(), "\r                                     \r");
    progress.OnFinish();
    EXPECT_EQ(text_.Take(), "");
}

TEST_F(ConsoleProgress, TerminalShowsTheTimeOfWhatHasNoFigure) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Terminal);
    progress.OnProgress(-1, L"Erasing the entire flash...");
    clock_.AdvanceMilliseconds(61000);
    progress.OnProgress(-1, nullptr);
    EXPECT_EQ(text_.Take(), "\rErasing the entire flash...  0:00"
                            "\rErasing the entire flash...  1:01");
}

TEST_F(ConsoleProgress, ShorterLineLeavesNothingOfTheLongerOne) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Terminal);
    progress.OnProgress(0, L"Verifying...");
    progress.OnProgress(0, L"Done");
    progress.OnProgress(0, L"Reading...");
    EXPECT_EQ(text_.Take(), "\rVerifying...  0%\rDone  0%        \rReading...  0%");
}

TEST_F(ConsoleProgress, SectorsMakeUpThePercentThatTheEngineDoesNotTell) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Terminal);
    progress.BeginSteps(4);
    progress.OnProgress(-1, L"Erasing sectors...");
    progress.OnProgress(-1, L"Erasing sector 1 of 4...");
    clock_.AdvanceMilliseconds(10000);
    progress.OnProgress(-1, nullptr);
    progress.OnProgress(-1, L"Erasing sector 2 of 4...");
    clock_.AdvanceMilliseconds(5000);
    progress.OnProgress(-1, L"Erasing sector 2 of 4...");
    EXPECT_EQ(text_.Take(), "\rErasing sectors...  0%  0:00"
                            "\rErasing sector 1 of 4...  0%  0:00"
                            "\rErasing sector 1 of 4...  0%  0:10"
                            "\rErasing sector 2 of 4...  25%  0:30 left"
                            "\rErasing sector 2 of 4...  25%  0:45 left");
}

TEST_F(ConsoleProgress, SectorsAreOneLineEachInAFile) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Lines);
    progress.BeginSteps(2);
    progress.OnProgress(-1, L"Erasing sector 1 of 2...");
    progress.OnProgress(-1, nullptr);
    progress.OnProgress(-1, L"Erasing sector 2 of 2...");
    EXPECT_EQ(text_.Take(), "Erasing sector 1 of 2...\nErasing sector 2 of 2...\n");
}

TEST_F(ConsoleProgress, NextStepStartsItsOwnClock) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Terminal);
    progress.Begin(4 * 1048576);
    progress.OnProgress(0, L"Programming the flash...");
    clock_.AdvanceMilliseconds(100000);
    progress.Begin(4 * 1048576);
    progress.OnProgress(0, L"Verifying the programmed data...");
    clock_.AdvanceMilliseconds(1000);
    text_.Take();
    progress.OnProgress(50, nullptr);
    EXPECT_EQ(text_.Take(), "\rVerifying the programmed data...  50%  2.0 MiB/s  0:01 left");
}

TEST_F(ConsoleProgress, QuietSaysNothing) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::None);
    EXPECT_TRUE(progress.OnProgress(50, L"Reading..."));
    progress.OnFinish();
    EXPECT_EQ(text_.Take(), "");
}

TEST_F(ConsoleProgress, EchoOfCtrlCIsWrittenOverToo) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::Terminal);
    progress.OnProgress(0, L"Reading...");
    SetInterrupted(true);
    text_.Take();
    progress.OnFinish();
    EXPECT_EQ(text_.Take(), "\r                \r") << "14 columns, and two for ^C";
    SetInterrupted(false);
}

TEST_F(ConsoleProgress, InterruptAsksToStop) {
    OmConsoleProgress progress(text_.stream, OmProgressStyle::None);
    SetInterrupted(true);
    EXPECT_FALSE(progress.OnProgress(50, nullptr));
    SetInterrupted(false);
    EXPECT_TRUE(progress.OnProgress(50, nullptr));
}

} // namespace
