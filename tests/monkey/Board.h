// The board that a monkey's program is connected to, and what goes wrong with it. There is always
// one: without a board, time would stand still.
#pragma once

#include "tests/monkey/Dice.h"
#include "tests/road/Pods.h"
#include "tests/road/RoadFixture.h"

#include <functional>
#include <memory>

// The board's time, which lets the monkey do something at each report of progress.
class InterruptingClock : public BoardTime {
  public:
    int64_t Seconds() override {
        if (onLook)
            onLook();
        return kStart + BoardTime::Seconds();
    }

    std::function<void()> onLook;

  private:
    static constexpr int64_t kStart = 1000000000;
};

class MonkeyBoard {
  public:
    explicit MonkeyBoard(Dice& dice);
    ~MonkeyBoard();
    MonkeyBoard(const MonkeyBoard&) = delete;
    MonkeyBoard& operator=(const MonkeyBoard&) = delete;

    // Another flash, another pod, everything plugged in and whole.
    void Replace();

    // The setup that describes the board, and connection settings that lead to it.
    void DescribeToProgram();

    // The same with something wrong: a pin left out, sectors that no chip has.
    void DescribeWrongly();

    // Something breaks, now or some calls later.
    void Break();

    InterruptingClock clock;

  private:
    Dice& dice_;
    const PodKind* pod_ = nullptr;
    vb::BuiltBoard built_;
    vb::Board* board_ = nullptr;
    std::unique_ptr<BoardPorts> ports_;
};
