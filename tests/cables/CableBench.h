// One cable on a virtual board, by way of the factory, the host's library loader and the stand-ins
// of the vendors' libraries.
#pragma once

#include "jtag/CableFactory.h"
#include "tests/cables/BoardPort.h"
#include "tests/cables/CableCases.h"
#include "tests/cables/SpyLoader.h"
#include "tests/jtag/LogCollector.h"
#include "tests/road/RoadFixture.h"

#include <memory>
#include <optional>
#include <vector>

// U1 auxiliary, U2 and U3 with the flash: instruction lengths 4, 5 and 6.
vb::BoardBuilder ThreeDevices();

class CableBench {
  public:
    explicit CableBench(const CableCase& cable, const vb::BoardBuilder& builder = ThreeDevices());
    ~CableBench();
    CableBench(const CableBench&) = delete;
    CableBench& operator=(const CableBench&) = delete;

    // Null if the factory fails.
    std::unique_ptr<OmCable> Create() { return CreateCable(settings); }

    // TCK by hand, as nothing that the cable knows of: takes the TAP from any state to this one.
    void ForceState(vb::TapState state);

    vb::JtagChain& Chain() { return board->Chain(); }

    // How often the program has asked for TDO: reads of the library or of the status register.
    uint64_t Reads();

    // What is open and not closed: USB devices, ports, libraries.
    int OpenHandles();

    const CableCase& cable;
    vb::Board* board;
    BoardTime time;
    SpyLoader loader;
    std::optional<BoardPort> port; // for a parallel pod
    LogCollector log;
    OmConnectionSettings settings;
};

// A bench with the cable open.
class OpenCable : public CableBench {
  public:
    explicit OpenCable(const CableCase& which, const vb::BoardBuilder& builder = ThreeDevices())
        : CableBench(which, builder), cablePointer(Create()) {
        EXPECT_NE(cablePointer, nullptr) << which.name;
    }

    OmJtagHAL& Hal() { return *cablePointer->GetJtagHAL(); }

    std::unique_ptr<OmCable> cablePointer;
};
