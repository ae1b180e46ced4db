// A pod that may answer anything. What it does is spelt by the fuzzer's input; once that is used up
// it behaves well, so that every run ends.
#pragma once

#include "tests/jtag/FakeLibrary.h"

#include <cstddef>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <span>

class Pod : public FakeLoader {
  public:
    Pod(const uint8_t* data, size_t size) : input(data, size) {}

    // Mostly false, so that a scan gets somewhere.
    bool Misbehaves() { return input.ConsumeIntegral<uint8_t>() > 0xF0; }

    // TDO as the input has it, over and over for a long answer: a chain's registers come back the
    // same on every pass.
    void Fill(std::span<uint8_t> answer) {
        const auto pattern = input.ConsumeBytes<uint8_t>(input.ConsumeIntegral<uint8_t>());
        for (size_t i = 0; i < answer.size(); ++i)
            answer[i] = pattern.empty() ? 0 : pattern[i % pattern.size()];
    }

    // Any text, with nothing said about its end.
    void FillText(std::span<char> text) {
        const auto bytes =
            input.ConsumeBytes<char>(input.ConsumeIntegralInRange<size_t>(0, text.size()));
        std::copy(bytes.begin(), bytes.end(), text.begin());
    }

    FuzzedDataProvider input;
};
