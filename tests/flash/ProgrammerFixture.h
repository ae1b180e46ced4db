// A flash programmer with a board of scans behind its cable, in virtual time, and a user who
// answers from a list.
#pragma once

#include "data/DataImage.h"
#include "flash/FlashProgrammer.h"
#include "tests/flash/FakeTarget.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/VirtualClock.h"

#include <gtest/gtest.h>
#include <vector>

class ProgrammerFixture : public ::testing::Test {
  protected:
    ProgrammerFixture(int chips, int wordSize, int addressPins)
        : target(chips, wordSize, addressPins) {
        UseTargetCable();
    }

    void UseTargetCable() {
        programmer.createCable = [this](OmConnectionSettings&) {
            ++cablesMade;
            return target.MakeCable();
        };
    }

    // As after a successful Prepare for this command set.
    void Ready(OmCommandSet commandSet) {
        const bool intel =
            commandSet == OmCommandSet::IntelStandard || commandSet == OmCommandSet::IntelExtended;
        for (FakeFlashChip& chip : target.chips)
            chip.family = intel ? FakeFlashFamily::Intel : FakeFlashFamily::Amd;
        programmer.SetDesignSetup(target.MakeSetup(intel ? kCmdSetIntel : kCmdSetAmd));
        ASSERT_TRUE(programmer.Prepare(kPrepareFlashCommands | kPrepareIdentify |
                                       kPrepareIdentifyOrFail | kPrepareSectors));
        programmer.commandSet = commandSet;
        progress.reports.clear();
    }

    void ExpectClosed() const {
        EXPECT_EQ(programmer.cable, nullptr);
        EXPECT_EQ(programmer.analyzer, nullptr);
        EXPECT_EQ(target.cablesOpen, 0);
    }

    VirtualClock clock;
    RecordingUserInterface ui;
    RecordingProgress progress;
    OmUnitedProgressCallback united{&progress};
    FakeTarget target;
    OmFlashProgrammer programmer;
    int cablesMade = 0;
};

inline OmDataImage ImageOf(uint32_t address, const std::vector<uint8_t>& bytes) {
    OmDataImage image;
    image.SetBytes(address, bytes);
    return image;
}

inline std::vector<uint8_t> BytesOf(const OmDataImage& image) {
    std::vector<uint8_t> bytes;
    for (const OmDataChunk& chunk : image.GetChunks())
        bytes.insert(bytes.end(), chunk.bytes.begin(), chunk.bytes.end());
    return bytes;
}
