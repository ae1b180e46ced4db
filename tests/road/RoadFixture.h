// The whole road: a setup made for a virtual board, the program's real FT2232 cable over the
// stand-in of the vendor's library, and the chip's own content on the far side.
#pragma once

#include "data/DataImage.h"
#include "flash/FlashProgrammer.h"
#include "platform/Clock.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/RecordingUserInterface.h"
#include "virtualboard/BoardBuilder.h"

#include <gtest/gtest.h>
#include <memory>

// Time as the board sees it: TCK, and the pauses that the host makes. Nothing waits.
class BoardTime : public OmClock {
  public:
    BoardTime() : previous_(SetClock(this)) {}

    ~BoardTime() override { SetClock(previous_); }

    BoardTime(const BoardTime&) = delete;
    BoardTime& operator=(const BoardTime&) = delete;

    uint64_t Milliseconds() override { return Microseconds() / 1000; }

    int64_t Seconds() override { return static_cast<int64_t>(Microseconds() / 1000000); }

    void SleepMilliseconds(unsigned milliseconds) override;

    // Runs a millisecond a look: a wait between two edges of TCK is over at once.
    int64_t PerformanceCounter() override { return counter_ += 1000; }

    int64_t PerformanceFrequency() override { return 1000000; }

  private:
    static uint64_t Microseconds();

    OmClock* previous_;
    int64_t counter_ = 0;
};

// The setup that describes a board, as a user would enter it.
OmDesignSetup MakeSetup(const vb::BuiltBoard& built);

class Road {
  public:
    // Installs the board and points a fresh programmer at it, through the FT2232 at 30 MHz.
    explicit Road(const vb::BoardBuilder& builder);
    // Fails the test if anything has happened on the pins that would hurt or lie on a real board.
    ~Road();
    Road(const Road&) = delete;
    Road& operator=(const Road&) = delete;

    // Another board of the same making, with its pod plugged in.
    void Replug();

    // Prepare as the Program command does.
    bool PrepareToProgram();

    // Sector offsets that the image touches.
    OmSectorRange SectorsOf(const OmDataImage& image) const;

    // Every byte of every chip, before anything is done to it.
    void FillFlash(uint8_t value);

    // The array as a processor sees it.
    std::vector<uint8_t> Content(size_t count) const;

    // Names the first byte of the array that is another.
    void ExpectContent(const std::vector<uint8_t>& expected) const;

    // Nothing that would hurt or lie has happened on the pins so far; the end of the road looks
    // once more.
    void ExpectNoViolation() const;

    vb::BuiltBoard built;
    vb::Board* board; // of this process
    BoardTime time;
    RecordingProgress progress;
    OmUnitedProgressCallback united{&progress};
    OmFlashProgrammer programmer;
};

// `count` bytes that no two neighbours share a pattern with: a fixed pseudo-random sequence.
std::vector<uint8_t> Firmware(size_t count, uint32_t seed);
