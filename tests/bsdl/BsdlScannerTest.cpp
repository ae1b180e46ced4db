#include "bsdl/BsdlScanner.h"

#include "bsdl/BsdlGrammar.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

struct Token {
    int number;
    std::string text = {}; // empty for a token without one

    bool operator==(const Token&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Token& token) {
    return stream << token.number << " '" << token.text << "'";
}

// The scanner on a file of its own, with all that it says.
class BsdlScanner : public testing::Test {
  protected:
    void SetUp() override {
        SetScannerErrorFunction([this](const char* message) { errors.emplace_back(message); });
    }

    void TearDown() override {
        CloseScanner();
        SetScannerErrorFunction(nullptr);
    }

    void Open(std::string_view source) {
        path = folder.Write("chip.bsd", source);
        ASSERT_EQ(OpenScannerFile(path.c_str()), 0);
    }

    static Token Next() {
        const int number = NextToken();
        return {number, TokenText() ? *TokenText() : std::string()};
    }

    std::vector<Token> Rest() {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        std::vector<Token> tokens;
        for (Token token = Next(); token.number != 0; token = Next())
            tokens.push_back(token);
        out = testing::internal::GetCapturedStdout();
        err = testing::internal::GetCapturedStderr();
        return tokens;
    }

    std::vector<Token> Scan(std::string_view source) {
        CloseScanner();
        Open(source);
        return Rest();
    }

    int32_t LineAfter(std::string_view source) {
        Scan(source);
        return CurrentLine();
    }

    TemporaryFolder folder;
    std::string path;
    std::string out;
    std::string err;
    std::vector<std::string> errors;
};

using Tokens = std::vector<Token>;

} // namespace

TEST_F(BsdlScanner, TokenNumbersStayWhatTheyAre) {
    EXPECT_EQ(BSDL_ENTITY, 258);
    EXPECT_EQ(BSDL_RANGE, 288);
    EXPECT_EQ(BSDL_REGISTER_ACCESS_MODE, 289);
    EXPECT_EQ(BSDL_PIN_MAP_STRING_MODE, 298);
    EXPECT_EQ(BSDL_CAPTURES, 300);
    EXPECT_EQ(BSDL_ILLEGAL, 317);
}

TEST_F(BsdlScanner, KeywordsAreKnownInAnyCase) {
    const std::pair<const char*, Token> cases[] = {
        {"Entity", {258, "Entity"}},
        {"ENTITY", {258, "ENTITY"}},
        {"eNtItY", {258, "eNtItY"}},
        {"Port", {259}},
        {"GENERIC", {260}},
        {"Use", {261}},
        {"attribute", {262}},
        {"IS", {263}},
        {"Of", {264}},
        {"CONSTANT", {265}},
        {"End", {266}},
        {"True", {267, "True"}},
        {"FALSE", {268, "FALSE"}},
        {"Signal", {269, "Signal"}},
        {"LOW", {270}},
        {"Both", {271}},
        {"IN", {272, "IN"}},
        {"Out", {273, "Out"}},
        {"InOut", {274, "InOut"}},
        {"BUFFER", {275, "BUFFER"}},
        {"Linkage", {276, "Linkage"}},
        {"BIT", {277}},
        {"Bit_Vector", {278}},
        {"To", {279}},
        {"DOWNTO", {280}},
        {"Package", {281}},
        {"Body", {282}},
        {"TYPE", {283}},
        {"SubType", {284}},
        {"Record", {285}},
        {"ARRAY", {286}},
        {"Positive", {287}},
        {"Range", {288}},
        {"CAPTURES", {300}},
    };
    for (const auto& [source, token] : cases)
        EXPECT_EQ(Scan(source), Tokens{token}) << source;
}

TEST_F(BsdlScanner, MarksStandForThemselves) {
    EXPECT_EQ(
        Scan("&;,()[]:*:=."),
        (Tokens{{306}, {307}, {308}, {309}, {310}, {311}, {312}, {313}, {314, "*"}, {315}, {316}}));
}

