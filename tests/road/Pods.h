// Every kind of pod that can drive a virtual board.
#pragma once

#include "platform/PortDriver.h"
#include "tests/road/RoadFixture.h"
#include "virtualboard/ParallelPort.h"

#include <memory>
#include <string>
#include <vector>

struct PodKind {
    const char* name;
    OmCableType type;
    const char* boardLine;   // of a pod with a vendor's library, null for a parallel port
    const char* parallelPod; // null for the others
};

const std::vector<PodKind>& AllPods();

inline void PrintTo(const PodKind& pod, std::ostream* stream) {
    *stream << pod.name;
}

// A machine whose LPT1 leads to the board.
class BoardPorts : public OmPortDriverOpener {
  public:
    BoardPorts(vb::Board& board, const char* pod)
        : port(board, vb::FindParallelPod(pod)), previous_(SetPortDriverOpener(this)) {}

    ~BoardPorts() override { SetPortDriverOpener(previous_); }

    BoardPorts(const BoardPorts&) = delete;
    BoardPorts& operator=(const BoardPorts&) = delete;

    std::unique_ptr<OmPortDriver> Open(const std::string& name) override;

    vb::ParallelPort port;

  private:
    OmPortDriverOpener* previous_;
};

// A board with that pod on it, and the program set to use it.
struct PodRoad {
    explicit PodRoad(const PodKind& pod);
    ~PodRoad();

    // The connection breaks after so many calls of the driver or the library.
    void BreakAfter(uint64_t calls);

    Road road;
    std::unique_ptr<BoardPorts> ports; // null for pods with a vendor's library
};
