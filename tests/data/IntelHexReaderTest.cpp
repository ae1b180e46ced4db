#include "data/DataFiles.h"
#include "tests/data/ImageText.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using Chunks = std::vector<OmDataChunk>;

class IntelHexReader : public ::testing::Test {
  protected:
    bool Read(std::string_view text) {
        image_.ClearImage();
        error_.clear();
        records_ = -1;
        return ReadIntelHexFile(folder_.Write("file", text), image_, records_, error_);
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

TEST_F(IntelHexReader, ReadsDataInEveryAddressing) {
    const ReadCase cases[] = {
        {"data", ":02001000ABCD76\n:00000001FF\n", 1, {{0x10, {0xAB, 0xCD}}}},
        {"lower case", ":02001000abcd76\n:00000001ff\n", 1, {{0x10, {0xAB, 0xCD}}}},
        {"no end record", ":02001000ABCD76", 1, {{0x10, {0xAB, 0xCD}}}},
        {"no data bytes", ":0000000000\n", 1, {}},
        {"segment", ":020000021000EC\n:02001000ABCD76\n", 1, {{0x10010, {0xAB, 0xCD}}}},
        {"linear", ":020000041234B4\n:02001000ABCD76\n", 1, {{0x12340010, {0xAB, 0xCD}}}},
        {"wraps within 64 KiB at first", ":02FFFF000102FD\n", 1, {{0, {2}}, {0xFFFF, {1}}}},
        {"wraps within the segment",
         ":020000021000EC\n:02FFFF000102FD\n",
         1,
         {{0x10000, {2}}, {0x1FFFF, {1}}}},
        {"a segment may end past 1 MiB",
         ":02000002F0000C\n:02FFFF000102FD\n",
         1,
         {{0xF0000, {2}}, {0xFFFFF, {1}}}},
        {"does not wrap in linear addressing",
         ":020000040001F9\n:02FFFF000102FD\n",
         1,
         {{0x1FFFF, {1, 2}}}},
        {"wraps at the end of all addresses",
         ":02000004FFFFFC\n:02FFFF000102FD\n",
         1,
         {{0, {2}}, {0xFFFFFFFF, {1}}}},
        {"segment after linear",
         ":020000041234B4\n:020000021000EC\n:02FFFF000102FD\n",
         1,
         {{0x10000, {2}}, {0x1FFFF, {1}}}},
        {"start addresses are not checked", ":03zz\n:0100200001DE\n", 0, {}},
        {"start segment address skips its line",
         ":04000003 no checksum :0100200001DE\n:0100220002DB\n",
         1,
         {{0x22, {2}}}},
        {"start linear address likewise", ":04000005\n:0100220002DB\n", 1, {{0x22, {2}}}},
        {"unknown types likewise", ":040000FF\n:0100220002DB\n", 1, {{0x22, {2}}}},
        {"in mid-line", "abc :0100200001DE\n", 1, {{0x20, {1}}}},
        {"two on a line count once", ":0100200001DE :0100220002DB\n", 1, {{0x20, {1}}}},
        {"before the first data record any place counts",
         ":020000041234B4 :0100200001DE\n",
         1,
         {{0x12340020, {1}}}},
        {"after it a base hides the rest of its line",
         ":0100200001DE\n:020000041234B4 :0100220002DB\n:0100220002DB\n",
         2,
         {{0x20, {1}}, {0x12340022, {2}}}},
        {"end record with data",
         ":0100200001DE\n:020000010506F2\n:0100220002DB\n",
         1,
         {{0x20, {1}}}},
        {"nothing counts after the end record",
         ":0100200001DE\n:00000001FF\n:01002",
         1,
         {{0x20, {1}}}},
        {"CRLF and empty lines",
         ":0100200001DE\r\n\r\n\n:0100220002DB\r\n",
         2,
         {{0x20, {1}}, {0x22, {2}}}},
    };
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Read(c.text), c.records > 0) << error_;
        EXPECT_EQ(records_, c.records);
        EXPECT_EQ(ChunksOf(image_), c.chunks);
    }
}

struct FailCase {
    const char* text;
    const char* error;
    int records;
};

TEST_F(IntelHexReader, RefusesWhatIsBroken) {
    const FailCase cases[] = {
        {"", "No data records found.", 0},
        {"hello\n", "No data records found.", 0},
        {":00000001FF\n:0100200001DE\n", "No data records found.", 0},
        {":020000041234B4\n", "No data records found.", 0},
        {":04000003\n", "No data records found.", 0},
        {":", "Invalid file format.", 0},
        {":0100200", "Invalid file format.", 0},
        {":01002x0001DE\n", "Invalid file format.", 0},
        {":0100200001D", "Invalid file format.", 0},
        {":0100200001\nDE", "Invalid file format.", 0},
        {":010020000-DE\n", "Invalid file format.", 0},
        {":0200000412", "Invalid file format.", 0},
        {":03000004010203F3\n", "Invalid Intel Hex file format.", 0},
        {":0100000201FC\n", "Invalid Intel Hex file format.", 0},
        {":0100200001DF\n", "Intel Hex record checksum error.", 0},
        {":020000041234B5\n", "Intel Hex record checksum error.", 0},
        {":00000001FE\n", "Intel Hex record checksum error.", 0},
        {":0100200001DE\n:0100220002DA\n", "Intel Hex record checksum error.", 1},
        {":0100200001DE\n:00000001FE\n", "Intel Hex record checksum error.", 1},
        {":0100200001DE\n:02", "Invalid file format.", 1},
    };
    for (const FailCase& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_FALSE(Read(c.text));
        EXPECT_EQ(error_, c.error);
        EXPECT_EQ(records_, c.records);
    }
}

TEST_F(IntelHexReader, DataBeforeTheFaultOfARecordIsApplied) {
    EXPECT_FALSE(Read(":02001000ABxx76\n"));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0x10, {0xAB}}}));
    EXPECT_FALSE(Read(":02001000ABCD00\n"));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0x10, {0xAB, 0xCD}}}));
}

// ":0100200001DE" has 13 characters.
TEST_F(IntelHexReader, FirstDataRecordMustEndWithin50000Bytes) {
    EXPECT_TRUE(Read(std::string(49987, '.') + ":0100200001DE"));
    EXPECT_FALSE(Read(std::string(49988, '.') + ":0100200001DE"));
    EXPECT_EQ(error_, "Invalid file format.");
    EXPECT_EQ(records_, 0);
    EXPECT_FALSE(Read(std::string(50000, '.') + ":0100200001DE"));
    EXPECT_EQ(error_, "No data records found.");
}

TEST_F(IntelHexReader, OnlyADataRecordLiftsTheLimit) {
    const std::string gap(50000, '.');
    EXPECT_FALSE(Read(":020000041234B4\n" + gap + "\n:0100200001DE\n"));
    EXPECT_EQ(error_, "No data records found.");
    EXPECT_TRUE(Read(":0100200001DE\n" + gap + "\n:0100220002DB\n"));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0x20, {1}}, {0x22, {2}}}));
}

TEST_F(IntelHexReader, MissingAndUnreadableFilesAreSaidSo) {
    for (const std::string& path : {folder_.Path("missing"), folder_.path.string()}) {
        EXPECT_FALSE(ReadIntelHexFile(path, image_, records_, error_));
        EXPECT_EQ(error_, "Error opening file.");
        EXPECT_EQ(records_, 0);
    }
}

} // namespace
