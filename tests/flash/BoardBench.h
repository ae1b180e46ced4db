// The flash engine over a virtual board: the real cable code talks to the stand-in of the vendor's
// library, and behind it stand chain, nets and flash chips that tell what reached them.
#pragma once

#include "data/DataImage.h"
#include "flash/BoundaryScanBus.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/Ftd2xx.h"
#include "setup/DesignSetup.h"
#include "tests/support/VirtualClock.h"
#include "virtualboard/BoardBuilder.h"

#include <cstdint>
#include <string>
#include <vector>

// Setup of a built board: BSDL texts through the parser, pins as the builder laid them out.
OmDesignSetup MakeBoardSetup(const vb::BuiltBoard& built);

class BoardBench : private VirtualClock {
  public:
    // Opens the cable and enters EXTEST.
    explicit BoardBench(const vb::BoardBuilder& builder, uint32_t frequency = 30000000);

    // Fails the test if the checker has anything to say.
    ~BoardBench();

    vb::FlashModel& Chip(size_t index = 0) { return board.Flash(index).Model(); }

    // A stretch of the whole array, as a processor would see it.
    std::vector<uint8_t> Contents(size_t start, size_t size);

    // What the checker has to say, one finding a line.
    std::string Violations() const;

    vb::BuiltBoard built;
    vb::Board& board;
    OmDesignSetup setup;
    OmFtd2xx cable;
    OmChainAnalyzer analyzer;
    OmBoundaryScanBus bus;

  private:
    void SleepMilliseconds(unsigned milliseconds) override {
        board.AddIdleMicroseconds(uint64_t{milliseconds} * 1000);
    }
};

// Bytes without a pattern that a swapped line or a shifted word would keep.
OmDataImage RandomImage(uint32_t address, uint32_t size);
std::vector<uint8_t> BytesOf(const OmDataImage& image);
