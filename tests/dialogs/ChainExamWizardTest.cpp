#include "dialogs/ChainExamWizard.h"

#include "bsdl/Idcode.h"
#include "flash/FlashProgrammer.h"
#include "tests/dialogs/CableSettingsFixture.h"
#include "tests/flash/FakeTarget.h"
#include "tests/jtag/FakeD2xx.h"
#include "tests/windows/MainWindow.h"

#include <wx/html/htmlwin.h>
#include <wx/spinctrl.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/uiaction.h>

namespace {

constexpr char kTitle[] = "Examine the JTAG Chain";
constexpr uint32_t kArm = 0x4BA00477;
constexpr uint32_t kAtmega = 0x0940303F;
constexpr char kHiddenGroup[] = "Are there all devices detected?";

OmBitVector Idcode(uint32_t value) {
    OmBitVector bits;
    for (int bit = 0; bit < 32; ++bit)
        bits.push_back((value >> bit) & 1);
    return bits;
}

class ChainExamWizardTest : public CableSettingsDlgTest {
  protected:
    ChainExamWizardTest() {
        SetManufacturerTablePath(
            folder_.Write("names.dat", "00011111 Atmel\n[Bank 5]\n00111011 ARM\n"));
        SetCurrentHelpViewer(&help_);
        programmer_.CloseCable();
        programmer_.settings = OmConnectionSettings();
        programmer_.createCable = [this](OmConnectionSettings&) { return MakeCable(); };
    }

    ~ChainExamWizardTest() override {
        programmer_.CloseCable();
        programmer_.createCable = CreateCable;
        programmer_.settings = OmConnectionSettings();
        SetCurrentHelpViewer(nullptr);
        SetManufacturerTablePath("");
    }

    std::unique_ptr<OmCable> MakeCable() {
        ++cablesMade_;
        return cableFails_ ? nullptr : target_.MakeCable();
    }

    // Runs the wizard, takes `step`, and answers whether it was finished.
    bool Run(const ModalSteps::Step& step) {
        OmChainExamWizard wizard(nullptr);
        user_.Expect(kTitle, step);
        const bool finished = wizard.RunWizard();
        devices_ = wizard.devices;
        irBits_ = wizard.irBits;
        accepted_ = wizard.adaptiveClockingAccepted;
        return finished;
    }

    void UseAtmegaChain() { target_.devices = {{0x11111111, 4}, {kAtmega, 4, true}, {{}, 5}}; }

    void ExpectNoCableBox() { boxes_.Expect(L"Failed to initialize a JTAG connection", kErrorBox); }

    static void Next(wxDialog& shown) { PressButton(shown, wxID_FORWARD); }

    static void Back(wxDialog& shown) { PressButton(shown, wxID_BACKWARD); }

    static void Cancel(wxDialog& shown) { PressButton(shown, wxID_CANCEL); }

    static bool CanGoOn(wxDialog& shown) { return shown.FindWindow(wxID_FORWARD)->IsEnabled(); }

    static std::string Report(wxDialog& shown) {
        return FindByClass<wxHtmlWindow>(shown)->ToText().Trim().Trim(false).ToStdString();
    }

    static bool IsShown(wxDialog& shown, const char* label) {
        const wxWindow* window = FindByLabel(shown, label);
        return window && window->IsShownOnScreen();
    }

    static wxSpinCtrl& Preceding(wxDialog& shown) { return *FindByClass<wxSpinCtrl>(shown); }

    FakeTarget target_{1, 1, 8};
    OmFlashProgrammer& programmer_ = OmFlashProgrammer::GetInstance();
    RecordingHelpViewer help_;
    int cablesMade_ = 0;
    bool cableFails_ = false;
    std::vector<OmBitVector> devices_;
    OmBitVector irBits_;
    bool accepted_ = false;
};

} // namespace

TEST_F(ChainExamWizardTest, BeginsWithTheConnection) {
    programmer_.settings.cableType = OmCableType::Wiggler;
    Run([](wxDialog& shown) {
        const wxWindow* heading = FindByLabel(shown, "Set up the JTAG Connection");
        ASSERT_NE(heading, nullptr);
        EXPECT_EQ(heading->GetFont().GetWeight(), wxFONTWEIGHT_BOLD);
        EXPECT_EQ(Chosen(shown, kConnection), "Wiggler");
        EXPECT_TRUE(IsShown(shown, "Click 'Next' to examine the JTAG chain."));
        EXPECT_FALSE(shown.FindWindow(wxID_BACKWARD)->IsEnabled());
        EXPECT_TRUE(CanGoOn(shown));
        EXPECT_TRUE(shown.HasFlag(wxCAPTION | wxSYSTEM_MENU | wxCLOSE_BOX | wxRESIZE_BORDER));
        EXPECT_EQ(FindByClass<wxStaticBitmap>(shown)->GetSize(), wxSize(130, 460));
        ExpectGoodLayout(shown);
        Cancel(shown);
    });
    EXPECT_EQ(cablesMade_, 0);
}

