// Board files, statistics, kept contents, and the environment that the stand-ins obey.

#include "virtualboard/BoardFile.h"
#include "tests/virtualboard/Bench.h"
#include "virtualboard/CurrentBoard.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <unistd.h>

#include <gtest/gtest.h>

using vb_test::Bench;

namespace {

// A folder of its own for each test, gone at the end.
class Folder {
  public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "boardXXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }

    ~Folder() { std::filesystem::remove_all(path_); }

    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string Path(const std::string& name) const { return path_ + "/" + name; }

    const std::string& Path() const { return path_; }

  private:
    std::string path_;
};

std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string ErrorOf(const std::string& text) {
    try {
        vb::ReadBoard(text, [](const std::string&) {
            vb::DevicePlan plan;
            plan.entity = "VELTEST";
            plan.ports = {{"X", 2, vb::PinStyle::Separate}};
            return vb::WriteBsdl(plan);
        });
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST(BoardFile, ErrorsNameTheLineAndTheThing) {
    struct Case {
        const char *text, *error;
    };

    for (const Case& test : {
             Case{"\nresistor R1", "line 2: 'resistor' is no keyword"},
             Case{"net A", "line 1: 'net' needs more than that"},
             Case{"net A U1.X(0)", "line 1: nothing on the board can be 'U1.X(0)'"},
             Case{"device U1 a\nnet A U1.X(2)", "line 2: U1 has no port 'X(2)'"},
             Case{"device U1 a\nnet A U1.X(1)\nnet B U1.X(1)",
                  "line 3: U1.X(1) is on another net already"},
             Case{"flash F1 model=nothing", "line 1: no flash model is called 'nothing'"},
             Case{"flash F1 colour=red", "line 1: a flash has no property 'colour'"},
             Case{"flash F1 sectors=8", "line 1: '8' is not a sector group such as 8x64K"},
             Case{"flash F1", "line 1: flash F1 has no sectors"},
             Case{"flash F1 model=amd16-64m\nnet Q F1.Q3", "line 2: a flash has no pin 'Q3'"},
             Case{"flash F1 model=amd16-64m\nnet Q F1.D16",
                  "line 2: F1 has no such pin for net net Q"},
             Case{"poke F9 0 0", "line 1: there is no flash 'F9'"},
             Case{"pod FT999", "line 1: no pod type is called 'FT999'"},
             Case{"fault rain", "line 1: no fault is called 'rain'"},
             Case{"fault slow F1", "line 1: the fault 'slow' needs 2 arguments"},
             Case{"time flies", "line 1: time is counted by 'tck' or 'sleeps'"},
         })
        EXPECT_EQ(ErrorOf(test.text), test.error);
    EXPECT_EQ(ErrorOf("# nothing\n\n  \n"), "");
}

TEST(BoardFile, WordsInQuotesAndComments) {
    const auto board =
        vb::ReadBoard("pod FT2232H description=\"A pod # 1\" serial=\"\" # comment\n", "");
    EXPECT_EQ(board->Pods().entries.at(0).description, "A pod # 1");
    EXPECT_EQ(board->Pods().entries.at(0).serial, "");
}

TEST(BoardFile, WithoutAPodLineThereIsTheDemoPod) {
    const auto board = vb::ReadBoard("", "");
    ASSERT_EQ(board->Pods().entries.size(), 1u);
    EXPECT_EQ(board->Pods().entries[0].description, "Velmora Demo Board A");
    EXPECT_EQ(board->Pods().entries[0].type, vb::PodType::Ft2232H);
}

TEST(BoardFile, IncludesAnotherFile) {
    const Folder folder;
    std::ofstream(folder.Path("a.board")) << "pod FT2232H serial=A\n";
    std::ofstream(folder.Path("b.board")) << "include a.board\npod FT2232H serial=B\n";
    std::ofstream(folder.Path("c.board")) << "\ninclude c.board\n";
    const auto board = vb::LoadBoard(folder.Path("b.board"));
    ASSERT_EQ(board->Pods().entries.size(), 2u);
    EXPECT_EQ(board->Pods().entries[0].serial, "A");
    EXPECT_THROW(vb::LoadBoard(folder.Path("c.board")), std::runtime_error);
}

TEST(BoardFile, PokedWordsAreInTheArray) {
    Bench bench(vb::BoardBuilder().Line("poke F1 0 0x0001").Line("poke F1 1 0x227E"));
    EXPECT_EQ(bench.bus.Read(0), 0x0001u);
    EXPECT_EQ(bench.bus.Read(1), 0x227Eu);
}

TEST(BoardFile, WrittenBoardLoadsAgainAndKeepsItsContents) {
    const Folder folder;
    const vb::BoardBuilder builder = vb::BoardBuilder().Flash("amd8-4m").Chips(2);
    vb::BuiltBoard built = builder.Build();
    const size_t end = built.boardText.find('\n', built.boardText.find("flash F2"));
    built.boardText.insert(end, " contents=kept.bin");
    built.WriteTo(folder.Path());
    vb::InstallBoard(vb::LoadBoard(folder.Path("board.txt")));
    vb::CurrentBoard()->Flash(1).Model().SetWord(2, 0x77);
    vb::WriteReports();
    EXPECT_EQ(std::filesystem::file_size(folder.Path("kept.bin")), 512u * 1024);
    vb::InstallBoard(vb::LoadBoard(folder.Path("board.txt")));
    EXPECT_EQ(vb::CurrentBoard()->Flash(1).Model().Word(2), 0x77u);
    EXPECT_EQ(vb::CurrentBoard()->FlashContents()[5], 0x77); // word 2 of the high chip's lane
    vb::InstallBoard(nullptr);
}

TEST(Environment, StatisticsAndFlashDumpAreWritten) {
    const Folder folder;
    setenv("VIRTUALBOARD_STATS", folder.Path("stats.json").c_str(), 1);
    setenv("VIRTUALBOARD_FLASH_DUMP", folder.Path("dump.bin").c_str(), 1);
    {
        Bench bench(vb::BoardBuilder().Flash("amd8-4m"));
        bench.Chip().SetWord(3, 0xAB);
        bench.board.ClearStatistics();
        bench.bus.Read(3);
        bench.bus.SetData(0x00);
        bench.bus.Set("OE", false);
        bench.bus.Scan(); // contention on the bits that are 1
        vb::WriteReports();
    }
    unsetenv("VIRTUALBOARD_STATS");
    unsetenv("VIRTUALBOARD_FLASH_DUMP");
    const std::string json = ReadText(folder.Path("stats.json"));
    for (const char* figure :
         {"\"dr_scans\": 3,", "\"ir_scans\": 0,", "\"write_calls\": 3,", "\"read_calls\": 3,",
          "\"bus_reads\": 2,", "\"bus_writes\": 0,", "\"violations\": 5,", "\"contention\": 5,",
          "{\"kind\": \"contention\", \"scan\": 4, \"text\": \"net D"})
        EXPECT_NE(json.find(figure), std::string::npos) << figure << "\n" << json;
    const std::string dump = ReadText(folder.Path("dump.bin"));
    ASSERT_EQ(dump.size(), 512u * 1024);
    EXPECT_EQ(dump[3], '\xAB');
    EXPECT_EQ(dump[4], '\xFF');
}

// The board comes from the environment, outlives the stand-in's unloading, and reports when the
// process ends.
TEST(Environment, BoardIsLoadedAndReportedByTheProcessAlone) {
    const Folder folder;
    vb::BoardBuilder().Flash("amd8-4m").Build().WriteTo(folder.Path());
    for (const char* library : {OM_FTD2XX, OM_USBBLSTR32}) {
        const std::string command = "VIRTUALBOARD=" + folder.Path("board.txt") +
                                    " VIRTUALBOARD_FAULTS='stuck-bit F1 0 0;dead F1'" +
                                    " VIRTUALBOARD_STATS=" + folder.Path("stats.json") + " " +
                                    OM_CHILD_PROGRAM + " " + library;
        ASSERT_EQ(std::system(command.c_str()), 0) << library;
        const std::string json = ReadText(folder.Path("stats.json"));
        EXPECT_NE(json.find("\"bytes_written\": 12,"), std::string::npos) << json;
        EXPECT_NE(json.find("\"tck_cycles\": 12,"), std::string::npos) << json;
        std::filesystem::remove(folder.Path("stats.json"));
    }
}

TEST(Environment, AFaultyBoardIsToldAndGivesNoPod) {
    const std::string command = std::string("VIRTUALBOARD=/nowhere/board.txt ") + OM_CHILD_PROGRAM +
                                " " + OM_FTD2XX + " 2>/dev/null";
    EXPECT_NE(std::system(command.c_str()), 0);
}

TEST(Bsdl, ReaderTakesWhatItNeedsInAnyOrderAndCase) {
    const vb::DeviceDescription device = vb::ReadBsdl(
        "-- a comment with a \" in it\n"
        "Entity tiny is\n generic (P : string := \"X\");\n"
        "port (a, b : in bit; c : inout bit_vector(0 to 3); d: out bit);\n"
        "use STD_1149_1_1994.all;\n"
        "attribute BOUNDARY_REGISTER of tiny : entity is\n"
        "\"0 (BC_1, *, controlr, 0), \" & \"1 (BC_7, c(2), bidir, X, 0, 0, PULL1),\" &\n"
        "\"2 (bc_4, a, input, X), 2 (BC_1, d, output2, 1)\";\n"
        "attribute BOUNDARY_LENGTH of tiny : entity is 3;\n"
        "attribute INSTRUCTION_LENGTH of tiny : entity is 3;\n"
        "attribute INSTRUCTION_OPCODE of tiny : entity is \"extest (000, 010), bypass (11X)\";\n"
        "attribute INSTRUCTION_CAPTURE of tiny : entity is \"1\" & \"01\";\n"
        "attribute IDCODE_REGISTER of tiny : entity is \"XXXX\" & \"1111000011110000\" &\n"
        "\"00000000000\" & \"1\";\n"
        "end tiny;\n");
    EXPECT_EQ(device.entity, "TINY");
    EXPECT_EQ(device.instructionLength, 3u);
    EXPECT_EQ(device.instructionCapture, 5u);
    EXPECT_EQ(device.idcode, 0x0F0F0001u);
    EXPECT_EQ(device.opcodes.at("EXTEST"), (std::vector<uint64_t>{0, 2}));
    EXPECT_EQ(device.opcodes.at("BYPASS"), (std::vector<uint64_t>{6}));
    ASSERT_EQ(device.cells.size(), 3u);
    EXPECT_EQ(device.cells[1][0].port, "C");
    EXPECT_EQ(device.cells[1][0].index, 2);
    EXPECT_EQ(device.cells[1][0].controlCell, 0);
    EXPECT_FALSE(device.cells[1][0].disableValue);
    EXPECT_EQ(device.cells[1][0].disableResult, vb::DisableResult::WeakHigh);
    ASSERT_EQ(device.cells[2].size(), 2u);
    EXPECT_TRUE(device.FindPort("C")->Holds(3));
    EXPECT_FALSE(device.FindPort("C")->Holds(4));
    EXPECT_FALSE(device.FindPort("C")->Holds(-1));
}
