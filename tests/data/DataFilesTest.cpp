#include "data/DataFiles.h"

#include "tests/data/ImageText.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>

namespace {

using Bytes = std::vector<uint8_t>;
using Chunks = std::vector<OmDataChunk>;

class DataFiles : public ::testing::Test {
  protected:
    bool Load(std::string_view text) {
        error_ = "old";
        return ReadDataFile(folder_.Write("file", text), image_, error_);
    }

    TemporaryFolder folder_;
    OmDataImage image_;
    std::string error_;
};

TEST_F(DataFiles, FormatFollowsFromTheContentAlone) {
    struct {
        const char* text;
        Chunks chunks;
    } const cases[] = {
        {"S104001201E8\n", {{0x12, {1}}}},
        {":0100200001DE\n:00000001FF\n", {{0x20, {1}}}},
        {"raw", {{0, {'r', 'a', 'w'}}}},
        {"S0030000FC\nS9030000FC\n",
         {{0, {'S', '0', '0', '3', '0', '0', '0', '0', 'F', 'C', '\n',
               'S', '9', '0', '3', '0', '0', '0', '0', 'F', 'C', '\n'}}}},
        {"S104001201E9", {{0, {'S', '1', '0', '4', '0', '0', '1', '2', '0', '1', 'E', '9'}}}},
        {":01", {{0, {':', '0', '1'}}}},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_TRUE(Load(c.text));
        EXPECT_EQ(error_, "");
        EXPECT_EQ(ChunksOf(image_), c.chunks);
    }
}

TEST_F(DataFiles, DamagedFileIsNotTriedAsAnotherFormat) {
    EXPECT_FALSE(Load("S104001201E8\nS104001402E5\nS1040012FFEB\n"));
    EXPECT_EQ(error_, "S-record checksum error.");
    EXPECT_FALSE(Load(":0100200001DE\n:0100220002DA\n"));
    EXPECT_EQ(error_, "Intel Hex record checksum error.");
}

TEST_F(DataFiles, RecordBehindTheBudgetLeavesTheFileRaw) {
    const std::string text = std::string(50000, '\0') + "S104001201E8\n";
    EXPECT_TRUE(Load(text));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0, Bytes(text.begin(), text.end())}}));
}

TEST_F(DataFiles, EarlierContentOfTheImageIsGone) {
    image_.SetByte(1000, 1);
    EXPECT_TRUE(Load("raw"));
    EXPECT_EQ(image_.GetByteCount(), 3u);
}

TEST_F(DataFiles, EmptyAndMissingFilesFail) {
    EXPECT_FALSE(Load(""));
    EXPECT_EQ(error_, "File is empty.");
    EXPECT_FALSE(ReadDataFile(folder_.Path("missing"), image_, error_));
    EXPECT_EQ(error_, "Error opening file.");
    EXPECT_FALSE(ReadDataFile(folder_.path.string(), image_, error_));
    EXPECT_EQ(error_, "Error opening file.");
}

TEST_F(DataFiles, RawFileLoadsEveryByteFromAddressZero) {
    std::string text;
    for (int index = 0; index < 3000000; ++index)
        text += static_cast<char>(index * 7 >> 3);
    EXPECT_TRUE(ReadRawFile(folder_.Write("file", text), image_, error_));
    EXPECT_EQ(ChunksOf(image_), (Chunks{{0, Bytes(text.begin(), text.end())}}));
}

TEST_F(DataFiles, RawFileBeyondTheAddressesIsRefusedUnread) {
    folder_.Write("huge", "x");
    std::filesystem::resize_file(folder_.path / "huge", (uint64_t{1} << 32) + 1);
    EXPECT_FALSE(ReadRawFile(folder_.Path("huge"), image_, error_));
    EXPECT_EQ(error_, "File is larger than 4 GiB.");
    EXPECT_TRUE(image_.IsEmpty());
}

} // namespace
