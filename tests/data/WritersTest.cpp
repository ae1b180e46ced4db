#include "data/DataFiles.h"
#include "tests/data/ImageText.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using Chunks = std::vector<OmDataChunk>;

const std::vector<uint8_t> kSeventeen = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

struct WriteCase {
    const char* name;
    Chunks chunks;
    const char* text;
};

class Writers : public ::testing::Test {
  protected:
    using Writer = bool (*)(const std::string&, const OmDataImage&);

    void ExpectTexts(Writer write, std::span<const WriteCase> cases) const {
        for (const WriteCase& c : cases) {
            SCOPED_TRACE(c.name);
            EXPECT_TRUE(write(folder_.Path("file"), MakeImage(c.chunks)));
            EXPECT_EQ(ReadWholeFile(folder_.Path("file")), c.text);
        }
    }

    TemporaryFolder folder_;
};

TEST_F(Writers, SRecordKindFollowsTheHighestAddress) {
    const WriteCase cases[] = {
        {"S1 to its last address", {{0xFFFF, {0x5A}}}, "S0030000FC\nS104FFFF5AA3\nS9030000FC\n"},
        {"S2 from the next", {{0x10000, {0x5A}}}, "S0030000FC\nS2050100005A9F\nS804000000FB\n"},
        {"S2 to its last address",
         {{0xFFFFFF, {0x5A}}},
         "S0030000FC\nS205FFFFFF5AA3\nS804000000FB\n"},
        {"S3 from the next",
         {{0x1000000, {0x5A}}},
         "S0030000FC\nS306010000005A9E\nS70500000000FA\n"},
        {"S3 to the last of all",
         {{0xFFFFFFFF, {0x5A}}},
         "S0030000FC\nS306FFFFFFFF5AA3\nS70500000000FA\n"},
        {"16 bytes a record",
         {{0xFFFFFFEF, kSeventeen}},
         "S0030000FC\nS315FFFFFFEF000102030405060708090A0B0C0D0E0F86\nS306FFFFFFFF10ED\n"
         "S70500000000FA\n"},
        {"each chunk with header and terminator, all in the same kind",
         {{0x12, {1}}, {0x10000, {2}}},
         "S0030000FC\nS20500001201E7\nS804000000FB\nS0030000FC\nS20501000002F7\nS804000000FB\n"},
    };
    ExpectTexts(WriteSRecordFile, cases);
}

TEST_F(Writers, IntelHexAddressingFollowsTheHighestAddress) {
    const WriteCase cases[] = {
        {"plain", {{0xFFFF, {0x5A}}}, ":01FFFF005AA7\n:00000001FF\n"},
        {"segment from the next",
         {{0x10000, {0x5A}}},
         ":020000021000EC\n:010000005AA5\n:00000001FF\n"},
        {"segment base has 16-byte steps",
         {{0x12345, {0x5A}}},
         ":020000021234B6\n:010005005AA0\n:00000001FF\n"},
        {"segment to its last address",
         {{0xFFFFF, {0x5A}}},
         ":02000002FFFFFE\n:01000F005A96\n:00000001FF\n"},
        {"linear from the next",
         {{0x100000, {0x5A}}},
         ":020000040010EA\n:010000005AA5\n:00000001FF\n"},
        {"linear to the last of all",
         {{0xFFFFFFFF, {0x5A}}},
         ":02000004FFFFFC\n:01FFFF005AA7\n:00000001FF\n"},
        {"no base record while the base stays 0",
         {{0x8, {1}}, {0x100000, {2}}},
         ":0100080001F6\n:020000040010EA\n:0100000002FD\n:00000001FF\n"},
        {"16 bytes a record",
         {{0x10, kSeventeen}},
         ":10001000000102030405060708090A0B0C0D0E0F68\n:0100200010CF\n:00000001FF\n"},
        {"a piece ends with its window, linear",
         {{0x1FFFF, {1, 2}}, {0x100000, {3}}},
         ":020000040001F9\n:01FFFF000100\n:020000040002F8\n:0100000002FD\n"
         ":020000040010EA\n:0100000003FC\n:00000001FF\n"},
        {"one base for two chunks",
         {{0x100000, {1}}, {0x100010, {2}}},
         ":020000040010EA\n:0100000001FE\n:0100100002ED\n:00000001FF\n"},
    };
    ExpectTexts(WriteIntelHexFile, cases);
}

