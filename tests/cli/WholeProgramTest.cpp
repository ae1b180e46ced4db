// The program as a user runs it, on the demo board: an FT2232, three devices, one 16-bit AMD flash
// of 8 MiB with 135 sectors.
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace {

class WholeProgram : public ::testing::Test {
  protected:
    WholeProgram() { UseBoard("model=amd16-64m-bottom buffer=32"); }

    // The demo board with another flash; its time passes as fast as it can.
    void UseBoard(const std::string& flash) const {
        std::string board = ReadWholeFile(OM_DEMO_DIRECTORY "/boards/demo.board");
        Replace(board, "time sleeps\n", "");
        Replace(board, "model=amd16-64m-bottom buffer=32", flash);
        for (int device = 0; device < 3; ++device)
            Replace(board, " ../bsdl/", " " OM_DEMO_DIRECTORY "/bsdl/");
        folder_.Write("test.board", board);
    }

    static void Replace(std::string& text, const std::string& from, const std::string& to) {
        const size_t place = text.find(from);
        ASSERT_NE(place, std::string::npos) << from;
        text.replace(place, from.size(), to);
    }

    void ReplaceInBoard(const std::string& from, const std::string& to) const {
        std::string board = ReadWholeFile(folder_.Path("test.board"));
        Replace(board, from, to);
        folder_.Write("test.board", board);
    }

    // Runs the program in the test's folder with settings of its own; `line` is for the shell.
    int Run(const std::string& line) {
        const std::string folder = folder_.path.string();
        const std::string command =
            "cd '" + folder + "' && { " + before_ + "XDG_CONFIG_HOME='" + folder +
            "/config' VIRTUALBOARD=test.board VIRTUALBOARD_FLASH_DUMP='" + folder +
            "/flash.bin' VIRTUALBOARD_STATS='" + folder + "/stats.json' LC_ALL=C.UTF-8 " +
            environment_ + OM_PROGRAM + " " + line + " 2> errors " + after_ + "\n}";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int RunOnPod(const std::string& line) { return Run("-c ft2232 -f 30M " + line); }

    std::string Errors() const { return ReadWholeFile(folder_.Path("errors")); }

    std::string FlashStart(size_t size) const {
        return ReadWholeFile(folder_.Path("flash.bin")).substr(0, size);
    }

    // `size` bytes that no erased flash holds.
    std::string MakeData(size_t size) const {
        std::string data;
        for (size_t index = 0; index < size; ++index)
            data += static_cast<char>(index * 7 % 251);
        folder_.Write("data.bin", data);
        return data;
    }

    bool HasError(const std::string& text) const {
        return Errors().find(text) != std::string::npos;
    }

    std::string before_; // further commands of the shell
    std::string after_;
    std::string environment_; // further variables, each followed by a blank
    const std::string setup_ = OM_DEMO_SETUP;
    TemporaryFolder folder_;
};

TEST_F(WholeProgram, ProgramsVerifiesAndLeavesTheFlashAsTheFile) {
    const std::string data = MakeData(3001);
    ASSERT_EQ(RunOnPod("program " + setup_ + " data.bin"), 0) << Errors();
    EXPECT_TRUE(HasError("Erasing sector 1 of 1...")) << Errors();
    EXPECT_TRUE(HasError("Program operation completed and succesfully verified.")) << Errors();
    EXPECT_EQ(FlashStart(3001), data);
    EXPECT_NE(ReadWholeFile(folder_.Path("stats.json")).find("\"violations\": 0,\n"),
              std::string::npos);
}

TEST_F(WholeProgram, OffsetMovesTheData) {
    const std::string data = MakeData(100);
    ASSERT_EQ(RunOnPod("program " + setup_ + " data.bin -o 20000 --no-verify -q"), 0) << Errors();
    EXPECT_EQ(Errors(), "");
    const std::string flash = FlashStart(0x20000 + 100);
    EXPECT_EQ(flash.substr(0x20000), data);
    EXPECT_EQ(flash.substr(0, 100), std::string(100, '\xFF'));
}

TEST_F(WholeProgram, ReadWritesExactlyTheAskedBytes) {
    ASSERT_EQ(RunOnPod("read " + setup_ + " out.bin --from 0x11 --size 33"), 0) << Errors();
    EXPECT_EQ(ReadWholeFile(folder_.Path("out.bin")), std::string(33, '\xFF'));
    ASSERT_EQ(RunOnPod("read " + setup_ + " out.srec --from 7ffffe"), 0) << Errors();
    EXPECT_EQ(ReadWholeFile(folder_.Path("out.srec")),
              "S0030000FC\nS2067FFFFEFFFF7F\nS804000000FB\n");
}

TEST_F(WholeProgram, LooksWithoutTouching) {
    EXPECT_EQ(RunOnPod("check " + setup_), 0) << Errors();
    EXPECT_EQ(RunOnPod("chain > out"), 0) << Errors();
    EXPECT_NE(ReadWholeFile(folder_.Path("out")).find("3 devices, from TDI to TDO\nDev1: IDCODE "),
              std::string::npos);
    EXPECT_EQ(RunOnPod("info " + setup_ + " > out"), 0) << Errors();
    EXPECT_NE(ReadWholeFile(folder_.Path("out"))
                  .find("Sectors                                    8 x 8192 Bytes, 127 x 65536 "
                        "Bytes\n"),
              std::string::npos)
        << ReadWholeFile(folder_.Path("out"));
    EXPECT_EQ(RunOnPod("blank-check " + setup_ + " --size 4K"), 0) << Errors();
    EXPECT_EQ(RunOnPod("reset"), 0) << Errors();
    EXPECT_EQ(FlashStart(4096), std::string(4096, '\xFF'));
}

TEST_F(WholeProgram, FailuresAreOneAndTold) {
    MakeData(100);

    struct {
        std::string line;
        const char* error;
    } const cases[] = {
        {"check missing.velflash", "Failed to load setup file 'missing.velflash'.\n"
                                   "No such file or directory."},
        {"check .", "Failed to load setup file '.'.\nIs a directory."},
        {"check data.bin", "\nIt is no setup file, or a damaged one."},
        {"verify " + setup_ + " missing.bin",
         "Failed to load data file 'missing.bin'.\nError opening file."},
        {"verify " + setup_ + " data.bin", "Data verification failed at offset 00000h."},
        {"program " + setup_ + " data.bin -o 7FFFF0",
         "The data reach past the end of the flash: the last byte is at offset 800053h, the flash "
         "ends at 7FFFFFh."},
        {"read " + setup_ + " out.bin --from 800000", "there is nothing at offset 800000h"},
        {"read " + setup_ + " out.bin --from 7FFFFF --size 2",
         "there is nothing at offset 800000h"},
        {"read " + setup_ + " missing/out.bin --size 2",
         "Failed to save 'missing/out.bin'.\nNo such file or directory."},
        {"-q read " + setup_ + " /dev/full --size 2 --format raw",
         "Failed to save '/dev/full'.\nNo space left on device."},
        {"erase " + setup_ + " -s 0,135", "There is no sector 135: the flash has 135 sectors"},
        {"lock " + setup_ + " --all", "Ignore this warning and proceed anyway?\nAnswered No."},
        {"bsdl missing.bsd", "missing.bsd"},
        {"check " OM_DEMO_BSDL, "Failed to load setup file"},
        {"bsdl " OM_DEMO_BSDL " > /dev/full", "Writing to standard output failed."},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(RunOnPod(c.line), 1) << c.line;
        EXPECT_TRUE(HasError(c.error)) << c.line << "\n" << Errors();
    }
}

// Each run of the program starts with a board that has just been switched on.
TEST_F(WholeProgram, IntelSectorsAreLockedAndUnlocked) {
    UseBoard("model=intel16-64m");
    MakeData(100);
    EXPECT_EQ(RunOnPod("lock " + setup_ + " --all"), 0) << Errors();
    EXPECT_TRUE(HasError("Locking sector 67 of 67...")) << Errors();
    EXPECT_TRUE(HasError("Lock sectors operation completed successfully.")) << Errors();
    EXPECT_EQ(RunOnPod("unlock " + setup_ + " --from 10000 --size 128K"), 0) << Errors();
    EXPECT_TRUE(HasError("Unlocking sector 3 of 3...")) << Errors();
    EXPECT_TRUE(HasError("Unlock sectors operation completed successfully.")) << Errors();
}

TEST_F(WholeProgram, PodThatDoesNotOpenPointsAtTheLog) {
    environment_ = "LD_LIBRARY_PATH= "; // no vendor's library is found
    EXPECT_EQ(Run("-c jlink chain"), 1);
    EXPECT_EQ(Errors(), "Failed to initialize a JTAG connection\nThe vendor's library cannot be "
                        "loaded: libjlinkarm.so. Install the vendor's software, or name the file "
                        "in the environment variable VELFLASH_JLINKARM.\nThe cable is jlink. The "
                        "option --log shows what failed.\n");
    EXPECT_EQ(Run("chain"), 1);
    EXPECT_TRUE(HasError("The cable is xilinx3, as set in velflash; --cable names another."))
        << Errors();
    EXPECT_EQ(Run("-c jlink chain --log"), 1);
    EXPECT_TRUE(HasError("*** FAILED ***")) << Errors();
    EXPECT_FALSE(HasError("The option --log")) << Errors();
}

// A cable alone would take any pod where the wanted one is missing.
TEST_F(WholeProgram, SerialAndDescriptionMeanOnePodAndNoOther) {
    const std::string first = "pod FT2232H description=\"Velmora Demo Board A\" serial=VELDEMO1A";
    ReplaceInBoard(first, "pod FT2232H description=A serial=X1 connected=no\n"
                          "pod FT2232H description=B serial=X2");

    struct {
        const char* options;
        int exitCode;
        const char* error;
    } const cases[] = {
        {"--serial X2", 0, ""},
        {"--description B", 0, ""},
        {"--description B --serial X2", 0, ""},
        {"--serial X1", 1, "No JTAG chain was detected."},
        {"--serial X3", 1, "There is no ft2232 'X3'. Connected: A (X1), B (X2).\n"},
        {"--description A --serial X2", 1, "There is no ft2232 'A (X2)'. Connected: "},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(RunOnPod(std::string(c.options) + " chain > out"), c.exitCode) << c.options;
        EXPECT_TRUE(HasError(c.error)) << c.options << "\n" << Errors();
    }

    ReplaceInBoard("pod FT2232H description=B serial=X2",
                   "pod USB-Blaster description=U serial=U1");
    EXPECT_EQ(Run("-c usb-blaster --serial U1 chain > out"), 0) << Errors();
    EXPECT_EQ(Run("-c usb-blaster --serial U2 chain > out"), 1);
    EXPECT_EQ(Errors(), "There is no usb-blaster 'U2'. Connected: U (U1).\n");
}

TEST_F(WholeProgram, FirstDigilentPodWillDo) {
    ReplaceInBoard("pod FT2232H description=\"Velmora Demo Board A\" serial=VELDEMO1A",
                   "pod Digilent description=Basys");
    EXPECT_EQ(Run("-c digilent chain > out"), 0) << Errors();
    EXPECT_EQ(Run("-c digilent --serial Basys chain > out"), 0) << Errors();
    EXPECT_EQ(Run("-c digilent --serial Nexys chain > out"), 1);
    EXPECT_EQ(Errors(), "There is no digilent 'Nexys'. Connected: Basys.\n");
}

TEST_F(WholeProgram, MissingParallelPortIsNamed) {
    EXPECT_EQ(Run("-c wiggler --port 3 chain"), 1);
    EXPECT_TRUE(HasError("This machine has no parallel port LPT3, or does not let this user see "
                         "it.\n"))
        << Errors();
}

TEST_F(WholeProgram, WrongLinesAreTwo) {
    EXPECT_EQ(Run(""), 2);
    EXPECT_EQ(Run("chain -c frob"), 2);
    EXPECT_EQ(Run("chain -c usb-blaster -f 6M"), 2);
    EXPECT_TRUE(HasError("--frequency does not suit the cable usb-blaster"));
}

TEST_F(WholeProgram, SettingsOfTheStoreHoldWithoutOptionsAndStayAsTheyAre) {
    std::filesystem::create_directory(folder_.path / "config");
    const std::string store = "ConnCableType=6\nConnFtd2xxFreq=30000000\n";
    folder_.Write("config/Velmora Flash Programmer.conf", store);
    EXPECT_EQ(Run("--log chain > out"), 0) << Errors();
    EXPECT_TRUE(HasError("Creating OmFtd2xx\n")) << Errors();
    EXPECT_EQ(ReadWholeFile(folder_.Path("config/Velmora Flash Programmer.conf")), store);
}

// Who only looks at the settings makes no folder for them.
TEST_F(WholeProgram, StoreThatIsNotThereIsNotMade) {
    EXPECT_EQ(RunOnPod("chain > out"), 0);
    EXPECT_EQ(Errors(), "");
    EXPECT_FALSE(std::filesystem::exists(folder_.path / "config"));
    environment_ = "XDG_CONFIG_HOME=/dev/null/config ";
    EXPECT_EQ(RunOnPod("chain > out"), 0);
    EXPECT_EQ(Errors(), "");
}

TEST_F(WholeProgram, BsdlReportGoesToStandardOutput) {
    EXPECT_EQ(Run("bsdl " OM_DEMO_BSDL " > out"), 0) << Errors();
    EXPECT_EQ(ReadWholeFile(folder_.Path("out")).substr(0, 28), "Device name: VELDEMO_PMU20\n\n");
    EXPECT_EQ(Errors(), "");
}

// Hours of reading must not end at a folder that is not there.
TEST_F(WholeProgram, PlaceOfTheOutputIsLookedAtBeforeTheFlash) {
    EXPECT_EQ(RunOnPod("read " + setup_ + " missing/out.bin"), 1);
    EXPECT_EQ(Errors(), "Failed to save 'missing/out.bin'.\nNo such file or directory.\n");
    folder_.Write("out.bin", "kept");
    EXPECT_EQ(RunOnPod("read " + setup_ + " out.bin --from 800000"), 1);
    EXPECT_EQ(ReadWholeFile(folder_.Path("out.bin")), "kept");
}

TEST_F(WholeProgram, FileSizeLimitIsAFullDiskAndCostsNothing) {
    folder_.Write("out.bin", "kept");
    before_ = "ulimit -f 8; ";
    EXPECT_EQ(RunOnPod("-q read " + setup_ + " out.bin --size 64K"), 1);
    EXPECT_TRUE(HasError("Failed to save 'out.bin'.\nFile too large.\n")) << Errors();
    EXPECT_EQ(ReadWholeFile(folder_.Path("out.bin")), "kept");
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path))
        EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
}

