#include "data/DataFiles.h"
#include "tests/data/ImageText.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using Chunks = std::vector<OmDataChunk>;

class SRecordReader : public ::testing::Test {
  protected:
    bool Read(std::string_view text) {
        image_.ClearImage();
        error_.clear();
        records_ = -1;
        return ReadSRecordFile(folder_.Write("file", text), image_, records_, error_);
    }

    TemporaryFolder folder_;
    OmDataImage image_;
    int records_ = -1;
    std::string error_;
};

struct ReadCase {
    const char* name;
    const char* text;
    int records;
    Chunks chunks;
};

TEST_F(SRecordReader, ReadsDataRecordsOfEveryAddressWidth) {
    const ReadCase cases[] = {
        {"S1", "S1050010ABCD72\n", 1, {{0x10, {0xAB, 0xCD}}}},
        {"S2", "S205123456015D\n", 1, {{0x123456, {1}}}},
        {"S3", "S307FFFFFFFE0102FA\n", 1, {{0xFFFFFFFE, {1, 2}}}},
        {"lower case", "S1050010abcd72\n", 1, {{0x10, {0xAB, 0xCD}}}},
        {"no data", "S1030010EC\n", 1, {}},
        {"no line end", "S1050010ABCD72", 1, {{0x10, {0xAB, 0xCD}}}},
        {"16-bit addresses do not wrap", "S105FFFF0102F9\n", 1, {{0xFFFF, {1, 2}}}},
        {"32-bit addresses do", "S307FFFFFFFF0102F9\n", 1, {{0, {2}}, {0xFFFFFFFF, {1}}}},
        {"later records win", "S104001201E8\nS1040012FFEA\n", 2, {{0x12, {0xFF}}}},
        {"in mid-line", "xyz: S104001201E8\n", 1, {{0x12, {1}}}},
        {"two on a line count once", "S104001201E8 S104001402E5\n", 1, {{0x12, {1}}}},
        {"CRLF", "S104001201E8\r\nS104001402E5\r\n", 2, {{0x12, {1}}, {0x14, {2}}}},
        {"CR alone", "S104001201E8\rS104001402E5\r", 2, {{0x12, {1}}, {0x14, {2}}}},
        {"empty lines",
         "\n\nS104001201E8\n\n\r\n\nS104001402E5\n\n",
         2,
         {{0x12, {1}}, {0x14, {2}}}},
        {"other records are not parsed",
         "S0 what S104001201E8 ever\nS5zz\nS6\nS704\nS8\nS9\nS4\nS104001402E5\n",
         1,
         {{0x14, {2}}}},
        {"a line end as type", "S\nS104001201E8\n", 1, {{0x12, {1}}}},
        {"S as type hides the rest of its line", "SS104001201E8\nS104001402E5\n", 1, {{0x14, {2}}}},
        {"small s is no marker", "s104001201E8\nS104001402E5\n", 1, {{0x14, {2}}}},
        {"S after the last record", "S104001201E8\nS", 1, {{0x12, {1}}}},
        {"text after the last record", "S104001201E8 comment", 1, {{0x12, {1}}}},
        {"reading goes on after a terminator",
         "S104001201E8\nS9030000FC\nS0030000FC\nS104001402E5\n",
         2,
         {{0x12, {1}}, {0x14, {2}}}},
    };
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(Read(c.text)) << error_;
        EXPECT_EQ(records_, c.records);
        EXPECT_EQ(ChunksOf(image_), c.chunks);
    }
}

struct FailCase {
    const char* text;
    const char* error;
    int records;
};