TEST_F(Writers, SegmentReachesFFFFFhWhereItsWindowWouldGoBeyond) {
    const OmDataImage image = MakeImage({{0xF8000, std::vector<uint8_t>(0x8000, 0x33)}});
    EXPECT_TRUE(WriteIntelHexFile(folder_.Path("file"), image));
    const std::string text = ReadWholeFile(folder_.Path("file"));
    EXPECT_EQ(text.substr(0, 16), ":02000002F80004\n");
    EXPECT_EQ(text.find(":02000002", 1), std::string::npos);
    OmDataImage back;
    std::string error;
    EXPECT_TRUE(ReadDataFile(folder_.Path("file"), back, error)) << error;
    EXPECT_EQ(back, image);
}

TEST_F(Writers, SegmentWindowOf64KiBIsFollowedByTheNext) {
    const OmDataImage image = MakeImage({{0x10008, std::vector<uint8_t>(0x10000, 0x33)}});
    EXPECT_TRUE(WriteIntelHexFile(folder_.Path("file"), image));
    const std::string text = ReadWholeFile(folder_.Path("file"));
    EXPECT_EQ(text.substr(0, 16), ":020000021000EC\n");
    EXPECT_NE(
        text.find("\n:08FFF800333333333333333369\n:020000022000DC\n:080000003333333333333333"),
        std::string::npos);
    OmDataImage back;
    std::string error;
    EXPECT_TRUE(ReadDataFile(folder_.Path("file"), back, error)) << error;
    EXPECT_EQ(back, image);
}

TEST_F(Writers, RawChunkIsItsBytesAlone) {
    const OmDataImage image = MakeImage({{10, {1, 0, 0x0A, 0x1A}}, {20, {2}}});
    EXPECT_TRUE(WriteRawChunk(folder_.Path("file"), image, 0));
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), (std::string{1, 0, 0x0A, 0x1A}));
    EXPECT_TRUE(WriteRawChunk(folder_.Path("file"), image, 1));
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "\x02");
    EXPECT_FALSE(WriteRawChunk(folder_.Path("file"), image, 2));
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "\x02");
}

TEST_F(Writers, EmptyImageIsRefusedAndTouchesNothing) {
    const std::string path = folder_.Write("file", "old");
    EXPECT_FALSE(WriteSRecordFile(path, {}));
    EXPECT_FALSE(WriteIntelHexFile(path, {}));
    EXPECT_FALSE(WriteRawChunk(path, {}, 0));
    EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST_F(Writers, FailureIsTold) {
    const OmDataImage image = MakeImage({{0, {1}}});
    for (const std::string& path : {folder_.Path("missing/file"), folder_.path.string()}) {
        EXPECT_FALSE(WriteSRecordFile(path, image));
        EXPECT_FALSE(WriteIntelHexFile(path, image));
        EXPECT_FALSE(WriteRawChunk(path, image, 0));
    }
}

#ifdef __linux__
TEST_F(Writers, FullDeviceIsAFailure) {
    const OmDataImage image = MakeImage({{0, std::vector<uint8_t>(200000, 0x55)}});
    EXPECT_FALSE(WriteSRecordFile("/dev/full", image));
    EXPECT_FALSE(WriteIntelHexFile("/dev/full", image));
    EXPECT_FALSE(WriteRawChunk("/dev/full", image, 0));
}
#endif

} // namespace