TEST_F(BsdlScanner, LongestMatchWins) {
    const std::pair<const char*, Tokens> cases[] = {
        {"entity1", {{301, "entity1"}}},
        {"bit_vectors", {{301, "bit_vectors"}}},
        {"D_0a", {{301, "D_0a"}}},
        {"0101", {{303, "0101"}}},
        {"XXXX", {{301, "XXXX"}}},
        {"X01", {{301, "X01"}}},
        {"01XX", {{304, "01XX"}}},
        {"0x1X0", {{304, "0x1X0"}}},
        {"1X2", {{304, "1X"}, {303, "2"}}},
        {"2X", {{303, "2"}, {301, "X"}}},
        {"12X", {{303, "12"}, {301, "X"}}},
        {"1.", {{303, "1"}, {316}}},
        {"1.e5", {{303, "1"}, {316}, {301, "e5"}}},
        {"1E5", {{303, "1"}, {301, "E5"}}},
        {"1.5e", {{305, "1.5"}, {301, "e"}}},
        {"1.5e+", {{305, "1.5"}, {301, "e"}, {317}}},
        {"25.0e6", {{305, "25.0e6"}}},
        {"1.0E-3", {{305, "1.0E-3"}}},
        {"1.0E+3x", {{305, "1.0E+3"}, {301, "x"}}},
        {":=", {{315}}},
        {": =", {{313}}},
        {"*::=", {{314, "*"}, {313}, {315}}},
    };
    for (const auto& [source, tokens] : cases)
        EXPECT_EQ(Scan(source), tokens) << source;
}

TEST_F(BsdlScanner, StringsKeepTheirQuotes) {
    EXPECT_EQ(Scan("\"a\" \"b\""), (Tokens{{302, "\"a\""}, {302, "\"b\""}}));
    EXPECT_EQ(Scan("\"\""), (Tokens{{302, "\"\""}}));
    EXPECT_EQ(Scan("\"a -- b; \t\xE9\" c"), (Tokens{{302, "\"a -- b; \t\xE9\""}, {301, "c"}}));
}

TEST_F(BsdlScanner, StringHoldsEvenANulByte) {
    using namespace std::string_literals;
    EXPECT_EQ(Scan("\"a\0b\" c"s), (Tokens{{302, "\"a\0b\""s}, {301, "c"}}));
}

TEST_F(BsdlScanner, UnclosedStringIsPassedThroughAndReadOn) {
    EXPECT_EQ(Scan("\"a b\n\"c\" d\""),
              (Tokens{{301, "a"}, {301, "b"}, {302, "\"c\""}, {301, "d"}}));
    EXPECT_EQ(out, "\"\"");
    EXPECT_EQ(err, "");
    EXPECT_EQ(CurrentLine(), 2);
}

TEST_F(BsdlScanner, StrayMarksArePassedThroughWithoutAnError) {
    EXPECT_EQ(Scan("a = _b \""), (Tokens{{301, "a"}, {301, "b"}}));
    EXPECT_EQ(out, "=_\"");
    EXPECT_EQ(err, "");
}

TEST_F(BsdlScanner, AnyOtherCharacterIsIllegalAndNamed) {
    EXPECT_EQ(Scan("\n-"), Tokens{{317}});
    EXPECT_EQ(err, "Error: Illegal character - (/055) at line 2:\n");
    EXPECT_EQ(Scan("+/"), (Tokens{{317}, {317}}));
    EXPECT_EQ(err, "Error: Illegal character + (/053) at line 1:\n"
                   "Error: Illegal character / (/057) at line 1:\n");
    EXPECT_EQ(Scan("\xFF"), Tokens{{317}});
    EXPECT_EQ(err, "Error: Illegal character \xFF (/377) at line 1:\n");
    EXPECT_EQ(out, "");
}

