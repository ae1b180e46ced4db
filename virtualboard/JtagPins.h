// TCK, TMS and TDI moved by hand, one register write at a time: how parallel-port pods and the
// direct mode of byte-oriented pods drive a chain.
#pragma once

#include "virtualboard/Board.h"

#include <cstddef>
#include <cstdint>

namespace vb {

class JtagPins {
  public:
    explicit JtagPins(Board& board) : board_(board) {}

    // A rise of TCK clocks the chain with the levels that come with it.
    void Set(bool tck, bool tms, bool tdi);

    bool Tms() const { return tms_; }

    bool Tdi() const { return tdi_; }

    // TDO changes with the fall of TCK and not with its rise.
    bool Tdo() const { return tck_ ? heldTdo_ : board_.Chain().Tdo(); }

  private:
    Board& board_;
    bool tck_ = false;
    bool tms_ = true;
    bool tdi_ = true;
    bool heldTdo_ = true; // while TCK is high
};

// `count` cycles from packed TMS and TDI bits, low bit first. Bit k of `tdo`, if not null, is what
// TDO showed at the rising edge of cycle k.
void RunPacked(JtagChain& chain, const uint8_t* tms, const uint8_t* tdi, uint8_t* tdo,
               size_t count);

} // namespace vb
