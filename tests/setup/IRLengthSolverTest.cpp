#include "setup/IRLengthSolver.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using Lengths = std::vector<int32_t>;

// Streams are written in the order in which they leave TDO.
OmBitVector Stream(std::string_view text) {
    std::string reversed(text.rbegin(), text.rend());
    return BitsFromText(reversed);
}

struct SolveCase {
    const char* name;
    Lengths lengths;
    const char* stream;
    std::optional<Lengths> expected;
};

TEST(IRLengthSolver, SolvesWhatHasExactlyOneSolution) {
    const SolveCase cases[] = {
        {"one device takes the whole stream", {-1}, "10000000", Lengths{8}},
        {"the pattern must stand at the start", {-1}, "01000000", std::nullopt},
        {"two devices", {-1, -1}, "1000001000", Lengths{6, 4}},
        {"a second place for the border", {-1, -1}, "1001001000", std::nullopt},
        {"the border cannot leave one bit", {-1, -1}, "100000001", std::nullopt},
        {"two bits are enough", {-1, -1}, "1010", Lengths{2, 2}},
        {"known before unknown", {4, -1}, "1010001000", std::nullopt},
        {"known before unknown, pattern at the border", {4, -1}, "1000101000", Lengths{4, 6}},
        {"unknown before known", {-1, 4}, "1010101000", Lengths{6, 4}},
        {"known between unknowns", {-1, 3, -1}, "1000100100100", std::nullopt},
        {"one place for a known one between unknowns",
         {-1, 3, -1},
         "10001001010",
         Lengths{4, 3, 4}},
        {"a known one must show the pattern too", {-1, 3, -1}, "1000010010", Lengths{5, 3, 2}},
        {"stream too short", {-1, 4}, "10100", std::nullopt},
        {"stream too long for known lengths", {2, 2}, "10101", std::nullopt},
        {"known lengths that fill the stream", {2, 3}, "10100", Lengths{2, 3}},
        {"released and unknown bits are no pattern", {-1, -1}, "10ZX10", Lengths{4, 2}},
        {"a pattern of unknown bits", {-1}, "1X00", std::nullopt},
        {"empty list, empty stream", {}, "", Lengths{}},
        {"empty list", {}, "10", std::nullopt},
        {"empty stream", {-1}, "", std::nullopt},
        {"a length far beyond the stream", {0x7FFFFFFF, -1}, "1010", std::nullopt},
    };
    for (const SolveCase& c : cases)
        EXPECT_EQ(SolveIRLengths(c.lengths, Stream(c.stream)), c.expected) << c.name;
}

// The plain search, kept as simple as possible: the first unknown length takes every value that
// leaves two bits for each other unknown one, and the list is tried again from its start.
class PlainSearch {
  public:
    explicit PlainSearch(const OmBitVector& stream) : stream_(stream) {}

    void Try(const Lengths& lengths) {
        size_t position = 0;
        for (const int32_t length : lengths) {
            if (length < 0)
                return TryEachLength(lengths);
            if (position + 1 >= stream_.size() || stream_[position] != 1 ||
                stream_[position + 1] != 0)
                return;
            position += static_cast<size_t>(length);
        }
        if (position != stream_.size())
            return;
        solution = lengths;
        ++count;
    }

    Lengths solution; // the last one found
    int count = 0;

  private:
    void TryEachLength(const Lengths& lengths) {
        const auto unknown = std::find(lengths.begin(), lengths.end(), -1);
        auto rest = static_cast<int>(stream_.size());
        for (auto other = lengths.begin(); other != lengths.end(); ++other) {
            if (other != unknown)
                rest -= *other < 0 ? 2 : *other;
        }
        for (int length = 2; length <= rest; ++length) {
            Lengths copy = lengths;
            copy[static_cast<size_t>(unknown - lengths.begin())] = length;
            Try(copy);
        }
    }

    const OmBitVector& stream_;
};

// Advances `lengths` to the next list over {-1, 2, 3}; false past the last.
bool NextLengths(Lengths& lengths) {
    for (int32_t& length : lengths) {
        length = length == -1 ? 2 : length == 2 ? 3 : -1;
        if (length != -1)
            return true;
    }
    return false;
}

bool SameAnswer(const Lengths& lengths, const OmBitVector& stream) {
    PlainSearch plain(stream);
    plain.Try(lengths);
    const auto answer = SolveIRLengths(lengths, stream);
    return plain.count == 1 ? answer == plain.solution : !answer;
}

TEST(IRLengthSolver, AnswersAsThePlainSearchOnAllSmallCases) {
    int solved = 0;
    for (size_t bits = 0; bits <= 10; ++bits) {
        for (unsigned value = 0; value < 1u << bits; ++value) {
            OmBitVector stream;
            for (size_t bit = 0; bit < bits; ++bit)
                stream.push_back(value >> bit & 1);
            for (size_t devices = 0; devices <= 5; ++devices) {
                Lengths lengths(devices, -1);
                do {
                    ASSERT_TRUE(SameAnswer(lengths, stream))
                        << ::testing::PrintToString(lengths) << " in "
                        << BitsToText(stream, OmBitOrder::LowestFirst);
                    solved += SolveIRLengths(lengths, stream).has_value();
                } while (NextLengths(lengths));
            }
        }
    }
    EXPECT_GT(solved, 1000); // the comparison has met more than refusals
}

// 100 devices of which 20 are unknown: a search over all assignments would not end in a lifetime.
class LongChain : public ::testing::Test {
  protected:
    LongChain() {
        for (int device = 0; device < 100; ++device) {
            const int32_t length = 4 + device % 7;
            expected_.push_back(length);
            lengths_.push_back(device % 5 == 2 ? -1 : length);
            AppendBits(stream_, Stream("10"));
            AppendBits(stream_, static_cast<size_t>(length - 2), 0);
        }
    }

    Lengths expected_;
    Lengths lengths_;
    OmBitVector stream_;
};

TEST_F(LongChain, WithOneSolutionIsSolved) {
    EXPECT_EQ(SolveIRLengths(lengths_, stream_), expected_);
}

TEST_F(LongChain, WithManySolutionsIsGivenUp) {
    for (size_t bit = 0; bit < stream_.size(); ++bit)
        stream_[bit] = bit % 2 == 0;
    const Lengths lengths(100, -1);
    EXPECT_EQ(SolveIRLengths(lengths, stream_), std::nullopt);
}

TEST_F(LongChain, WithoutSolutionIsGivenUp) {
    stream_.pop_back();
    stream_.push_back(1);
    stream_.push_back(1);
    lengths_.back() = 9;
    EXPECT_EQ(SolveIRLengths(lengths_, stream_), std::nullopt);
}

} // namespace