TEST_F(ChainExamWizardTest, ChoiceOfTheConnectionHasTheFocus) {
    Run([](wxDialog& shown) {
        EXPECT_TRUE(
            WaitFor([&] { return wxWindow::FindFocus() == &ChoiceBehind(shown, kConnection); }));
        Cancel(shown);
    });
}

TEST_F(ChainExamWizardTest, HelpShowsTheWelcomePage) {
    Run([](wxDialog& shown) {
        PressButton(shown, wxID_HELP);
        Next(shown);
        PressButton(shown, wxID_HELP);
        Cancel(shown);
    });
    EXPECT_EQ(help_.topics, (std::vector<wxString>{"welcome.htm", "welcome.htm"}));
}

TEST_F(ChainExamWizardTest, NextTakesTheSettingsAndOpensTheCableAnew) {
    ASSERT_TRUE(programmer_.OpenCable());
    Run([](wxDialog& shown) {
        Choose(shown, kConnection, "Wiggler");
        Next(shown);
        Cancel(shown);
    });
    EXPECT_EQ(cablesMade_, 2);
    EXPECT_EQ(programmer_.settings.cableType, OmCableType::Wiggler) << "kept by Cancel";
    EXPECT_EQ(target_.cablesOpen, 1);
}

TEST_F(ChainExamWizardTest, OpensTheCableAnewWithoutAChange) {
    ASSERT_TRUE(programmer_.OpenCable());
    Run([](wxDialog& shown) {
        Next(shown);
        Back(shown);
        Next(shown);
        Cancel(shown);
    });
    EXPECT_EQ(cablesMade_, 3);
}

TEST_F(ChainExamWizardTest, WrongSettingsKeepTheFirstPage) {
    boxes_.Expect(L"The TCK frequency must be in a range from 1000Hz to 200000Hz.", kWarningBox);
    Run([](wxDialog& shown) {
        Type(shown, kFrequency, "1");
        Next(shown);
        EXPECT_TRUE(IsShown(shown, "Set up the JTAG Connection"));
        Cancel(shown);
    });
    EXPECT_EQ(cablesMade_, 0);
}

TEST_F(ChainExamWizardTest, CableThatCannotBeOpenedKeepsTheFirstPage) {
    cableFails_ = true;
    ExpectNoCableBox();
    EXPECT_TRUE(Run([this](wxDialog& shown) {
        Next(shown);
        EXPECT_TRUE(IsShown(shown, "Set up the JTAG Connection"));
        EXPECT_TRUE(CanGoOn(shown));
        cableFails_ = false; // plugged in
        Next(shown);
        EXPECT_TRUE(IsShown(shown, "The Detected JTAG Chain"));
        Next(shown);
    }));
}

TEST_F(ChainExamWizardTest, ShowsAndGivesBackTheChain) {
    target_.devices = {{kArm, 4}, {{}, 5}, {0x10000001, 6}};
    EXPECT_TRUE(Run([](wxDialog& shown) {
        Next(shown);
        const wxWindow* heading = FindByLabel(shown, "The Detected JTAG Chain");
        ASSERT_NE(heading, nullptr);
        EXPECT_EQ(heading->GetFont().GetWeight(), wxFONTWEIGHT_BOLD);
        EXPECT_EQ(Report(shown), "3 JTAG devices were detected:\n#\nManufacturer\nIDCODE\n1\nARM\n"
                                 "4BA00477h\n2\n\nn/a\n3\n\n10000001h");
        EXPECT_FALSE(IsShown(shown, kHiddenGroup));
        EXPECT_TRUE(CanGoOn(shown));
        EXPECT_TRUE(shown.FindWindow(wxID_BACKWARD)->IsEnabled());
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "wizard_chain");
        Next(shown);
    }));
    EXPECT_EQ(devices_, (std::vector<OmBitVector>{Idcode(kArm), {0}, Idcode(0x10000001)}));
    EXPECT_EQ(irBits_, (OmBitVector{1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0}));
    EXPECT_FALSE(accepted_);
}