TEST_F(BsdlScanner, EveryOtherByteIsIllegal) {
    std::string legal = "&;,()[]:*._=\" \t\v\f\n\r0123456789";
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        legal += letter;
        legal += static_cast<char>(letter - 'a' + 'A');
    }
    for (int byte = 0; byte < 256; ++byte) {
        const std::string source(1, static_cast<char>(byte));
        if (legal.find(source) == std::string::npos) {
            EXPECT_EQ(Scan(source), Tokens{{317}}) << byte;
        }
    }
}

TEST_F(BsdlScanner, CommentsEndWithTheirLine) {
    EXPECT_EQ(Scan("a -- b \"c\nd--e\r\nf --\xE9\rg--"),
              (Tokens{{301, "a"}, {301, "d"}, {301, "f"}, {301, "g"}}));
    EXPECT_EQ(CurrentLine(), 4);
    EXPECT_EQ(Scan("a - - b"), (Tokens{{301, "a"}, {317}, {317}, {301, "b"}}));
}

TEST_F(BsdlScanner, LineEndsOfAllKindsCount) {
    EXPECT_EQ(LineAfter(""), 1);
    EXPECT_EQ(LineAfter("a"), 1);
    EXPECT_EQ(LineAfter("a\n"), 2);
    EXPECT_EQ(LineAfter("a\r"), 2);
    EXPECT_EQ(LineAfter("a\r\n"), 2);
    EXPECT_EQ(LineAfter("a\n\rb"), 3);
    EXPECT_EQ(LineAfter("\r\r\n\n"), 4);
    EXPECT_EQ(LineAfter("\v\f\t "), 1);
}

TEST_F(BsdlScanner, LineEndAcrossTheEdgeOfTheReadBufferIsOne) {
    for (const size_t length : {8190u, 8191u, 8192u, 16382u, 16383u, 16384u})
        EXPECT_EQ(LineAfter(std::string(length, ' ') + "\r\n;"), 2) << length;
}

TEST_F(BsdlScanner, TokensMayBeLargerThanTheReadBuffer) {
    const std::string name(100000, 'n');
    const std::string quoted = '"' + std::string(8000000, '(') + '"';
    EXPECT_EQ(Scan(name + ' ' + quoted + "--" + std::string(500000, '"') + "\n;"),
              (Tokens{{301, name}, {302, quoted}, {307}}));
}

TEST_F(BsdlScanner, EndOfInputIsRepeatable) {
    Open("a");
    EXPECT_EQ(Next(), (Token{301, "a"}));
    EXPECT_EQ(Next(), Token{0});
    EXPECT_EQ(Next(), Token{0});
}

TEST_F(BsdlScanner, ModeTokenComesOnceBeforeTheNextToken) {
    Open("a b");
    EXPECT_EQ(Next(), (Token{301, "a"}));
    SetModeToken(BSDL_PIN_MAP_STRING_MODE);
    EXPECT_EQ(Next(), Token{298});
    EXPECT_EQ(TokenText(), nullptr);
    EXPECT_EQ(Next(), (Token{301, "b"}));
}

TEST_F(BsdlScanner, PushedTextIsReadBeforeTheRestOfTheFile) {
    Open("a\nb");
    EXPECT_EQ(Next(), (Token{301, "a"}));
    EXPECT_EQ(PushScannerString("x\n", 7), 0);
    EXPECT_EQ(CurrentLine(), 7);
    EXPECT_EQ(CurrentFileName(), path);
    EXPECT_EQ(Next(), (Token{301, "x"}));
    EXPECT_EQ(PushScannerString("y", 40), 0);
    EXPECT_EQ(Next(), (Token{301, "y"}));
    EXPECT_EQ(CurrentLine(), 40);
    EXPECT_EQ(Next(), (Token{301, "b"}));
    EXPECT_EQ(CurrentLine(), 2);
    EXPECT_EQ(Next(), Token{0});
}

