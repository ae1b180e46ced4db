#include "dialogs/BsdlFileDlg.h"

#include "tests/dialogs/BsdlFixture.h"
#include "widgets/Help.h"

#include <wx/listctrl.h>

namespace {

constexpr char kFilter[] =
    "BSDL Files (*.bsd; *.bsdl; *.bsm)|*.bsd;*.bsdl;*.bsm|All Files (*.*)|*.*";

wxTextCtrl& NameBox(wxWindow& dialog) {
    return *FindByClass<wxTextCtrl>(dialog);
}

wxListBox& Folders(wxWindow& dialog) {
    return *FindByClass<wxListBox>(dialog);
}

std::vector<std::string> FolderNames(wxWindow& dialog) {
    std::vector<std::string> names;
    for (const wxString& name : Folders(dialog).GetStrings())
        names.push_back(name.ToStdString());
    return names;
}

// Which of the buttons for a selected folder can be pressed, as in "RUD".
std::string EnabledButtons(wxWindow& dialog) {
    std::string enabled;
    for (const auto& [label, letter] : {std::pair{"Remove Directory from List", 'R'},
                                        {"Move Line Up", 'U'},
                                        {"Move Line Down", 'D'}})
        if (IsEnabled(dialog, label))
            enabled += letter;
    return enabled;
}

using Names = std::vector<std::string>;

} // namespace

class BsdlFileDlgTest : public BsdlDialogTest {
  protected:
    // Shows the dialog for a device with `idcode`.
    int Show(const ModalSteps::Step& step, const OmBitVector& idcode = Idcode()) {
        OmBsdlFileDlg dialog(nullptr);
        dialog.displayName = "Dev1";
        dialog.idcode = idcode;
        dialog.fileName = fileName_;
        user_.Expect("BSDL File", [&](wxDialog& shown) {
            EXPECT_EQ(shown.GetTitle(), "Dev1 BSDL File");
            step(shown);
        });
        const int button = dialog.ShowModal();
        fileName_ = dialog.fileName;
        return button;
    }

    static void WriteFolders(const wxString& value) {
        wxConfigBase::Get()->Write("BsdlDirs", value);
    }

    static wxString ReadFolders() { return wxConfigBase::Get()->Read("BsdlDirs", "(none)"); }

    wxString fileName_;
};

