#include "tests/monkey/Inputs.h"

#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "flash/FlashProgrammer.h"
#include "tests/bsdl/BsdlSource.h"
#include "tests/road/RoadFixture.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr size_t kMegabyte = 1 << 20;
constexpr size_t kLongPath = 4000;

// What a shell would run, if a name ever met one.
constexpr char kShellBait[] = "x$(touch shell-was-here)`touch shell-was-here`;touch shell-was-here";

const char* const kTexts[] = {
    "",
    "0",
    "1",
    "10",
    "20",
    "100",
    "FF",
    "1000",
    "4096",
    "16384",
    "7FFFFFFF",
    "80000000",
    "3FFFFFFF",
    "40000000",
    "FFFFFFFF",
    "2147483647",
    "2147483648",
    "4294967295",
    "4294967296",
    "1000000000",
    "18446744073709551615",
    "99999999999999999999999999999999",
    "-1",
    "-9223372036854775808",
    "0x10",
    "1e9",
    "10xyz",
    " 12 ",
    "\t\n",
    "%s%n%x",
    "a;b\"c'd",
    "Gr\xC3\xB6\xC3\x9F"
    "e \xE6\xBC\xA2\xE5\xAD\x97",
    "&&&amp; & <b>",
    "A0",
    "D(3)",
    "d3",
    "D(99999999999)",
    "D(",
    "(",
    "200",
    "A0\tDev1\tA(0)\n",
    "CE\tDev1\tCE\thigh\r\nD0\tDev9\tD(0)\n\t\t\t\n",
    kShellBait,
};

// Names under which nothing can be read or written.
const char* const kHopeless[] = {
    "/proc/nowhere/file.bin", "/proc/self/mem", "/nowhere/at/all.srec", "/", ".", "",
};

// Names that a user may well choose.
const char* const kNames[] = {
    "plain.srec",
    "no extension",
    "two.dots.hex",
    "quote\"and'quote.bin",
    "a;b|c&d.bin",
    kShellBait,
    "\xC3\xA4\xC3\xB6\xC3\xBC \xE6\xBC\xA2\xE5\xAD\x97.srec",
    "per%cent%s%n.hex",
    "line\nfeed.bin",
    ".hidden",
    "-rf",
    "&ampersand&.velflash",
};

std::string LongPath() {
    std::string path;
    while (path.size() < kLongPath)
        path += "/long-folder-name";
    return path;
}

} // namespace

wxString PickText(Dice& dice) {
    if (dice.OneIn(60))
        return wxString(dice.OneIn(2) ? '7' : 'z', kMegabyte);
    if (dice.OneIn(60))
        return LongPath();
    if (dice.OneIn(4))
        return wxString::Format(dice.OneIn(2) ? "%X" : "%u", dice.Below(0x8000));
    return wxString::FromUTF8(dice.Pick(kTexts));
}

InputFiles::InputFiles() {
    fs::create_directory(folder_.Path("out"));
    fs::create_directory(folder_.Path("a folder.bin"));
    const std::vector<uint8_t> bytes = Firmware(3000, 7);
    OmDataImage image;
    image.SetBytes(0x100, Firmware(5000, 1));
    image.SetBytes(0x2800, Firmware(700, 2));
    const std::string record = folder_.Path("image.srec");
    const std::string hex = folder_.Path("image.hex");
    EXPECT_TRUE(WriteSRecordFile(record, image));
    EXPECT_TRUE(WriteIntelHexFile(hex, image));
    OmDataImage far;
    far.SetByte(0, 1);
    far.SetBytes(0xFFFFFFF0, Firmware(16, 3));
    const std::string farRecord = folder_.Path("far apart.mot");
    EXPECT_TRUE(WriteSRecordFile(farRecord, far));
    goodData_ = {
        record,
        hex,
        farRecord,
        folder_.Write("raw.bin", {reinterpret_cast<const char*>(bytes.data()), bytes.size()}),
        folder_.Write("one byte.bin", "x"),
        folder_.Write("empty.bin", "")};
    goodBsdl_ = folder_.Write("sample.bsd", SampleSource());
    goodSetup_ = folder_.Path("board.velflash");
}

void InputFiles::SaveGoodSetup() {
    EXPECT_TRUE(OmFlashProgrammer::GetInstance().SaveDesignSetup(goodSetup_));
}

// Some bytes changed, and now and then the end cut off.
std::string InputFiles::Damage(const std::string& path, Dice& dice) const {
    std::string content = ReadWholeFile(path);
    for (unsigned i = dice.Below(8) + 1; i > 0 && !content.empty(); --i)
        content[dice.Below(content.size())] = static_cast<char>(dice.Throw());
    if (dice.OneIn(3))
        content.resize(dice.Below(content.size() + 1));
    return folder_.Write("damaged" + fs::path(path).extension().string(), content);
}

std::string InputFiles::PickTrouble(Dice& dice) const {
    switch (dice.Below(5)) {
    case 0:
        return LongPath();
    case 1:
        return folder_.Path("a folder.bin");
    case 2:
        return folder_.Path(std::string(300, 'n'));
    case 3:
        return folder_.Path("missing.velflash");
    default:
        return dice.Pick(kHopeless);
    }
}

std::string InputFiles::PickDataToOpen(Dice& dice) const {
    if (dice.OneIn(6))
        return PickTrouble(dice);
    if (dice.OneIn(6))
        return folder_.Path(std::string("out/") + dice.Pick(kNames));
    const std::string& good = dice.Pick(goodData_);
    return dice.OneIn(4) ? Damage(good, dice) : good;
}

std::string InputFiles::PickSetupToOpen(Dice& dice) const {
    if (dice.OneIn(6))
        return PickTrouble(dice);
    if (dice.OneIn(8))
        return PickDataToOpen(dice);
    return dice.OneIn(3) ? Damage(goodSetup_, dice) : goodSetup_;
}

std::string InputFiles::PickBsdlToOpen(Dice& dice) const {
    if (dice.OneIn(6))
        return PickDataToOpen(dice);
    return dice.OneIn(4) ? Damage(goodBsdl_, dice) : goodBsdl_;
}

std::string InputFiles::PickToSave(Dice& dice) const {
    return dice.OneIn(4) ? PickTrouble(dice)
                         : folder_.Path(std::string("out/") + dice.Pick(kNames));
}

std::string InputFiles::PickFolder(Dice& dice) const {
    return dice.OneIn(3) ? PickTrouble(dice) : folder_.path.string();
}

bool InputFiles::ShellWasReached() const {
    return fs::exists("shell-was-here") || fs::exists(folder_.Path("shell-was-here")) ||
           fs::exists(folder_.Path("out/shell-was-here"));
}