TEST_F(ChainExamWizardTest, OneDeviceIsSpokenOfAsOne) {
    EXPECT_TRUE(Run([](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(Report(shown).substr(0, 28), "1 JTAG device was detected:\n");
        Next(shown);
    }));
    EXPECT_EQ(devices_.size(), 1u);
}

TEST_F(ChainExamWizardTest, WithoutAChainThereIsOnlyTheWayBack) {
    target_.tdoStuckAt = 1;
    EXPECT_FALSE(Run([this](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(Report(shown), "No JTAG chain detected");
        EXPECT_FALSE(CanGoOn(shown));
        EXPECT_FALSE(IsShown(shown, kHiddenGroup));
        TakeScreenshot(shown, "wizard_no_chain");
        Back(shown);
        EXPECT_TRUE(IsShown(shown, "Set up the JTAG Connection"));
        EXPECT_TRUE(CanGoOn(shown));
        target_.tdoStuckAt.reset(); // the board has power now
        Next(shown);
        EXPECT_TRUE(CanGoOn(shown));
        Cancel(shown);
    }));
}

TEST_F(ChainExamWizardTest, ChainThatIsGoneAtTheNextTryLeavesNothingBehind) {
    Run([this](wxDialog& shown) {
        Next(shown);
        Back(shown);
        target_.tdoStuckAt = 0;
        Next(shown);
        EXPECT_FALSE(CanGoOn(shown));
        Cancel(shown);
    });
    EXPECT_TRUE(devices_.empty());
    EXPECT_TRUE(irBits_.empty());
}

TEST_F(ChainExamWizardTest, BrokenConnectionIsToldAndCountsAsNoChain) {
    target_.callsUntilFailure = 1;
    boxes_.Expect(L"The pod has gone.", kErrorBox);
    Run([this](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(Report(shown), "No JTAG chain detected");
        EXPECT_FALSE(CanGoOn(shown));
        EXPECT_EQ(target_.cablesOpen, 0);
        Cancel(shown);
    });
}

TEST_F(ChainExamWizardTest, FailedCaptureOfTheInstructionRegistersIsToldAndCountsAsNoChain) {
    target_.devices = {{kArm, 5000}}; // beyond what a scan can find
    boxes_.Expect(L"Failed to capture JTAG chain IR bits.", kErrorBox, OmAnswer::Ok, L"Error");
    Run([](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(Report(shown), "No JTAG chain detected");
        EXPECT_FALSE(CanGoOn(shown));
        Cancel(shown);
    });
    EXPECT_TRUE(devices_.empty());
    EXPECT_TRUE(irBits_.empty());
}

TEST_F(ChainExamWizardTest, FailedCaptureBehindTheAtmegaAsksNothing) {
    UseAtmegaChain();
    target_.devices[0].irLength = 5000;
    boxes_.Expect(L"Failed to capture JTAG chain IR bits.", kErrorBox, OmAnswer::Ok, L"Error");
    Run([](wxDialog& shown) {
        Next(shown);
        EXPECT_FALSE(IsShown(shown, kHiddenGroup));
        Cancel(shown);
    });
}

TEST_F(ChainExamWizardTest, ExaminesUnderABusyCursor) {
    Run([this](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(boxes_.busyCount, 2) << "the data registers, then the instruction registers";
        EXPECT_EQ(boxes_.busyDepth, 0);
        Cancel(shown);
    });
}

TEST_F(ChainExamWizardTest, AtmegaAsksForTheDevicesBeforeIt) {
    UseAtmegaChain();
    EXPECT_TRUE(Run([](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(Report(shown).substr(0, 39), "At least 2 JTAG devices were detected:\n");
        EXPECT_TRUE(IsShown(shown, kHiddenGroup));
        EXPECT_TRUE(IsShown(shown, "Number of devices preceding Atmel 0940303Fh:"));
        EXPECT_TRUE(IsShown(shown, "(Leave 0 if all devices were detected)"));
        EXPECT_EQ(Preceding(shown).GetMin(), 0);
        EXPECT_EQ(Preceding(shown).GetMax(), 100);
        EXPECT_EQ(Preceding(shown).GetValue(), 0);
        EXPECT_TRUE(Preceding(shown).HasFlag(wxSP_ARROW_KEYS));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "wizard_atmega");
        Preceding(shown).SetValue(2);
        Next(shown);
    }));
    EXPECT_EQ(devices_, (std::vector<OmBitVector>{{}, {}, Idcode(kAtmega), {0}}));
}

