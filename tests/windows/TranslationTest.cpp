// The windows in the user's language.
#include "app/CommandIds.h"
#include "app/Translations.h"
#include "tests/windows/MainWindow.h"
#include "tests/windows/support/Languages.h"
#include "widgets/WxUserInterface.h"

#include <map>
#include <set>
#include <wx/aui/auibar.h>
#include <wx/translation.h>
#include <wx/wizard.h>

namespace {

using Texts = std::vector<std::string>;

std::string Utf8(const wxString& text) {
    return text.utf8_string();
}

Texts LabelsOf(const wxMenu& menu) {
    Texts labels;
    for (const wxMenuItem* item : menu.GetMenuItems())
        labels.push_back(item->IsSeparator() ? "---" : Utf8(item->GetItemLabel()));
    return labels;
}

// The letter after the ampersand; nothing if there is none.
wxString MnemonicOf(const wxString& label) {
    return label.AfterFirst('&').Left(1).Lower();
}

void ExpectUniqueMnemonics(const wxMenu& menu) {
    std::set<wxString> taken;
    for (const wxMenuItem* item : menu.GetMenuItems()) {
        if (item->IsSeparator())
            continue;
        const std::string label = Utf8(item->GetItemLabel());
        EXPECT_TRUE(taken.insert(MnemonicOf(item->GetItemLabel())).second) << label;
        EXPECT_FALSE(MnemonicOf(item->GetItemLabel()).empty()) << label;
        if (item->GetSubMenu())
            ExpectUniqueMnemonics(*item->GetSubMenu());
    }
}

void ExpectUniqueMnemonics(const wxMenuBar& bar) {
    std::set<wxString> taken;
    for (size_t index = 0; index < bar.GetMenuCount(); ++index) {
        EXPECT_TRUE(taken.insert(MnemonicOf(bar.GetMenuLabel(index))).second) << index;
        ExpectUniqueMnemonics(*bar.GetMenu(index));
    }
}

// What stands after the tab of each command.
std::map<int, std::string> AcceleratorsOf(const wxMenu& menu) {
    std::map<int, std::string> keys;
    for (const wxMenuItem* item : menu.GetMenuItems()) {
        const std::string label = Utf8(item->GetItemLabel());
        if (label.find('\t') != std::string::npos)
            keys[item->GetId()] = label.substr(label.find('\t'));
    }
    return keys;
}

std::map<int, std::string> AcceleratorsOf(const wxMenuBar& bar) {
    std::map<int, std::string> keys;
    for (size_t index = 0; index < bar.GetMenuCount(); ++index)
        keys.merge(AcceleratorsOf(*bar.GetMenu(index)));
    return keys;
}

class GermanWindowTest : public MainWindowTest {
  protected:
    GermanWindowTest() : english_(AcceleratorsOf(*frame_->GetMenuBar())), german_("de") {
        CloseWindow();
        OpenWindow();
    }

    const wxMenuBar& GetBar() const { return *frame_->GetMenuBar(); }

    std::map<int, std::string> english_; // accelerators of the English window
    InLanguage german_;
};

// With no tool cut off.
bool ShowsEveryTool(const wxAuiToolBar& bar) {
    return bar.GetToolBarFits();
}

} // namespace

TEST_F(GermanWindowTest, MenusAreInGerman) {
    Texts titles;
    for (size_t index = 0; index < GetBar().GetMenuCount(); ++index)
        titles.push_back(Utf8(GetBar().GetMenuLabel(index)));
    EXPECT_EQ(titles, (Texts{"&Datei", "&Ansicht", "&Setup", "A&ktionen", "&Hilfe"}));
    EXPECT_EQ(
        LabelsOf(*GetBar().GetMenu(0)),
        (Texts{"&Neues Setup", "Setup &laden...", "Setup &speichern", "Setup speichern &unter...",
               "---", "D&atendatei laden...\tCtrl+O", "Da&ten speichern unter...\tCtrl+S", "---",
               "Zuletzt &verwendete Setup-Dateien", "Zuletzt verwendete &Datendateien", "---",
               "&Beenden"}));
    EXPECT_EQ(LabelsOf(*GetBar().GetMenu(3)),
              (Texts{"&Info...\tF5", "&Lesen...\tCtrl+R", "Lö&schen...\tCtrl+E", "Lee&rprüfung...",
                     "&Programmieren...\tCtrl+P", "Ü&berprüfen...", "---", "I&ntel-spezifisch",
                     "---", "JTAG-Rese&t\tF9"}));
    TakeScreenshot(*frame_, "de-main");
}

