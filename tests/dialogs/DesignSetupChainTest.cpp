#include "tests/bsdl/BsdlSource.h"
#include "tests/dialogs/DesignSetupFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <wx/htmllbox.h>

namespace {

constexpr char kBsdl[] = "&BSDL file...";
constexpr char kPinMap[] = "Pin &map...";
constexpr char kIrLength[] = "&IR length...";
constexpr char kVerify[] = "&Verify...";

class ChainPageTest : public DesignSetupTest {
  protected:
    static wxSimpleHtmlListBox& List(wxWindow& dialog) {
        return *FindByClass<wxSimpleHtmlListBox>(dialog);
    }

    static void Select(wxWindow& dialog, int device) {
        List(dialog).SetSelection(device);
        wxCommandEvent event(wxEVT_LISTBOX, List(dialog).GetId());
        event.SetEventObject(&List(dialog));
        event.SetInt(device);
        List(dialog).GetEventHandler()->ProcessEvent(event);
    }

    static void ClickLink(wxWindow& dialog, const wxString& href) {
        wxHtmlLinkEvent event(List(dialog).GetId(), wxHtmlLinkInfo(href));
        event.SetEventObject(&List(dialog));
        List(dialog).GetEventHandler()->ProcessEvent(event);
    }

    // "BPIV" for the buttons that can be pressed.
    static std::string Enabled(wxWindow& dialog) {
        std::string enabled;
        for (const char* label : {kBsdl, kPinMap, kIrLength, kVerify})
            if (IsEnabled(dialog, label))
                enabled += wxString(label).AfterFirst('&')[0].GetValue();
        return enabled;
    }

    static bool IsMarked(wxWindow& dialog, SetupPage page) {
        return Notebook(dialog).GetPageImage(page) == 0;
    }

    // Another BSDL file is chosen for the device "Dev1 (chip)"; empty for none.
    void ReplaceBsdl(const wxString& file) {
        user_.Expect("Dev1 (chip) BSDL File", [this, file](wxDialog& info) {
            user_.Expect("BSDL File", [file](wxDialog& chooser) {
                FindByClass<wxTextCtrl>(chooser)->SetValue(file);
                PressButton(chooser, wxID_OK);
            });
            PressButton(info, "&Update / Replace BSDL file...");
            PressButton(info, wxID_OK);
        });
    }

    TemporaryFolder folder_;
};

} // namespace

TEST_F(ChainPageTest, ButtonsDependOnTheSelectedDevice) {
    setup_.devices.resize(3);
    setup_.devices[2].resolvedIRLen = 4;
    Look([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(List(shown).GetItemCount(), 3u);
        EXPECT_EQ(Enabled(shown), "V");
        Select(shown, 0);
        EXPECT_EQ(Enabled(shown), "BmV");
        Select(shown, 1);
        EXPECT_EQ(Enabled(shown), "BIV");
        Select(shown, 2);
        EXPECT_EQ(Enabled(shown), "BV");
    });
}

TEST_F(ChainPageTest, EmptyChainHasNothingToVerify) {
    setup_ = OmDesignSetup();
    Look([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(List(shown).GetItemCount(), 0u);
        EXPECT_EQ(Enabled(shown), "");
    });
}

TEST_F(ChainPageTest, EveryControlIsThere) {
    Look([](OmDesignSetupDlg& shown) {
        for (const char* label :
             {"Define the JTAG chain", "&Examine the chain...",
              "Detect chain devices (when chain is connected to the\ncomputer) ...",
              "E&nter manually...",
              "... or manually specify the chain configuration (if chain is\nnot currently "
              "connected to the computer).",
              "JTAG chain",
              "NOTE: A BSDL file and pin map must be set for the device(s) connected to the "
              "flash\nmemory. For the rest of the devices it is sufficient to set either a BSDL "
              "file or\nInstruction Register (IR) length. In some cases the IR length is detected "
              "automatically\nwhile examining the JTAG chain."})
            EXPECT_NE(FindByLabel(shown, label), nullptr) << label;
    });
}

