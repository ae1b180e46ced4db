// What holds for every dialog: it has room for its labels, its mnemonics do not clash, the focus is
// inside it, and Escape and the window's close box cancel it.
#include "data/DataImage.h"
#include "dialogs/AboutDlg.h"
#include "dialogs/BlankCheckDlg.h"
#include "dialogs/BsdlFileDlg.h"
#include "dialogs/BsdlInfoDlg.h"
#include "dialogs/BsdlSearchDlg.h"
#include "dialogs/EditSectorsDlg.h"
#include "dialogs/FlashInfoDlg.h"
#include "dialogs/GoToOffsetDlg.h"
#include "dialogs/ProgramDlg.h"
#include "dialogs/ReadDlg.h"
#include "dialogs/SelectSectorsDlg.h"
#include "dialogs/TextViewerDlg.h"
#include "dialogs/VerifyDlg.h"
#include "jtag/CableSettingsDlg.h"
#include "jtag/StaticPinsDlg.h"
#include "tests/dialogs/BsdlFixture.h"
#include "tests/jtag/FakeLibrary.h"
#include "tests/jtag/FakePortDriver.h"
#include "tests/support/GermanLocale.h"
#include "tests/windows/support/Languages.h"

namespace {

struct Case {
    const char* name;
    std::function<std::unique_ptr<wxDialog>()> make;
    int cancelled = wxID_CANCEL;
};

template <typename Dialog>
std::unique_ptr<wxDialog> Make() {
    return std::make_unique<Dialog>(nullptr);
}

const OmFlashSectorLayout kMap{{{4, 4096}}};
const OmDataImage kNoData;

std::unique_ptr<wxDialog> MakeErase() {
    auto dialog = std::make_unique<OmEraseDlg>(nullptr);
    dialog->Initialise(OmEraseMode::EntireFlash, kMap, 1, kNoData, 0, {});
    return dialog;
}

std::unique_ptr<wxDialog> MakeProgram() {
    auto dialog = std::make_unique<OmProgramDlg>(nullptr);
    dialog->sectorMap = &kMap;
    dialog->dataImage = &kNoData;
    return dialog;
}

std::unique_ptr<wxDialog> MakeSelectSectors() {
    auto dialog = std::make_unique<OmSelectSectorsDlg>(nullptr);
    dialog->sectorMap = &kMap;
    return dialog;
}

std::unique_ptr<wxDialog> MakeFlashInfo() {
    return std::make_unique<OmFlashInfoDlg>(nullptr, L"<html></html>");
}

std::unique_ptr<wxDialog> MakeBsdlSearch() {
    return std::make_unique<OmBsdlSearchDlg>(nullptr, OmBitVector(32, 0),
                                             std::vector<std::string>());
}

const Case kCases[] = {
    {"About", Make<OmAboutDlg>, wxID_OK},
    {"Blank Check", Make<OmBlankCheckDlg>},
    {"BSDL File", Make<OmBsdlFileDlg>},
    {"BSDL info", Make<OmBsdlInfoDlg>},
    {"BSDL search", MakeBsdlSearch},
    {"Sectors", Make<OmEditSectorsDlg>},
    {"Erase", MakeErase},
    {"Flash Array Information", MakeFlashInfo},
    {"Go to Offset", Make<OmGoToOffsetDlg>},
    {"Program", MakeProgram},
    {"Read", Make<OmReadDlg>},
    {"Select Sectors", MakeSelectSectors},
    {"text viewer", Make<OmTextViewerDlg>},
    {"Verify", Make<OmVerifyDlg>},
    {"JTAG Connection", Make<OmCableSettingsDlg>},
    {"static pins", Make<OmFtd2xxStaticPinsDlg>},
    {"static pins scheme", Make<OmEditFtd2xxStaticPinsSchemeDlg>},
};

class EveryDialogTest : public BsdlDialogTest {
  protected:
    // Shows each dialog, takes `step`, and expects that the dialog was cancelled.
    void ShowEach(const ModalSteps::Step& step) {
        for (const Case& c : kCases) {
            SCOPED_TRACE(c.name);
            name_ = c.name;
            const std::unique_ptr<wxDialog> dialog = c.make();
            user_.Expect(dialog->GetTitle(), step);
            EXPECT_EQ(dialog->ShowModal(), c.cancelled);
        }
    }

    std::string name_; // of the dialog that is shown
    FakeLoader noLibraries_;
    FakePortDriver ports_;
};

// As wide as a small screen, less what a desktop keeps for itself.
void ExpectOnScreen(const wxWindow& window) {
    EXPECT_LE(window.GetSize().x, 1200);
    EXPECT_LE(window.GetSize().y, 700);
}

bool IsInside(const wxWindow* window, const wxWindow& dialog) {
    while (window && window != &dialog)
        window = window->GetParent();
    return window != nullptr;
}

} // namespace

TEST_F(EveryDialogTest, IsLaidOutWellHasTheFocusAndClosesOnEscape) {
    ShowEach([](wxDialog& shown) {
        ExpectGoodLayout(shown);
        EXPECT_TRUE(IsInside(wxWindow::FindFocus(), shown)) << "the focus is elsewhere";
        wxKeyEvent escape(wxEVT_CHAR_HOOK);
        escape.m_keyCode = WXK_ESCAPE;
        escape.SetEventObject(&shown);
        shown.GetEventHandler()->ProcessEvent(escape);
    });
}

TEST_F(EveryDialogTest, IsLaidOutWellInGerman) {
    const GermanLocale machine; // names the buttons that the toolkit names itself
    const InLanguage german("de");
    ShowEach([this](wxDialog& shown) {
        ExpectGoodLayout(shown);
        ExpectOnScreen(shown);
        TakeScreenshot(shown, "de-" + name_);
        shown.Close();
    });
}

TEST_F(EveryDialogTest, IsLaidOutWellInALanguageOfLongTexts) {
    const WithLongTexts longTexts;
    ShowEach([this](wxDialog& shown) {
        ExpectGoodLayout(shown);
        ExpectOnScreen(shown);
        TakeScreenshot(shown, "long-" + name_);
        shown.Close();
    });
}

TEST_F(EveryDialogTest, ClosesByItsCloseBox) {
    ShowEach([](wxDialog& shown) { shown.Close(); });
}