TEST_F(GermanWindowTest, CommandsKeepTheirKeysAndMnemonicsDoNotClash) {
    EXPECT_FALSE(english_.empty());
    EXPECT_EQ(AcceleratorsOf(GetBar()), english_);
    ExpectUniqueMnemonics(GetBar());
}

TEST_F(GermanWindowTest, TitleCaptionAndToolsAreInGerman) {
    EXPECT_EQ(frame_->GetTitle(), "Unbenannt - Velmora Flash Programmer");
    EXPECT_EQ(GetCaption(), " (keine Daten geladen)");
    const wxAuiToolBar& bar = GetToolBar(0);
    EXPECT_EQ(bar.GetToolLabel(kIdProgram), "Programmieren");
    EXPECT_EQ(Utf8(bar.GetToolShortHelp(kIdVerify)), "Programmierte Daten überprüfen...");
    ReadFromFlash(0, {1, 2, 3});
    EXPECT_EQ(GetCaption(), " (aus dem Flash gelesene Daten), 3 Byte");
}

TEST_F(GermanWindowTest, BoxesAndFileDialogsAreInGerman) {
    const std::string missing = folder_.Path("missing.hex");
    files_.ExpectOpen("Datendatei laden",
                      "*.srec *.mot *.S19 *.hex *.bin *.raw *.dat|"
                      "*.srec;*.mot;*.S19;*.hex;*.bin;*.raw;*.dat|Alle Dateien (*.*)|*.*",
                      missing);
    user_.Expect(L"Die Datendatei „" + wxString(missing).ToStdWstring() +
                     L"“ konnte nicht geladen werden.\nFehler beim Öffnen der Datei.",
                 kErrorBox);
    ChooseMenu(*frame_, kIdLoadData);
}

// This one comes from below the windows.
TEST_F(GermanWindowTest, RefusalsOfAnActionAreInGerman) {
    user_.Expect(L"Es ist keine JTAG-Kette definiert.", kWarningBox);
    ChooseMenu(*frame_, kIdInfo);
}

TEST(Translation, ButtonsOfABoxAreInTheLanguageOfItsText) {
    const InLanguage german("de");
    WxUserInterface userInterface;
    ModalSteps user;
    user.Expect("Frage", [](wxDialog& box) {
        EXPECT_NE(FindByLabel(box, "&Ja"), nullptr);
        EXPECT_NE(FindByLabel(box, "&Nein"), nullptr);
        TakeScreenshot(box, "de-question");
        PressButton(box, "&Abbrechen");
    });
    EXPECT_EQ(userInterface.ShowMessage(L"Text", L"Frage", kSaveQuestionBox), OmAnswer::Cancel);
}

TEST(Translation, ButtonsOfAWizardAreInTheLanguageOfItsPages) {
    const InLanguage german("de");
    wxWizard wizard(nullptr, wxID_ANY, "Assistent");
    EXPECT_NE(FindByLabel(wizard, "&Weiter >"), nullptr);
    EXPECT_NE(FindByLabel(wizard, "< &Zurück"), nullptr);
}

TEST_F(GermanWindowTest, EveryToolFitsTheWindowAsItFirstOpens) {
    frame_->SetSize(670, 680);
    SettleEvents();
    TakeScreenshot(*frame_, "de-main-first");
    EXPECT_TRUE(ShowsEveryTool(GetToolBar(0)));
    EXPECT_TRUE(ShowsEveryTool(GetToolBar(1)));
}

TEST_F(MainWindowTest, KeepsItsSizeInALanguageOfLongTexts) {
    const WithLongTexts longTexts;
    CloseWindow();
    OpenWindow();
    EXPECT_EQ(frame_->GetSize(), wxSize(800, 600));
    EXPECT_TRUE(ShowsEveryTool(GetToolBar(1)));
    TakeScreenshot(*frame_, "long-main");
}

TEST_F(MainWindowTest, LongNamesDoNotWidenTheWindow) {
    const std::string path = folder_.Write(std::string(240, 'n'), "data");
    const wxSize before = frame_->GetSize();
    ASSERT_TRUE(frame_->LoadDataFile(path));
    SettleEvents();
    EXPECT_EQ(frame_->GetSize(), before);
    EXPECT_EQ(FindByClass<wxStaticText>(*frame_)->GetSize().x, 220);
    EXPECT_LE(frame_->GetMinSize().x, before.x);
    TakeScreenshot(*frame_, "long-name");
}

