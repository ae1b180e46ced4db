// The kernel's port driver on a virtual machine whose LPT1 leads to the virtual board.
#pragma once

#include "platform/PortDriver.h"
#include "virtualboard/ParallelPort.h"

#include <memory>
#include <string>

class BoardPort : public OmPortDriverOpener {
  public:
    BoardPort(vb::Board& board, const char* pod);
    ~BoardPort() override;
    BoardPort(const BoardPort&) = delete;
    BoardPort& operator=(const BoardPort&) = delete;

    std::unique_ptr<OmPortDriver> Open(const std::string& name) override;

    // Shared with the handles, some of which stay open to the end of the program.
    struct State {
        State(vb::Board& board, const char* pod) : port(board, vb::FindParallelPod(pod)) {}

        vb::ParallelPort port;
        bool absent = false;
        int openHandles = 0;
        int opens = 0;
        int failAtOpen = -1; // counted from 0
        int calls = 0;
        int failAtCall = -1; // counted from 0 over all control calls
    };

    State* operator->() { return state_.get(); }

  private:
    std::shared_ptr<State> state_;
    OmPortDriverOpener* previous_;
};
