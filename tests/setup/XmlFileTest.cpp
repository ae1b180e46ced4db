#include "setup/XmlFile.h"

#include "platform/Text.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <wx/xml/xml.h>

namespace {

// So many, with what ends a tag and an attribute elsewhere in each value.
std::string Attributes(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " a" + std::to_string(i) + "='\"=>'";
    return text;
}

class XmlFile : public ::testing::Test {
  protected:
    bool Load(std::string_view text) {
        return LoadXmlFile(document_, FromLocal(folder_.Write("file", text)));
    }

    TemporaryFolder folder_;
    wxXmlDocument document_;
};

TEST(XmlNesting, CountsOpenElementsOnly) {
    struct {
        const char* text;
        int deepest;
    } const cases[] = {
        {"", 0},
        {"<a/>", 0},
        {"<a></a>", 1},
        {"<?xml version='1.0'?><a><b/><b></b><b></b></a>", 2},
        {"<a><!-- <b><c><d> --><b></b></a>", 2},
        {"<a><![CDATA[<b><c><d>]]></a>", 1},
        {"<a x='<b><c>/>' y=\">>\"><b></b></a>", 2},
        {"<a x='/'><b x=\"'/>\"><c></c></b></a>", 3},
        {"<a", 1},
        {"<a x='", 1},
        {"<!-- <a>", 0},
    };

    for (const auto& c : cases) {
        EXPECT_FALSE(IsNestedTooDeep(c.text, c.deepest)) << c.text;
        if (c.deepest > 0) {
            EXPECT_TRUE(IsNestedTooDeep(c.text, c.deepest - 1)) << c.text;
        }
    }
}

TEST_F(XmlFile, LoadsAnOrdinaryDocument) {
    EXPECT_TRUE(Load("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a x=\"1\"/>\n"));
    EXPECT_EQ(document_.GetRoot()->GetName(), "a");
    EXPECT_EQ(document_.GetRoot()->GetAttribute("x"), "1");
}

TEST_F(XmlFile, RefusesWhatIsNoPlainDocument) {
    const std::string cases[] = {
        "",
        "text",
        "<a>",
        "<a></b>",
        "<a/><b/>",
        std::string("<a>\0</a>", 8),
        "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
        "\x89PNG\r\n",
    };
    for (const std::string& text : cases)
        EXPECT_FALSE(Load(text)) << text;
    EXPECT_FALSE(LoadXmlFile(document_, FromLocal(folder_.Path("missing"))));
    EXPECT_FALSE(LoadXmlFile(document_, folder_.path.wstring()));
}

// Freeing such a tree takes more stack than there is.
TEST_F(XmlFile, RefusesAbsurdNestingBeforeItIsParsed) {
    std::string open;
    std::string close;
    for (int depth = 0; depth < 500000; ++depth) {
        open += "<a>";
        close += "</a>";
    }
    EXPECT_FALSE(Load(open + close));
    EXPECT_FALSE(Load(open));
}

// The document takes a time for each that grows with the square of the size.
TEST_F(XmlFile, RefusesElementsAndTextsThatNoSetupHas) {
    EXPECT_TRUE(Load("<a" + Attributes(1000) + "/>"));
    EXPECT_FALSE(Load("<a" + Attributes(1001) + "/>"));
    EXPECT_FALSE(Load("<?pi don't?><a><b" + Attributes(1001) + "></b></a>"));
    EXPECT_TRUE(Load("<a>" + std::string(65536, 'x') + "</a>"));
    EXPECT_FALSE(Load("<a>" + std::string(65537, 'x') + "</a>"));
    EXPECT_FALSE(Load("<a><b/>" + std::string(65537, 'x') + "</a>"));
    EXPECT_FALSE(Load("<a><![CDATA[" + std::string(65537, '\n') + "]]></a>"));
}

TEST_F(XmlFile, TakesLongValuesCommentsAndBlanks) {
    const std::string text(1000000, 'x');
    EXPECT_TRUE(Load("<a b='" + text + "'/>"));
    EXPECT_TRUE(Load("<a><!--" + text + "--></a>"));
    EXPECT_TRUE(Load("<a>" + std::string(1000000, '\n') + "</a>"));
}

TEST_F(XmlFile, CharactersThatXmlCannotHoldAreLeftOut) {
    document_.SetRoot(new wxXmlNode(wxXML_ELEMENT_NODE, "a"));
    document_.GetRoot()->AddAttribute("x", std::wstring(L"\x01 tab\t<\">&\n\x1F\xFFFE end"));
    const std::wstring path = FromLocal(folder_.Path("file"));
    ASSERT_TRUE(SaveXmlFile(document_, path));
    ASSERT_TRUE(LoadXmlFile(document_, path));
    EXPECT_EQ(document_.GetRoot()->GetAttribute("x").ToStdWstring(), L" tab\t<\">&\n end");
}

TEST_F(XmlFile, FailedSaveLeavesTheOldFile) {
    const std::string path = folder_.Write("file", "old");
    document_.SetRoot(new wxXmlNode(wxXML_ELEMENT_NODE, "a"));
    EXPECT_FALSE(SaveXmlFile(document_, FromLocal(folder_.Path("missing/file"))));
    EXPECT_FALSE(SaveXmlFile(document_, folder_.path.wstring()));
    EXPECT_EQ(ReadWholeFile(path), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path), {}), 1);
}

} // namespace