namespace {

struct LanguageCase {
    const char* language; // of the environment, in the order in which they count
    const char* all;
    const char* messages;
    const char* lang;
    const char* closeLabel;
};

constexpr LanguageCase kLanguages[] = {
    {"", "de_DE.UTF-8", "", "", "S&chließen"},
    {"", "", "de_DE.UTF-8", "", "S&chließen"},
    {"", "", "", "de_DE.UTF-8", "S&chließen"},
    {"", "", "", "de_AT.UTF-8", "S&chließen"},
    {"", "", "", "de", "S&chließen"},
    {"de", "", "", "en_US.UTF-8", "S&chließen"},
    {"de_CH", "", "", "en_US.UTF-8", "S&chließen"},
    {"en", "", "", "de_DE.UTF-8", "&Close"},
    {"fr:de", "", "", "fr_FR.UTF-8", "S&chließen"},
    {"", "", "", "en_US.UTF-8", "&Close"},
    {"", "", "", "fr_FR.UTF-8", "&Close"}, // no such catalogue
    {"", "", "", "xx_YY", "&Close"},       // no such language
    {"", "", "", "C", "&Close"},
    {"", "", "", "C.UTF-8", "&Close"},
    {"", "C.UTF-8", "", "de_DE.UTF-8", "&Close"},
    {"de", "", "", "C", "&Close"}, // a script's way to get what it can compare
    {"de", "", "", "C.UTF-8", "S&chließen"},
    {"it:en:de", "", "", "it_IT.UTF-8", "&Close"},
    {":de", "", "", "de_DE@euro", "S&chließen"},
    {"", "", "", "", "&Close"},
};

class Environment {
  public:
    explicit Environment(const LanguageCase& c) {
        const std::pair<const char*, const char*> values[] = {{"LANGUAGE", c.language},
                                                              {"LC_ALL", c.all},
                                                              {"LC_MESSAGES", c.messages},
                                                              {"LANG", c.lang}};
        for (const auto& [name, value] : values) {
            const char* previous = getenv(name);
            previous_.emplace_back(name, previous ? previous : "");
            Set(name, value);
        }
    }

    ~Environment() {
        for (const auto& [name, value] : previous_)
            Set(name, value.c_str());
    }

  private:
    static void Set(const char* name, const char* value) {
        if (*value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }

    std::vector<std::pair<const char*, std::string>> previous_;
};

class CountingLog : public wxLog {
  public:
    CountingLog() : previous_(SetActiveTarget(this)) {}

    ~CountingLog() override { SetActiveTarget(previous_); }

    int count = 0;

  protected:
    void DoLogText(const wxString&) override { ++count; }

  private:
    wxLog* previous_;
};

} // namespace

TEST(Translation, IsTheOneThatTheEnvironmentAsksFor) {
    CountingLog log;
    for (const LanguageCase& c : kLanguages) {
        const Environment environment(c);
        LoadTranslations();
        EXPECT_EQ(Utf8(_("&Close")), c.closeLabel)
            << "LANGUAGE=" << c.language << " LC_ALL=" << c.all << " LC_MESSAGES=" << c.messages
            << " LANG=" << c.lang;
    }
    EXPECT_EQ(log.count, 0);
    wxTranslations::Set(nullptr);
}

TEST(Translation, DamagedCatalogueIsAsGoodAsNone) {
    TemporaryFolder folder;
    std::filesystem::create_directories(folder.path / "it" / "LC_MESSAGES");
    folder.Write("it/LC_MESSAGES/velflash.mo", "no catalogue");
    wxFileTranslationsLoader::AddCatalogLookupPathPrefix(folder.path.string());
    CountingLog log;
    const InLanguage damaged("it");
    wxLog::FlushActive();
    EXPECT_EQ(_("&Close"), "&Close");
    EXPECT_EQ(log.count, 0);
}

TEST(Translation, TextsAreLengthenedWithoutTheirMarks) {
    EXPECT_EQ(LengthenText("Erase entire &flash"), "Erase entire &flash Erase entire flash");
    EXPECT_EQ(LengthenText("&Read...\tCtrl+R"), "&Read... Read...\tCtrl+R");
    EXPECT_EQ(LengthenText("Elapsed time: %02u:%02u"), "Elapsed time: %02u:%02u Elapsed time: :");
    EXPECT_EQ(LengthenText("All Files (*.*)|*.*"), "All Files (*.*)|*.*");
}