TEST_F(WholeProgram, NamesMayHoldBlanksAndLettersOfAnyLanguage) {
    const std::string data = MakeData(100);
    std::filesystem::copy(folder_.Path("data.bin"), folder_.Path("d\303\244t a.bin"));
    std::filesystem::copy(setup_, folder_.Path("B\303\266ard \342\230\203.velflash"));
    for (const char* locale : {"C", "C.UTF-8"}) {
        environment_ = std::string("LC_ALL=") + locale + " ";
        ASSERT_EQ(RunOnPod("program 'B\303\266ard \342\230\203.velflash' 'd\303\244t a.bin'"), 0)
            << Errors();
        EXPECT_EQ(FlashStart(100), data);
        ASSERT_EQ(RunOnPod("read 'B\303\266ard \342\230\203.velflash' '\303\226 1.bin' --size 5"),
                  0)
            << Errors();
        EXPECT_EQ(ReadWholeFile(folder_.Path("\303\226 1.bin")), std::string(5, '\xFF'));
        EXPECT_EQ(Run("check '\303\266 \342\230\203.velflash'"), 1);
        EXPECT_TRUE(HasError("'\303\266 \342\230\203.velflash'")) << Errors();
    }
}

TEST_F(WholeProgram, SystemsReasonsAreInTheLanguageOfTheProgram) {
    environment_ = "LANGUAGE=de "; // shows where the system has German messages
    EXPECT_EQ(Run("check missing.velflash"), 1);
    EXPECT_TRUE(HasError("\nNo such file or directory.")) << Errors();
}