TEST_F(SRecordReader, RefusesWhatIsBroken) {
    const FailCase cases[] = {
        {"", "No S-records found.", 0},
        {"hello\n", "No S-records found.", 0},
        {"S", "No S-records found.", 0},
        {"S0030000FC\nS9030000FC\n", "No S-records found.", 0},
        {"S1", "Invalid file format.", 0},
        {"S10", "Invalid file format.", 0},
        {"S1\n", "Invalid file format.", 0},
        {"S1G4001201E8\n", "Invalid file format.", 0},
        {"S1020010ED\n", "Invalid S-record file format.", 0},
        {"S203123456\n", "Invalid S-record file format.", 0},
        {"S304123456\n", "Invalid S-record file format.", 0},
        {"S104001", "Invalid file format.", 0},
        {"S10400x2", "Invalid file format.", 0},
        {"S10400120", "Invalid file format.", 0},
        {"S104001201", "Invalid file format.", 0},
        {"S104001201E", "Invalid file format.", 0},
        {"S104001201\nE8", "Invalid file format.", 0},
        {"S1040012 1E8\n", "Invalid file format.", 0},
        {"S104001201E9\n", "S-record checksum error.", 0},
        {"S104001201E8\nS104001402E4\n", "S-record checksum error.", 1},
        {"S104001201E8\nS104001402E5\nS1040012FFEB\nS1040013994F\n", "S-record checksum error.", 2},
        {"S104001201E8\nS1", "Invalid file format.", 1},
    };
    for (const FailCase& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_FALSE(Read(c.text));
        EXPECT_EQ(error_, c.error);
        EXPECT_EQ(records_, c.records);
    }
}

TEST_F(SRecordReader, DataBeforeTheFaultOfARecordIsApplied) {
    EXPECT_FALSE(Read("S1050010ABxx72\n"));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0x10, {0xAB}}}));
    EXPECT_FALSE(Read("S1050010ABCD00\n"));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0x10, {0xAB, 0xCD}}}));
}

// "S104001201E8" has 12 characters.
TEST_F(SRecordReader, FirstGoodRecordMustEndWithin50000Bytes) {
    EXPECT_TRUE(Read(std::string(49988, '.') + "S104001201E8"));
    EXPECT_FALSE(Read(std::string(49989, '.') + "S104001201E8"));
    EXPECT_EQ(error_, "Invalid file format.");
    EXPECT_EQ(records_, 0);
    EXPECT_FALSE(Read(std::string(50000, '.') + "S104001201E8"));
    EXPECT_EQ(error_, "No S-records found.");
    EXPECT_FALSE(Read(std::string(49999, '.') + "S104001201E8"));
    EXPECT_EQ(error_, "No S-records found.");
}

TEST_F(SRecordReader, GoodRecordLiftsTheLimit) {
    const std::string first = std::string(49988, '.') + "S104001201E8\n";
    EXPECT_TRUE(Read(first + std::string(1000000, '.') + "\nS104001402E5\n"));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0x12, {1}}, {0x14, {2}}}));
}

// Records of every length up to the longest, over many blocks of the file buffer.
TEST_F(SRecordReader, RecordsAcrossBlocksAreWhole) {
    std::string text;
    std::vector<uint8_t> expected;
    for (int line = 0; line < 40000; ++line) {
        char record[40];
        const unsigned address = static_cast<unsigned>(line) * 2;
        const unsigned sum = 0x07 + (address >> 16) + (address >> 8 & 0xFF) + (address & 0xFF) +
                             (line & 0xFF) + 0x5A;
        std::snprintf(record, sizeof record, "S307%08X%02X5A%02X\n", address, line & 0xFF,
                      ~sum & 0xFF);
        text += record;
        expected.push_back(static_cast<uint8_t>(line));
        expected.push_back(0x5A);
    }
    ASSERT_TRUE(Read(text)) << error_;
    EXPECT_EQ(records_, 40000);
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0, expected}}));
}

TEST_F(SRecordReader, MissingAndUnreadableFilesAreSaidSo) {
    for (const std::string& path : {folder_.Path("missing"), folder_.path.string()}) {
        EXPECT_FALSE(ReadSRecordFile(path, image_, records_, error_));
        EXPECT_EQ(error_, "Error opening file.");
        EXPECT_EQ(records_, 0);
    }
}

} // namespace