TEST_F(ChainPageTest, IrLengthIsEntered) {
    setup_.devices.emplace_back();
    Edit([this](OmDesignSetupDlg& shown) {
        user_.Expect("IR Length", [](wxDialog& length) {
            EXPECT_EQ(TextBehind(length, "IR length:"), "");
            Type(length, "IR length:", " 5 ");
            PressButton(length, wxID_OK);
        });
        ClickLink(shown, "irlen_1");
        EXPECT_TRUE(List(shown).GetString(1).Contains("<a href=\"irlen_1\">5</a>"));
        Select(shown, 1);
        user_.Expect("IR Length", [](wxDialog& length) {
            EXPECT_EQ(TextBehind(length, "IR length:"), "5");
            Type(length, "IR length:", "7");
            PressButton(length, wxID_OK);
        });
        PressButton(shown, kIrLength);
        EXPECT_EQ(List(shown).GetSelection(), 1); // stays selected
        user_.ExpectAndPress("IR Length", wxID_CANCEL);
        PressButton(shown, kIrLength);
    });
    EXPECT_EQ(setup_.devices[1].IRLen, 7);
}

TEST_F(ChainPageTest, PinMapIsChosen) {
    Edit([this](OmDesignSetupDlg& shown) {
        user_.Expect("Package Pin Mapping", [](wxDialog& map) {
            wxChoice& choice = ChoiceBehind(map, "Package pin mapping:");
            EXPECT_EQ(EntriesOf(choice), (std::vector<std::string>{"BGA", "QFP"}));
            EXPECT_EQ(choice.GetStringSelection(), "BGA");
            Choose(map, "Package pin mapping:", "QFP");
            PressButton(map, wxID_OK);
        });
        ClickLink(shown, "pinmap_0");
        EXPECT_TRUE(List(shown).GetString(0).Contains("<a href=\"pinmap_0\">QFP</a>"));
    });
    EXPECT_EQ(setup_.devices[0].PinMapping, "QFP");
}

TEST_F(ChainPageTest, PinMapRenamesThePinsInTheLists) {
    setup_.ce = SignalPin{{0, "SEL", -1}};
    Look([this](OmDesignSetupDlg& shown) {
        user_.Expect("Package Pin Mapping", [](wxDialog& map) {
            Choose(map, "Package pin mapping:", "QFP");
            PressButton(map, wxID_OK);
        });
        ClickLink(shown, "pinmap_0");
        EXPECT_FALSE(IsMarked(shown, kSignalPinsPage)); // nothing was lost
        OpenPage(shown, kSignalPinsPage);
        EXPECT_EQ(RowText(shown, 0), "CE|Dev1 (chip)|100 / SEL|low");
    });
}

TEST_F(ChainPageTest, DataWithoutAPinMapOffersNone) {
    setup_.devices[0].bsdl->pinMappings.clear();
    setup_.devices[0].PinMapping.clear();
    Look([](OmDesignSetupDlg& shown) { ClickLink(shown, "pinmap_0"); }); // no dialog comes up
}

TEST_F(ChainPageTest, LinksThatLeadNowhereDoNothing) {
    Look([](OmDesignSetupDlg& shown) {
        for (const char* href : {"bsdl_1", "irlen_99", "pinmap_x", "http://example.com", ""})
            ClickLink(shown, href);
    });
}

TEST_F(ChainPageTest, NewBsdlFileThatCostsNothingIsTakenWithoutAQuestion) {
    const std::string file = folder_.Write("new.bsd", SampleSource());
    Edit([&](OmDesignSetupDlg& shown) {
        ReplaceBsdl(file);
        ClickLink(shown, "bsdl_0");
        EXPECT_TRUE(List(shown).GetString(0).Contains("Chip (new.bsd)"));
        EXPECT_FALSE(IsMarked(shown, kSignalPinsPage));
        EXPECT_FALSE(IsMarked(shown, kStaticPinsPage));
    });
    EXPECT_EQ(setup_.devices[0].bsdl->entity, "Chip");
    EXPECT_EQ(setup_.devices[0].BsdlFile, file);
    EXPECT_EQ(setup_.devices[0].PinMapping, "QFP_8");
}