TEST_F(ChainExamWizardTest, AtmegaAtTheHeadNeedsNothingAdded) {
    UseAtmegaChain();
    EXPECT_TRUE(Run([](wxDialog& shown) {
        Next(shown);
        Next(shown);
    }));
    EXPECT_EQ(devices_, (std::vector<OmBitVector>{Idcode(kAtmega), {0}}));
}

TEST_F(ChainExamWizardTest, CountIsAskedAnewAtEachExamination) {
    UseAtmegaChain();
    Run([this](wxDialog& shown) {
        Next(shown);
        Preceding(shown).SetValue(3);
        Back(shown);
        Next(shown);
        EXPECT_EQ(Preceding(shown).GetValue(), 0);
        Back(shown);
        target_.devices = {{kArm, 4}};
        Next(shown);
        EXPECT_FALSE(IsShown(shown, kHiddenGroup));
        Next(shown);
    });
    EXPECT_EQ(devices_, (std::vector<OmBitVector>{Idcode(kArm)}));
}

TEST_F(ChainExamWizardTest, NameOfAManufacturerMayHoldAnAmpersand) {
    SetManufacturerTablePath(folder_.Write("names.dat", "00011111 A&T\n"));
    UseAtmegaChain();
    Run([](wxDialog& shown) {
        Next(shown);
        EXPECT_EQ(wxControl::RemoveMnemonics(Preceding(shown).GetPrevSibling()->GetLabel()),
                  "Number of devices preceding A&T 0940303Fh:");
        Cancel(shown);
    });
}

TEST_F(ChainExamWizardTest, AcceptedAdaptiveClockingIsReportedEvenOfACancelledWizard) {
    const FakeD2xx d2xx;
    programmer_.settings.cableType = OmCableType::Ftd2xx;
    programmer_.settings.ftd2xxDescription = d2xx.devices[0].description;
    programmer_.settings.ftd2xxSerial = d2xx.devices[0].serial;
    boxes_.Expect(L"Use Adaptive Clocking ONLY IF a target device in a JTAG chain and a JTAG "
                  L"adapter support this feature! Otherwise, the software will hang up with no "
                  L"error messages (!) upon attempt to shift data into a JTAG chain.\n\nIgnore "
                  L"this warning and continue?",
                  kLossQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_FALSE(Run([](wxDialog& shown) {
        ClickCheck(shown, kAdaptive);
        Next(shown);
        Cancel(shown);
    }));
    EXPECT_TRUE(accepted_);
    EXPECT_FALSE(programmer_.adaptiveWarningAnswered) << "this is for the owner to do";
}

TEST_F(ChainExamWizardTest, IsWalkedThroughByKeysAlone) {
    UseAtmegaChain();
    EXPECT_TRUE(Run([](wxDialog& shown) {
        PointAt(shown);
        const auto press = [](int key, int modifiers = wxMOD_NONE) {
            wxUIActionSimulator().Char(key, modifiers);
            RunEvents();
        };
        press('N', wxMOD_ALT);
        ASSERT_TRUE(WaitFor([&] { return IsShown(shown, "The Detected JTAG Chain"); }));
        press(WXK_TAB);
        EXPECT_TRUE(WaitFor([&] { return Preceding(shown).HasFocus(); }));
        press('2');
        press(WXK_RETURN);
        EXPECT_TRUE(WaitFor([&] { return !shown.IsModal(); }));
    }));
    EXPECT_EQ(devices_.size(), 4u);
}

TEST_F(ChainExamWizardTest, EscapeCancels) {
    EXPECT_FALSE(Run([](wxDialog& shown) {
        PointAt(shown);
        Next(shown);
        wxUIActionSimulator().Char(WXK_ESCAPE);
        RunEvents();
        EXPECT_TRUE(WaitFor([&] { return !shown.IsModal(); }));
    }));
}

TEST_F(ChainExamWizardTest, PageOfManyDevicesScrolls) {
    target_.devices.assign(100, {kArm, 2});
    Run([](wxDialog& shown) {
        Next(shown);
        EXPECT_TRUE(FindByClass<wxHtmlWindow>(shown)->HasScrollbar(wxVERTICAL));
        EXPECT_LE(shown.GetSize().y, 700);
        ExpectGoodLayout(shown);
        Cancel(shown);
    });
}