TEST_F(BsdlScanner, PushedTextIsCopied) {
    Open("");
    std::string text = "first";
    ASSERT_EQ(PushScannerString(text, 1), 0);
    text = "other";
    EXPECT_EQ(Next(), (Token{301, "first"}));
}

TEST_F(BsdlScanner, EmptyAndManyPushedTextsAreSurvived) {
    Open("end");
    for (int depth = 0; depth < 10000; ++depth)
        ASSERT_EQ(PushScannerString("", depth), 0);
    EXPECT_EQ(Next(), Token{266});
    EXPECT_EQ(CurrentLine(), 1);
}

TEST_F(BsdlScanner, InputThatIsPoppedIsNotReadOn) {
    Open("a b");
    EXPECT_EQ(Next(), (Token{301, "a"}));
    ASSERT_EQ(PushScannerString("x y", 9), 0);
    EXPECT_EQ(Next(), (Token{301, "x"}));
    PopScannerInput();
    EXPECT_EQ(Next(), (Token{301, "b"}));
}

// A token of gigabytes would end the program; a file with holes takes no room on the disk.
TEST_F(BsdlScanner, FileBeyondAnySizeOfBsdlIsNotRead) {
    const std::string huge = folder.Write("huge.bsd", "entity");
    std::filesystem::resize_file(huge, 32 * 1024 * 1024 + 1);
    EXPECT_EQ(OpenScannerFile(huge.c_str()), -1);
    EXPECT_EQ(errors, std::vector<std::string>{"failed to open file '" + huge + "'"});
    std::filesystem::resize_file(huge, 32 * 1024 * 1024);
    EXPECT_EQ(OpenScannerFile(huge.c_str()), 0);
}

TEST_F(BsdlScanner, MissingFileIsReported) {
    const std::string missing = folder.Path("none.bsd");
    EXPECT_EQ(OpenScannerFile(missing.c_str()), -1);
    EXPECT_EQ(errors, std::vector<std::string>{"failed to open file '" + missing + "'"});
    EXPECT_EQ(CurrentFileName(), nullptr);
    EXPECT_EQ(CurrentLine(), 0);
}

TEST_F(BsdlScanner, FolderCannotBeOpened) {
    EXPECT_EQ(OpenScannerFile(folder.path.string().c_str()), -1);
    EXPECT_EQ(errors,
              std::vector<std::string>{"failed to open file '" + folder.path.string() + "'"});
}

TEST_F(BsdlScanner, SecondFileIsRefusedSilentlyAndTheFirstReadOn) {
    Open("a b");
    EXPECT_EQ(Next(), (Token{301, "a"}));
    EXPECT_EQ(OpenScannerFile(path.c_str()), -2);
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(Next(), (Token{301, "b"}));
}

TEST_F(BsdlScanner, ClosingInTheMiddleLeavesACleanStart) {
    Open("a\nb\nc d");
    Next();
    Next();
    ASSERT_EQ(PushScannerString("x y", 9), 0);
    Next();
    SetModeToken(BSDL_PIN_MAP_STRING_MODE);
    CloseScanner();
    EXPECT_EQ(CurrentFileName(), nullptr);
    EXPECT_EQ(TokenText(), nullptr);
    Open("z");
    EXPECT_EQ(CurrentLine(), 1);
    EXPECT_EQ(Next(), (Token{301, "z"}));
    EXPECT_EQ(Next(), Token{0});
}

TEST_F(BsdlScanner, TextsLiveUntilTheScannerIsClosed) {
    Open("first \"second\"");
    NextToken();
    const std::string* first = TokenText();
    NextToken();
    const std::string* made = MakePoolText("D(3)");
    EXPECT_EQ(*first, "first");
    EXPECT_EQ(*TokenText(), "\"second\"");
    EXPECT_EQ(*made, "D(3)");
}
