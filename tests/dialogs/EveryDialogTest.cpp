// What holds for every dialog: it has room for its labels, its mnemonics do not clash, the focus is
// inside it, Tab follows the reading order, Enter has a button to press, and Escape and the
// window's close box cancel it.
#include "dialogs/AboutDlg.h"
#include "dialogs/BlankCheckDlg.h"
#include "dialogs/BsdlFileDlg.h"
#include "dialogs/BsdlInfoDlg.h"
#include "dialogs/BsdlSearchDlg.h"
#include "dialogs/ChainSizeDlg.h"
#include "dialogs/EditSectorsDlg.h"
#include "dialogs/FlashInfoDlg.h"
#include "dialogs/GoToOffsetDlg.h"
#include "dialogs/ReadDlg.h"
#include "dialogs/TextViewerDlg.h"
#include "dialogs/VerifyDlg.h"
#include "jtag/ui/CableSettingsDlg.h"
#include "jtag/ui/StaticPinsDlg.h"
#include "tests/dialogs/BsdlFixture.h"
#include "tests/dialogs/MadeDialogs.h"
#include "tests/jtag/FakeLibrary.h"
#include "tests/jtag/FakePortDriver.h"
#include "tests/support/GermanLocale.h"
#include "tests/windows/support/Languages.h"
#include "widgets/ErrorMessageDlg.h"

#include <set>

namespace {

struct Case {
    const char* name;
    std::function<std::unique_ptr<wxDialog>()> make;
    int cancelled = wxID_CANCEL;
    int enter = wxID_OK; // the button that Enter presses
};

std::unique_ptr<wxDialog> MakeErase() {
    auto dialog = std::make_unique<OmEraseDlg>(nullptr);
    dialog->Initialise(OmEraseMode::EntireFlash, kMap, 1, kNoData, 0, {});
    return dialog;
}

std::unique_ptr<wxDialog> MakeErrorMessage() {
    return std::make_unique<OmErrorMessageDlg>(nullptr, "Error");
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
    {"chain size", Make<OmChainSizeDlg>},
    {"Sectors", Make<OmEditSectorsDlg>},
    {"Erase", MakeErase},
    {"error message", MakeErrorMessage, wxID_CANCEL, wxID_CANCEL},
    {"Flash Array Information", MakeFlashInfo, wxID_CANCEL, wxID_CANCEL},
    {"Go to Offset", Make<OmGoToOffsetDlg>},
    {"Program", MakeProgram},
    {"Read", Make<OmReadDlg>},
    {"Select Sectors", MakeSelectSectors},
    {"text viewer", Make<OmTextViewerDlg>, wxID_CANCEL, wxID_CANCEL},
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

bool IsTabStop(const wxWindow& window) {
    return window.GetChildren().empty() && window.IsShownOnScreen() && window.IsEnabled() &&
           window.AcceptsFocusFromKeyboard();
}

// Where Tab stops, in its order.
std::vector<wxWindow*> FindTabStops(wxWindow& dialog) {
    std::vector<wxWindow*> stops;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        if (IsTabStop(window))
            stops.push_back(&window);
    });
    return stops;
}

// Further right in the same row, further down, or in the next column.
bool ReadsOn(const wxRect& from, const wxRect& to) {
    const bool isRightOfIt = to.GetLeft() > from.GetRight();
    const bool isBelow = to.GetTop() > from.GetBottom();
    return isRightOfIt || isBelow;
}

std::string Describe(const wxWindow& window) {
    return wxString::Format("%s \"%s\"", window.GetClassInfo()->GetClassName(), window.GetLabel())
        .ToStdString();
}

void ExpectTabFollowsTheReadingOrder(wxDialog& dialog) {
    const std::vector<wxWindow*> stops = FindTabStops(dialog);
    for (size_t next = 1; next < stops.size(); ++next)
        EXPECT_TRUE(ReadsOn(stops[next - 1]->GetScreenRect(), stops[next]->GetScreenRect()))
            << "from " << Describe(*stops[next - 1]) << " back to " << Describe(*stops[next]);
}