TEST_F(WholeProgram, ReaderWhoHasSeenEnoughGetsNoMessage) {
    EXPECT_EQ(Run("bsdl " OM_DEMO_DIRECTORY "/bsdl/veldemo_cpu144.bsd 2> errors | head -1 > out #"),
              0);
    EXPECT_EQ(ReadWholeFile(folder_.Path("out")), "Device name: VELDEMO_CPU144\n");
    EXPECT_EQ(Errors(), "");
}

TEST_F(WholeProgram, HelpThatCannotBeWrittenIsAFailure) {
    EXPECT_EQ(Run("--help > /dev/full"), 1);
    EXPECT_EQ(Run("program --help > /dev/full"), 1);
    EXPECT_EQ(Run("--version > /dev/full"), 1);
    EXPECT_TRUE(HasError("Writing to standard output failed.")) << Errors();
    EXPECT_EQ(Run("--help > out"), 0);
}

TEST_F(WholeProgram, ErrorsOfABsdlFileAreTold) {
    folder_.Write("bad.bsd", "entity X is\n  port (A in bit);\nend X;\n");
    EXPECT_EQ(Run("bsdl bad.bsd"), 1);
    EXPECT_TRUE(HasError("(in 'bad.bsd' on line 2)")) << Errors();
    EXPECT_NE(Errors().substr(Errors().size() - 2), "\n\n");
}