TEST_F(ChainPageTest, NewBsdlFileThatCostsPinsAsksAndMarksTheTabs) {
    setup_.ce = SignalPin{{0, "SEL", -1}};
    setup_.staticPins = {StaticPin{{0, "IN", -1}, 0, L""}};
    Look([this](OmDesignSetupDlg& shown) {
        for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Yes}) {
            ReplaceBsdl("");
            boxes_.Expect(L"Selecting a new BSDL file for the device will reset the device pins "
                          L"settings on the 'Signal pins' and 'Static pins' tabs.\nDo you wish to "
                          L"continue applying the new BSDL file?",
                          kLossQuestionBox, answer);
            ClickLink(shown, "bsdl_0");
            EXPECT_EQ(IsMarked(shown, kSignalPinsPage), answer == OmAnswer::Yes);
            EXPECT_EQ(IsMarked(shown, kStaticPinsPage), answer == OmAnswer::Yes);
            EXPECT_EQ(shown.setup.devices[0].bsdl == nullptr, answer == OmAnswer::Yes);
        }
        OpenPage(shown, kSignalPinsPage);
        EXPECT_FALSE(IsMarked(shown, kSignalPinsPage)); // the user has seen it
        EXPECT_TRUE(IsMarked(shown, kStaticPinsPage));
        EXPECT_EQ(RowText(shown, 0), "CE|||");
        OpenPage(shown, kStaticPinsPage);
        EXPECT_FALSE(IsMarked(shown, kStaticPinsPage));
        EXPECT_EQ(PinList(shown).GetItemCount(), 0);
    });
}

TEST_F(ChainPageTest, UnchangedBsdlFileChangesNothing) {
    Look([this](OmDesignSetupDlg& shown) {
        user_.ExpectAndPress("Dev1 (chip) BSDL File", wxID_OK);
        Select(shown, 0);
        PressButton(shown, kBsdl);
        Key(List(shown), 'Z', wxMOD_CONTROL); // and leaves nothing to take back
        EXPECT_EQ(shown.setup.devices[0].PinMapping, "BGA");
    });
}

TEST_F(ChainPageTest, ChangeOfTheChainIsTakenBack) {
    setup_.ce = SignalPin{{0, "SEL", -1}};
    boxes_.Expect(L"Changing the JTAG chain configuration will reset settings on the 'Signal pins' "
                  L"tab.\nDo you wish to continue applying the new JTAG chain configuration?",
                  kLossQuestionBox, OmAnswer::Yes);
    Look([](OmDesignSetupDlg& shown) {
        shown.ApplyChain(std::vector<OmBitVector>(3), {});
        EXPECT_EQ(List(shown).GetItemCount(), 3u);
        EXPECT_EQ(List(shown).GetSelection(), 0);
        EXPECT_EQ(Enabled(shown), "BIV");
        Key(List(shown), 'Z', wxMOD_CONTROL);
        EXPECT_EQ(List(shown).GetItemCount(), 1u);
        OpenPage(shown, kSignalPinsPage);
        EXPECT_EQ(RowText(shown, 0), "CE|Dev1 (chip)|B1 / SEL|low");
    });
}

TEST_F(ChainPageTest, NewChainIsRefused) {
    setup_.staticPins = {StaticPin{{0, "IN", -1}, 0, L""}};
    boxes_.Expect(L"Changing the JTAG chain configuration will reset settings on the 'Static pins' "
                  L"tab.\nDo you wish to continue applying the new JTAG chain configuration?",
                  kLossQuestionBox, OmAnswer::No);
    Look([](OmDesignSetupDlg& shown) {
        shown.ApplyChain(std::vector<OmBitVector>(3), {});
        EXPECT_EQ(List(shown).GetItemCount(), 1u);
        EXPECT_FALSE(IsMarked(shown, kStaticPinsPage));
    });
}

TEST_F(ChainPageTest, NewChainResolvesItsIrLengths) {
    setup_ = OmDesignSetup();
    Edit([](OmDesignSetupDlg& shown) {
        shown.ApplyChain(std::vector<OmBitVector>(1), {1, 0, 0, 0, 0});
        EXPECT_TRUE(List(shown).GetString(0).Contains("<font color=\"grey\">5</font>"));
    });
    EXPECT_EQ(setup_.irCapture, (OmBitVector{1, 0, 0, 0, 0}));
}

TEST_F(ChainPageTest, TwoHundredDevicesAreListed) {
    setup_ = OmDesignSetup();
    Look([](OmDesignSetupDlg& shown) {
        shown.ApplyChain(std::vector<OmBitVector>(200), {});
        EXPECT_EQ(List(shown).GetItemCount(), 200u);
        EXPECT_TRUE(List(shown).GetString(199).Contains("200. (idcode is n/a)"));
    });
}

TEST_F(ChainPageTest, VerifyNeedsABsdlFile) {
    setup_.devices.assign(2, OmChainDevice());
    boxes_.Expect(L"None of the devices in the JTAG chain has an assigned BSDL file.\n\nA BSDL "
                  L"file must be assigned to at least one device or devices whose pins are "
                  L"connected to flash pins.",
                  kWarningBox);
    Look([](OmDesignSetupDlg& shown) { PressButton(shown, kVerify); });
}