bool HasMnemonic(wxString label) {
    label.Replace("&&", "");
    return label.Contains("&");
}

bool TakesInput(wxWindow& window) {
    return dynamic_cast<wxTextCtrl*>(&window) || dynamic_cast<wxChoice*>(&window);
}

bool IsPressed(wxWindow& window) {
    return dynamic_cast<wxAnyButton*>(&window) || dynamic_cast<wxCheckBox*>(&window) ||
           dynamic_cast<wxRadioButton*>(&window);
}

// Buttons, checks, radios, and the labels directly before a box or a choice.
void CollectLabelsWithoutMnemonic(wxWindow& dialog, std::set<std::string>& labels) {
    wxString before;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        if (!window.IsShownOnScreen())
            return;
        if (IsPressed(window) && !HasMnemonic(window.GetLabel()))
            labels.insert(window.GetLabel().ToStdString());
        if (TakesInput(window) && !before.empty() && !HasMnemonic(before))
            labels.insert(before.ToStdString());
        before = dynamic_cast<wxStaticText*>(&window) ? window.GetLabel() : wxString();
    });
}

void Cancel(wxDialog& dialog) {
    wxKeyEvent escape(wxEVT_CHAR_HOOK);
    escape.m_keyCode = WXK_ESCAPE;
    escape.SetEventObject(&dialog);
    dialog.GetEventHandler()->ProcessEvent(escape);
}

} // namespace

TEST_F(EveryDialogTest, IsLaidOutWellHasTheFocusAndClosesOnEscape) {
    ShowEach([](wxDialog& shown) {
        ExpectGoodLayout(shown);
        EXPECT_TRUE(WaitFor([&] { return IsInside(wxWindow::FindFocus(), shown); }))
            << "the focus is elsewhere";
        Cancel(shown);
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

TEST_F(EveryDialogTest, TabFollowsTheReadingOrder) {
    ShowEach([](wxDialog& shown) {
        ExpectTabFollowsTheReadingOrder(shown);
        Cancel(shown);
    });
}

TEST_F(EveryDialogTest, EnterHasAButton) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<wxDialog> dialog = c.make();
        const wxWindow* preset = dialog->GetDefaultItem();
        ASSERT_NE(preset, nullptr);
        EXPECT_EQ(preset->GetId(), c.enter);
    }
}

// All others are reached by Alt and a letter; these keep the labels they have always had.
TEST_F(EveryDialogTest, FewLabelsHaveNoMnemonic) {
    std::set<std::string> labels;
    ShowEach([&](wxDialog& shown) {
        CollectLabelsWithoutMnemonic(shown, labels);
        Cancel(shown);
    });
    EXPECT_EQ(labels, (std::set<std::string>{
                          "Add Directory to List",
                          "Details:",
                          "Enter a hex offset to scroll data view to:",
                          "GPIOH0 / CBUS0:",
                          "GPIOH1 / CBUS1:",
                          "GPIOH2 / CBUS2:",
                          "GPIOH3 / CBUS3:",
                          "GPIOH4 / CBUS4:",
                          "GPIOH5 / CBUS5:",
                          "GPIOH6 / CBUS6:",
                          "GPIOH7 / CBUS7:",
                          "GPIOL0 / DBUS4:",
                          "GPIOL1 / DBUS5:",
                          "GPIOL2 / DBUS6:",
                          "GPIOL3 / DBUS7:",
                          "Move Line Down",
                          "Move Line Up",
                          "Port:",
                          "Remove Directory from List",
                          "Scheme description (e.g. JTAG pod or pods this scheme is for):",
                          "TCK freq:",
                      }));
}

TEST_F(EveryDialogTest, ClosesByItsCloseBox) {
    ShowEach([](wxDialog& shown) { shown.Close(); });
}