// The signal comes while a sector is being erased, which takes far longer than to see it begin.
TEST_F(WholeProgram, SignalStopsAnActionAndIs130) {
    UseBoard("model=amd16-64m-bottom buffer=32 sector-us=5000000");
    for (const char* signal : {"INT", "TERM", "HUP"}) {
        folder_.Write("errors", "");
        after_ =
            std::string("& pid=$!; for i in $(seq 1000); do grep -q 'Erasing sector 2 ' errors "
                        "&& break; sleep 0.02; done; kill -") +
            signal + " $pid; wait $pid";
        EXPECT_EQ(RunOnPod("erase " + setup_ + " -s 0-134"), 130) << signal << "\n" << Errors();
        EXPECT_TRUE(HasError("Erasing sector 2 of 135...\nErase operation was aborted by user.\n"))
            << Errors();
    }
}

TEST_F(WholeProgram, CommandUnderNohupOutlivesItsTerminal) {
    UseBoard("model=amd16-64m-bottom buffer=32 sector-us=2000000");
    folder_.Write("errors", "");
    before_ = "trap '' HUP; ";
    after_ =
        "& pid=$!; for i in $(seq 1000); do grep -q 'Erasing sector 1 ' errors && break; sleep "
        "0.02; done; kill -HUP $pid || exit 99; wait $pid";
    EXPECT_EQ(RunOnPod("erase " + setup_ + " -s 0"), 0) << Errors();
}

TEST_F(WholeProgram, TerminalGetsOneLineThatFitsIt) {
    MakeData(20000);
    folder_.Write("run", "stty cols 30\n" OM_PROGRAM " -c ft2232 -f 30M program '" + setup_ +
                             "' data.bin\n");
    const std::string folder = folder_.path.string();
    const std::string command = "cd '" + folder + "' && TERM=xterm XDG_CONFIG_HOME='" + folder +
                                "/config' VIRTUALBOARD=test.board script -qec 'sh run' /dev/null "
                                "> out < /dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::string text = ReadWholeFile(folder_.Path("out"));
    const std::string end = "\rProgram operation completed and succesfully verified.\r\n";
    ASSERT_TRUE(text.ends_with(end)) << text;
    text.resize(text.size() - end.size());
    EXPECT_EQ(text.find('\n'), std::string::npos) << text;
    EXPECT_NE(text.find("\rErasing sector 2 of 3...  33%"), std::string::npos) << text;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line, '\r');)
        EXPECT_LT(line.size(), 30u) << line;
}

} // namespace