TEST_F(BsdlFileDlgTest, ShowsNameAndFolders) {
    WriteFolders("/one;/two");
    fileName_ = "chip.bsd";
    Show([](wxDialog& shown) {
        EXPECT_EQ(NameBox(shown).GetValue(), "chip.bsd");
        EXPECT_EQ(FolderNames(shown), Names({"/one", "/two"}));
        EXPECT_TRUE(IsEnabled(shown, "&Verify..."));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "bsdl_file");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, StartsEmptyWithoutAName) {
    OmBsdlFileDlg dialog(nullptr);
    user_.Expect("BSDL File", [](wxDialog& shown) {
        EXPECT_EQ(FolderNames(shown), Names());
        EXPECT_EQ(EnabledButtons(shown), "");
        EXPECT_FALSE(IsEnabled(shown, "&Verify..."));
        EXPECT_FALSE(IsEnabled(shown, "View &File..."));
        NameBox(shown).SetValue("x");
        EXPECT_TRUE(IsEnabled(shown, "&Verify..."));
        EXPECT_TRUE(IsEnabled(shown, "View &File..."));
        NameBox(shown).SetValue("");
        EXPECT_FALSE(IsEnabled(shown, "&Verify..."));
        PressButton(shown, wxID_CANCEL);
    });
    dialog.ShowModal();
}

TEST_F(BsdlFileDlgTest, OkTakesTheTrimmedNameAndKeepsTheFolders) {
    WriteFolders("/one");
    files_.ExpectFolder("Select a directory", "/two");
    files_.ExpectFolder("Select a directory", ""); // cancelled
    EXPECT_EQ(Show([](wxDialog& shown) {
                  PressButton(shown, "Add Directory to List");
                  PressButton(shown, "Add Directory to List");
                  NameBox(shown).SetValue("  chip.bsd ");
                  PressButton(shown, wxID_OK);
              }),
              wxID_OK);
    EXPECT_EQ(fileName_, "chip.bsd");
    EXPECT_EQ(ReadFolders(), "/one;/two");
}

TEST_F(BsdlFileDlgTest, OkTakesAnEmptyName) {
    fileName_ = "chip.bsd";
    EXPECT_EQ(Show([](wxDialog& shown) {
                  NameBox(shown).SetValue("");
                  PressButton(shown, wxID_OK);
              }),
              wxID_OK);
    EXPECT_EQ(fileName_, "");
}

TEST_F(BsdlFileDlgTest, CancelForgetsTheChangesToTheFolders) {
    WriteFolders("/one;/two");
    Show([](wxDialog& shown) {
        SelectRow(Folders(shown), 0);
        PressButton(shown, "Remove Directory from List");
        EXPECT_EQ(FolderNames(shown), Names({"/two"}));
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(ReadFolders(), "/one;/two");
}

TEST_F(BsdlFileDlgTest, FoldersCanBeMovedAndRemoved) {
    WriteFolders("/one;/two;/three");
    Show([](wxDialog& shown) {
        SelectRow(Folders(shown), 0);
        EXPECT_EQ(EnabledButtons(shown), "RUD");
        PressButton(shown, "Move Line Up"); // nothing above it
        EXPECT_EQ(FolderNames(shown), Names({"/one", "/two", "/three"}));
        PressButton(shown, "Move Line Down");
        EXPECT_EQ(FolderNames(shown), Names({"/two", "/one", "/three"}));
        EXPECT_EQ(Folders(shown).GetSelection(), 1);
        PressButton(shown, "Move Line Down");
        PressButton(shown, "Move Line Down"); // nothing below it
        EXPECT_EQ(FolderNames(shown), Names({"/two", "/three", "/one"}));
        PressButton(shown, "Move Line Up");
        EXPECT_EQ(FolderNames(shown), Names({"/two", "/one", "/three"}));
        PressButton(shown, "Remove Directory from List");
        EXPECT_EQ(FolderNames(shown), Names({"/two", "/three"}));
        EXPECT_EQ(EnabledButtons(shown), "");
        SelectRow(Folders(shown), 0);
        PressButton(shown, "Remove Directory from List");
        SelectRow(Folders(shown), 0);
        EXPECT_EQ(EnabledButtons(shown), "R");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(ReadFolders(), "/three");
}

TEST_F(BsdlFileDlgTest, VerifyTellsHowTheFileFits) {
    const struct {
        wxString file;
        OmBitVector idcode;
        const wchar_t* text;
        OmMessageStyle style;
    } cases[] = {
        {matching_, Idcode(), L"The BSDL file is OK and matches the device IDCODE.",
         kInformationBox},
        {anyVersion_, Idcode(), L"The BSDL file is OK and matches the device IDCODE.",
         kInformationBox},
        {otherVersion_, Idcode(),
         L"The detected device IDCODE and the IDCODE specified in the BSDL file have different "
         L"version fields.",
         kInformationBox},
        {other_, Idcode(), L"The BSDL file does not match the device IDCODE.", kWarningBox},
        {matching_,
         {},
         L"The BSDL file was parsed without errors but it cannot be verified if it matches the "
         L"device IDCODE as the IDCODE is unknown.",
         kInformationBox},
        {matching_,
         {0},
         L"The BSDL file was parsed without errors but it cannot be verified if it matches the "
         L"device IDCODE as the IDCODE is unknown.",
         kInformationBox},
        {"/nowhere/chip.bsd", Idcode(), L"Cannot find the '/nowhere/chip.bsd' file.", kErrorBox},
    };

    for (const auto& c : cases) {
        boxes_.Expect(c.text, c.style);
        Show(
            [&](wxDialog& shown) {
                NameBox(shown).SetValue(c.file);
                PressButton(shown, "&Verify...");
                PressButton(shown, wxID_CANCEL);
            },
            c.idcode);
    }
}

TEST_F(BsdlFileDlgTest, VerifyMatchesAnyDeviceWithAPatternOfDontCares) {
    const wxString file =
        Write("any.bsd", ChangedSource("\"XXXX\" & \"0001001000110100\" & \"00000010111\" & \"1\"",
                                       "\"XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX\""));
    boxes_.Expect(L"The BSDL file is OK and matches the device IDCODE.", kInformationBox);
    Show([&](wxDialog& shown) {
        NameBox(shown).SetValue(file);
        PressButton(shown, "&Verify...");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, VerifyShowsWhatTheParserSays) {
    Show([this](wxDialog& shown) {
        NameBox(shown).SetValue(broken_);
        ExpectParserErrors(user_);
        PressButton(shown, "&Verify...");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, BrowseTakesWhatFitsWithoutAQuestion) {
    const struct {
        wxString file;
        OmBitVector idcode;
    } cases[] = {{matching_, Idcode()}, {anyVersion_, Idcode()}, {other_, {}}};

    for (const auto& c : cases) {
        files_.ExpectOpen("Select a BSDL File", kFilter, c.file);
        Show(
            [&](wxDialog& shown) {
                PressButton(shown, "&Browse...");
                EXPECT_EQ(NameBox(shown).GetValue(), c.file);
                EXPECT_TRUE(IsEnabled(shown, "&Verify..."));
                PressButton(shown, wxID_OK);
            },
            c.idcode);
        EXPECT_EQ(fileName_, c.file);
        fileName_.clear();
    }
}

TEST_F(BsdlFileDlgTest, BrowseAsksAboutAMismatch) {
    const struct {
        wxString file;
        std::wstring question;
        OmMessageStyle style;
        std::string pattern;
    } cases[] = {
        {otherVersion_,
         L"There are different version fields in the detected device IDCODE and the IDCODE "
         L"specified in the '" +
             otherVersion_.ToStdWstring() +
             L"' BSDL file.\nAre you sure you want to use this file anyway?",
         kQuestionBox, "00100001001000110100000000101111"},
        {other_,
         L"The '" + other_.ToStdWstring() +
             L"' BSDL file does not match the device IDCODE.\nAre you sure you want to use this "
             L"file anyway?",
         kLossQuestionBox, "00011111001000110100000000101111"},
    };

    for (const auto& c : cases) {
        for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Yes}) {
            GetChosenMismatches().clear();
            files_.ExpectOpen("Select a BSDL File", kFilter, c.file);
            boxes_.Expect(c.question, c.style, answer);
            const bool taken = answer == OmAnswer::Yes;
            Show([&](wxDialog& shown) {
                PressButton(shown, "&Browse...");
                EXPECT_EQ(NameBox(shown).GetValue(), taken ? c.file : wxString());
                PressButton(shown, wxID_CANCEL);
            });
            const OmAcceptedMismatches expected =
                taken ? OmAcceptedMismatches{{Idcode(), {c.pattern}}} : OmAcceptedMismatches();
            EXPECT_EQ(GetChosenMismatches(), expected);
        }
    }
}

TEST_F(BsdlFileDlgTest, CancelledBrowseChangesNothing) {
    files_.ExpectOpen("Select a BSDL File", kFilter, "");
    fileName_ = "chip.bsd";
    Show([](wxDialog& shown) {
        PressButton(shown, "&Browse...");
        EXPECT_EQ(NameBox(shown).GetValue(), "chip.bsd");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, BrowseShowsErrorsAndTakesTheNameToLookAt) {
    files_.ExpectOpen("Select a BSDL File", kFilter, broken_);
    Show([this](wxDialog& shown) {
        ExpectParserErrors(user_);
        PressButton(shown, "&Browse...");
        EXPECT_EQ(NameBox(shown).GetValue(), broken_);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, ViewOpensTheFileInTheEditor) {
    Show([this](wxDialog& shown) {
        NameBox(shown).SetValue(matching_);
        PressButton(shown, "View &File...");
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(GetViewedFile(), matching_);
}

TEST_F(BsdlFileDlgTest, ViewOfAMissingFileSaysSo) {
    boxes_.Expect(L"Cannot find the '/nowhere/chip.bsd' file.", kErrorBox);
    Show([](wxDialog& shown) {
        NameBox(shown).SetValue("/nowhere/chip.bsd");
        PressButton(shown, "View &File...");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, SearchNeedsAnIdcodeAndFolders) {
    boxes_.Expect(L"Cannot run the BSDL file search as the device IDCODE is unknown.", kWarningBox);
    Show(
        [](wxDialog& shown) {
            PressButton(shown, "&Search");
            PressButton(shown, wxID_CANCEL);
        },
        {});
    boxes_.Expect(L"Please specify directories in which to search for BSDL files.", kWarningBox);
    Show([](wxDialog& shown) {
        PressButton(shown, "&Search");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, SearchTakesTheSelectedFile) {
    WriteFolders(folder_.path.string());
    Show([this](wxDialog& shown) {
        user_.Expect("Searching for BSDL Files", [this](wxDialog& search) {
            auto* list = FindByClass<wxListCtrl>(search);
            WaitFor([&] { return FindByLabel(search, "Search done.") != nullptr; });
            SelectRow(*list, list->FindItem(-1, matching_));
            PressButton(search, wxID_OK);
        });
        PressButton(shown, "&Search");
        EXPECT_EQ(NameBox(shown).GetValue(), matching_);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlFileDlgTest, SearchAsksAboutAnotherVersion) {
    WriteFolders(folder_.path.string());
    for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Yes}) {
        GetChosenMismatches().clear();
        boxes_.Expect(L"There are different version fields in the detected device IDCODE and the "
                      L"IDCODE specified in the '" +
                          otherVersion_.ToStdWstring() +
                          L"' BSDL file.\nAre you sure you want to use this file anyway?",
                      kQuestionBox, answer);
        Show([&](wxDialog& shown) {
            user_.Expect("Searching for BSDL Files", [this](wxDialog& search) {
                auto* list = FindByClass<wxListCtrl>(search);
                WaitFor([&] { return FindByLabel(search, "Search done.") != nullptr; });
                SelectRow(*list, list->FindItem(-1, otherVersion_));
                PressButton(search, wxID_OK);
            });
            PressButton(shown, "&Search");
            EXPECT_EQ(NameBox(shown).GetValue(),
                      answer == OmAnswer::Yes ? otherVersion_ : wxString());
            PressButton(shown, wxID_CANCEL);
        });
        EXPECT_EQ(GetChosenMismatches().size(), answer == OmAnswer::Yes ? 1u : 0u);
    }
}

TEST_F(BsdlFileDlgTest, CancelledSearchTakesNothing) {
    WriteFolders(folder_.path.string());
    Show([this](wxDialog& shown) {
        user_.ExpectAndPress("Searching for BSDL Files", wxID_CANCEL);
        PressButton(shown, "&Search");
        EXPECT_EQ(NameBox(shown).GetValue(), "");
        PressButton(shown, wxID_CANCEL);
    });
}

namespace {

class TopicCollector : public OmHelpViewer {
  public:
    void Initialize(const wxString&) override {}

    void DisplaySection(const wxString& topic) override { topics.push_back(topic); }

    std::vector<wxString> topics;
};

} // namespace

TEST_F(BsdlFileDlgTest, HelpShowsItsTopic) {
    TopicCollector help;
    SetCurrentHelpViewer(&help);
    Show([](wxDialog& shown) {
        PressButton(shown, "&Help");
        PressButton(shown, wxID_CANCEL);
    });
    SetCurrentHelpViewer(nullptr);
    EXPECT_EQ(help.topics, std::vector<wxString>{"bsdl.htm"});
}
