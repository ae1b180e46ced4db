// srec_cat (srecord) and objcopy (binutils) as judges of both directions.
#include "data/DataFiles.h"
#include "tests/data/ImageText.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>

namespace {

using Bytes = std::vector<uint8_t>;
using Chunks = std::vector<OmDataChunk>;

Bytes MakeBytes(size_t size) {
    Bytes bytes;
    for (size_t index = 0; index < size; ++index)
        bytes.push_back(static_cast<uint8_t>(index * 31 + (index >> 8)));
    return bytes;
}

class OutsideTools : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(std::system("srec_cat --version > /dev/null"), 0) << "install srecord";
        ASSERT_EQ(std::system("objcopy --version > /dev/null"), 0) << "install binutils";
    }

    // Runs `command` in the test's folder.
    void Run(const std::string& command) const {
        const std::string line = "cd '" + folder_.path.string() + "' && " + command;
        EXPECT_EQ(std::system(line.c_str()), 0) << command;
    }

    void WriteBinary(const std::string& name, const Bytes& bytes) const {
        folder_.Write(name, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }

    Bytes ReadBinary(const std::string& name) const {
        const std::string text = ReadWholeFile(folder_.Path(name));
        return {text.begin(), text.end()};
    }

    Chunks Load(const std::string& name) const {
        OmDataImage image;
        std::string error;
        EXPECT_TRUE(ReadDataFile(folder_.Path(name), image, error)) << error;
        return ChunksOf(image);
    }

    TemporaryFolder folder_;
};

// Two chunks with a gap, at each width of addresses and at the end of all.
struct Place {
    const char* name;
    uint32_t first;
    uint32_t second; // 1000 bytes each
};

constexpr Place kPlaces[] = {
    {"16 bits", 0x0010, 0xF000},
    {"segments", 0xFFF0, 0xFFC18},
    {"24 bits", 0x00FFF1, 0xFFFC18},
    {"32 bits", 0x12345678, 0x80000001},
    {"the end of all addresses", 0xFFFEFF00, 0xFFFFFC18},
};

TEST_F(OutsideTools, FilesOfSrecCatLoadAsTheirBytes) {
    const Bytes bytes = MakeBytes(1000);
    WriteBinary("in.bin", bytes);
    for (const Place& place : kPlaces) {
        SCOPED_TRACE(place.name);
        const std::string inputs = "srec_cat in.bin -binary -offset " +
                                   std::to_string(place.first) + " in.bin -binary -offset " +
                                   std::to_string(place.second);
        const Chunks expected{{place.first, bytes}, {place.second, bytes}};
        Run(inputs + " -output out.srec -motorola");
        EXPECT_EQ(Load("out.srec"), expected);
        Run(inputs + " -output out.srec -motorola -address-length=4 -line-length=250 -CRLF");
        EXPECT_EQ(Load("out.srec"), expected);
        Run(inputs + " -output out.hex -intel");
        EXPECT_EQ(Load("out.hex"), expected);
        if (place.second <= 0xFFFFF - 999) {
            Run(inputs + " -output out.hex -intel -address-length=3");
            EXPECT_EQ(Load("out.hex"), expected);
        }
    }
}

TEST_F(OutsideTools, FilesOfObjcopyLoadAsTheirBytes) {
    const Bytes bytes = MakeBytes(70000);
    WriteBinary("in.bin", bytes);
    for (const uint32_t address : {0u, 0x1234u, 0xEFFFFu, 0x12345678u, 0xFFFEEE90u}) {
        SCOPED_TRACE(address);
        const std::string convert =
            "objcopy -I binary --change-addresses=" + std::to_string(address);
        const Chunks expected{{address, bytes}};
        Run(convert + " -O srec in.bin out.srec");
        EXPECT_EQ(Load("out.srec"), expected);
        Run(convert + " -O srec --srec-forceS3 --srec-len=250 in.bin out.srec");
        EXPECT_EQ(Load("out.srec"), expected);
        Run(convert + " -O ihex in.bin out.hex");
        EXPECT_EQ(Load("out.hex"), expected);
    }
}

TEST_F(OutsideTools, SrecCatReadsOurFiles) {
    const Bytes bytes = MakeBytes(1000);
    for (const Place& place : kPlaces) {
        SCOPED_TRACE(place.name);
        const OmDataImage image = MakeImage({{place.first, bytes}, {place.second, bytes}});
        ASSERT_TRUE(WriteSRecordFile(folder_.Path("our.srec"), image));
        ASSERT_TRUE(WriteIntelHexFile(folder_.Path("our.hex"), image));
        for (const char* input : {"our.srec -motorola", "our.hex -intel"}) {
            for (const uint32_t start : {place.first, place.second}) {
                // Moved down to 0 by wrapping upwards: srec_cat cannot crop at the last address.
                const std::string offset = std::to_string((uint64_t{1} << 32) - start);
                Run(std::string("srec_cat ") + input + " -offset " + offset +
                    " -crop 0 1000 -output out.bin -binary 2> errors");
                EXPECT_EQ(ReadBinary("out.bin"), bytes) << input << " " << start;
            }
        }
    }
}

TEST_F(OutsideTools, ObjcopyReadsOurFiles) {
    const Bytes bytes = MakeBytes(70000);
    for (const uint32_t address : {0u, 0x1234u, 0xEEE8Fu, 0x12345678u, 0xFFFEEE90u}) {
        SCOPED_TRACE(address);
        const OmDataImage image = MakeImage({{address, bytes}});
        ASSERT_TRUE(WriteSRecordFile(folder_.Path("our.srec"), image));
        ASSERT_TRUE(WriteIntelHexFile(folder_.Path("our.hex"), image));
        for (const char* input : {"srec our.srec", "ihex our.hex"}) {
            Run(std::string("objcopy -O binary -I ") + input + " out.bin");
            EXPECT_EQ(ReadBinary("out.bin"), bytes) << input;
        }
    }
}

// With a gap objcopy fills the binary from the first to the last byte. It stops at the first
// terminator of an S-record file, so that the ones between the chunks have to go.
TEST_F(OutsideTools, ObjcopyReadsTwoChunksWithAGap) {
    const OmDataImage image = MakeImage({{0x1000, MakeBytes(300)}, {0x20000, MakeBytes(500)}});
    Bytes expected(0x20000 - 0x1000 + 500, 0xFF);
    for (const OmDataChunk& chunk : image.GetChunks())
        std::copy(chunk.bytes.begin(), chunk.bytes.end(),
                  expected.begin() + (chunk.address - 0x1000));
    ASSERT_TRUE(WriteIntelHexFile(folder_.Path("our.hex"), image));
    Run("objcopy -I ihex -O binary --gap-fill 0xFF our.hex out.bin");
    EXPECT_EQ(ReadBinary("out.bin"), expected);
    ASSERT_TRUE(WriteSRecordFile(folder_.Path("our.srec"), image));
    Run("grep -v '^S8' our.srec > body.srec");
    Run("objcopy -I srec -O binary --gap-fill 0xFF body.srec out.bin");
    EXPECT_EQ(ReadBinary("out.bin"), expected);
}

} // namespace
