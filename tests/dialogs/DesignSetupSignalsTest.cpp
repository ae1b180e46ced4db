#include "dialogs/PinCombo.h"
#include "tests/dialogs/DesignSetupFixture.h"

#include <wx/clipbrd.h>

namespace {

constexpr char kDevice[] = "JTAG &device:";
constexpr char kPin[] = "JTAG device pin:";
constexpr char kActive[] = "Active:";
constexpr char kApply[] = "Apply changes";
constexpr char kRemove[] = "Remove";
constexpr char kFill[] = "&Fill";
constexpr wchar_t kIncomplete[] =
    L"Please make sure to select 'JTAG device' and 'JTAG device pin'. For CE, OE and WE please "
    L"also specify 'Active' signal level.";
constexpr wchar_t kShared[] =
    L"Error: the same pin of a JTAG chain device is connected to more then one flash pin.";

constexpr int kCe = 0;
constexpr int kA0 = 3;
constexpr int kD0 = 35;

OmPinCombo& Combo(wxWindow& dialog) {
    for (unsigned index = 0;; ++index) {
        auto* combo = FindByClass<OmPinCombo>(dialog, index);
        if (!combo || combo->IsShownOnScreen())
            return *combo;
    }
}

class SignalPinsPageTest : public DesignSetupTest {
  protected:
    void LookAtPage(const Step& step) {
        Look([&step](OmDesignSetupDlg& shown) {
            OpenPage(shown, kSignalPinsPage);
            step(shown);
        });
    }

    static void Select(OmDesignSetupDlg& dialog, int row) { PinList(dialog).SelectOnly(row); }

    // Chooses the device and types the pin.
    static void Enter(OmDesignSetupDlg& dialog, const wxString& pin) {
        Choose(dialog, kDevice, "Dev1 (chip)");
        Type(dialog, kPin, pin);
    }

    static void Connect(OmDesignSetup& setup, int first, int count) {
        for (int bit = first; bit < first + count; ++bit)
            setup.addressPins[static_cast<size_t>(bit)] = SignalPin{{0, "ADDR", bit}};
    }
};

} // namespace

TEST_F(SignalPinsPageTest, ListsEveryFlashPin) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        OmPinListCtrl& list = PinList(shown);
        EXPECT_EQ(list.GetItemCount(), 67);
        EXPECT_EQ(RowText(shown, 2), "WE|||");
        EXPECT_EQ(RowText(shown, 34), "A31|||");
        EXPECT_EQ(RowText(shown, 66), "D31|||");
        const struct {
            const char* label;
            int width;
        } columns[] = {
            {"Flash pin", 60}, {"JTAG device", 100}, {"JTAG device pin", 110}, {"Active", 128}};
        ASSERT_EQ(list.GetColumnCount(), 4);
        for (int column = 0; column < 4; ++column) {
            wxListItem item;
            item.SetMask(wxLIST_MASK_TEXT | wxLIST_MASK_WIDTH);
            list.GetColumn(column, item);
            EXPECT_EQ(item.GetText(), columns[column].label);
            EXPECT_EQ(item.GetWidth(), columns[column].width);
        }
    });
}

TEST_F(SignalPinsPageTest, SelectedRowEnablesItsControls) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_NE(FindByLabel(shown, "CE:"), nullptr); // the first row is selected
        EXPECT_TRUE(ChoiceBehind(shown, kActive).IsThisEnabled());
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kActive)),
                  (std::vector<std::string>{"low", "high"}));
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)),
                  (std::vector<std::string>{"Dev1 (chip)"}));
        Select(shown, kD0 + 4);
        EXPECT_NE(FindByLabel(shown, "D4:"), nullptr);
        EXPECT_FALSE(ChoiceBehind(shown, kActive).IsThisEnabled());
        EXPECT_TRUE(IsEnabled(shown, kApply));
        EXPECT_TRUE(IsEnabled(shown, kRemove));
    });
}

TEST_F(SignalPinsPageTest, WithoutASelectedRowNothingCanBeEntered) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, -1);
        EXPECT_NE(FindByLabel(shown, "..."), nullptr);
        for (const char* label : {kDevice, kActive}) {
            EXPECT_FALSE(ChoiceBehind(shown, label).IsThisEnabled()) << label;
        }
        EXPECT_EQ(ChoiceBehind(shown, kDevice).GetCount(), 0u);
        EXPECT_FALSE(Combo(shown).IsThisEnabled());
        EXPECT_EQ(Combo(shown).GetCount(), 0u);
        for (const char* label : {kApply, kRemove, kFill})
            EXPECT_FALSE(IsEnabled(shown, label)) << label;
        Select(shown, kA0);
        EXPECT_EQ(ChoiceBehind(shown, kDevice).GetCount(), 1u);
        EXPECT_TRUE(Combo(shown).IsThisEnabled());
    });
}

TEST_F(SignalPinsPageTest, DeviceFillsTheListOfPins) {
    setup_.devices.emplace_back();
    LookAtPage([](OmDesignSetupDlg& shown) {
        Choose(shown, kDevice, "Dev1 (chip)");
        ASSERT_EQ(Combo(shown).GetCount(), 43u);
        EXPECT_EQ(Combo(shown).GetString(16), "A23 / ADDR(23)");
        const auto* pin = dynamic_cast<OmDevPinClientData*>(Combo(shown).GetClientObject(16));
        ASSERT_NE(pin, nullptr);
        EXPECT_EQ(pin->device, &shown.setup.devices[0]);
        EXPECT_EQ(pin->portName, "ADDR");
        EXPECT_EQ(pin->portIndex, 23);
        EXPECT_EQ(pin->packagePin, "A23");
        Choose(shown, kDevice, "Dev2");
        EXPECT_EQ(Combo(shown).GetCount(), 0u);
    });
}

TEST_F(SignalPinsPageTest, ApplyStoresThePin) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kA0 + 5);
        Enter(shown, "A5 / ADDR(5)");
        PressButton(shown, kApply);
        EXPECT_EQ(RowText(shown, kA0 + 5), "A5|Dev1 (chip)|A5 / ADDR(5)|");
        EXPECT_EQ(shown.setup.addressPins[5], (SignalPin{{0, "ADDR", 5}}));
        EXPECT_EQ(PinList(shown).GetSelectedRow(), kA0 + 5);
    });
}

TEST_F(SignalPinsPageTest, ApplyStoresTheLevelOfControlPins) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Enter(shown, "SEL");
        Choose(shown, kActive, "high");
        PressButton(shown, kApply);
        EXPECT_EQ(RowText(shown, kCe), "CE|Dev1 (chip)|B1 / SEL|high");
        EXPECT_TRUE(shown.setup.ce.Inverted);
        Choose(shown, kActive, "low");
        PressButton(shown, kApply);
        EXPECT_EQ(RowText(shown, kCe), "CE|Dev1 (chip)|B1 / SEL|low");
        EXPECT_FALSE(shown.setup.ce.Inverted);
    });
}

TEST_F(SignalPinsPageTest, IncompleteInputIsRefused) {
    LookAtPage([this](OmDesignSetupDlg& shown) {
        for (int box = 0; box < 4; ++box)
            boxes_.Expect(kIncomplete, kWarningBox);
        PressButton(shown, kApply); // nothing
        Choose(shown, kDevice, "Dev1 (chip)");
        PressButton(shown, kApply); // no pin
        Type(shown, kPin, "no such pin");
        Choose(shown, kActive, "low");
        PressButton(shown, kApply);
        Select(shown, kCe + 1);
        Enter(shown, "SEL");
        PressButton(shown, kApply); // no level
        EXPECT_FALSE(shown.setup.ce.IsConnected());
        EXPECT_FALSE(shown.setup.oe.IsConnected());
    });
}

TEST_F(SignalPinsPageTest, ConnectedRowShowsItsPin) {
    setup_.we = SignalPin{{0, "SEL", -1}, true};
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, 2);
        EXPECT_EQ(ChoiceBehind(shown, kDevice).GetStringSelection(), "Dev1 (chip)");
        EXPECT_EQ(Combo(shown).GetValue(), "B1 / SEL");
        EXPECT_EQ(ChoiceBehind(shown, kActive).GetStringSelection(), "high");
        Select(shown, kA0); // the device stays for the next row
        EXPECT_EQ(ChoiceBehind(shown, kDevice).GetStringSelection(), "Dev1 (chip)");
        EXPECT_EQ(Combo(shown).GetValue(), "");
    });
}

TEST_F(SignalPinsPageTest, RemoveEmptiesTheRow) {
    setup_.ce = SignalPin{{0, "SEL", -1}, true};
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(PinList(shown).GetRowTextColour(kCe), wxColour(0, 0, 0));
        PressButton(shown, kRemove);
        EXPECT_EQ(RowText(shown, kCe), "CE|||");
        EXPECT_FALSE(shown.setup.ce.IsConnected());
        EXPECT_EQ(PinList(shown).GetRowTextColour(kCe), wxColour(123, 120, 159));
    });
}

TEST_F(SignalPinsPageTest, SeveralRowsAreRemovedAtOnce) {
    Connect(setup_, 0, 4);
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kA0);
        SelectRow(PinList(shown), kA0 + 2);
        EXPECT_FALSE(IsEnabled(shown, kApply));
        EXPECT_NE(FindByLabel(shown, "..."), nullptr);
        Key(PinList(shown), WXK_DELETE);
        EXPECT_FALSE(shown.setup.addressPins[0].IsConnected());
        EXPECT_TRUE(shown.setup.addressPins[1].IsConnected());
        EXPECT_FALSE(shown.setup.addressPins[2].IsConnected());
        Key(PinList(shown), 'Z', wxMOD_CONTROL); // one change
        EXPECT_TRUE(shown.setup.addressPins[0].IsConnected());
        EXPECT_TRUE(shown.setup.addressPins[2].IsConnected());
    });
}

TEST_F(SignalPinsPageTest, RowsHaveAlternatingColours) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(PinList(shown).GetRowBackground(0), wxColour(255, 255, 255));
        EXPECT_EQ(PinList(shown).GetRowBackground(1), wxColour(245, 245, 255));
    });
}

TEST_F(SignalPinsPageTest, ConflictIsColouredAndSaidInWords) {
    Connect(setup_, 0, 2);
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(Line(shown, 1), "   ");
        Select(shown, kA0 + 2);
        Enter(shown, "ADDR(0)");
        PressButton(shown, kApply);
        EXPECT_EQ(PinList(shown).GetRowBackground(kA0), wxColour(255, 64, 0));
        EXPECT_EQ(PinList(shown).GetRowBackground(kA0 + 1), wxColour(255, 255, 255));
        EXPECT_EQ(PinList(shown).GetRowBackground(kA0 + 2), wxColour(255, 64, 0));
        EXPECT_EQ(Line(shown, 1), wxString(kShared).ToStdString());
        EXPECT_EQ(Line(shown, 2),
                  "A0 and A2 are connected to the same pin, Dev1 (chip) A0 / ADDR(0).");
        PressButton(shown, kRemove);
        EXPECT_EQ(PinList(shown).GetRowBackground(kA0), wxColour(245, 245, 255));
        EXPECT_EQ(Line(shown, 1), "   ");
        EXPECT_EQ(Line(shown, 2), "");
    });
}

TEST_F(SignalPinsPageTest, TypingFiltersTheList) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kD0);
        Enter(shown, "data1");
        EXPECT_EQ(Combo(shown).GetCount(), 7u);
        EXPECT_EQ(Combo(shown).GetValue(), "data1");
        EXPECT_EQ(Line(shown, 0), "\u2192 D1 / DATA(1)"); // named by its port
        Type(shown, kPin, "data");
        EXPECT_EQ(Line(shown, 0), "16 pins fit");
        Type(shown, kPin, "");
        EXPECT_EQ(Combo(shown).GetCount(), 43u);
        EXPECT_EQ(Line(shown, 0), "");
    });
}

TEST_F(SignalPinsPageTest, EnterAppliesAndGoesOnToTheNextRow) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kD0);
        Choose(shown, kDevice, "Dev1 (chip)");
        for (const char* pin : {"data0", "d1", "DATA(2)"}) {
            Type(shown, kPin, pin);
            Key(*Combo(shown).GetTextCtrl(), WXK_RETURN);
        }
        EXPECT_EQ(PinList(shown).GetSelectedRow(), kD0 + 3);
        EXPECT_EQ(RowText(shown, kD0), "D0|Dev1 (chip)|D0 / DATA(0)|");
        EXPECT_EQ(RowText(shown, kD0 + 2), "D2|Dev1 (chip)|D2 / DATA(2)|");
        EXPECT_EQ(Combo(shown).GetValue(), "");
        EXPECT_TRUE(shown.IsShown()); // Enter pressed no button
    });
}

TEST_F(SignalPinsPageTest, EnterOnTheLastRowStaysThere) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, 66);
        Enter(shown, "data0");
        Key(*Combo(shown).GetTextCtrl(), WXK_RETURN);
        EXPECT_EQ(PinList(shown).GetSelectedRow(), 66);
        EXPECT_EQ(RowText(shown, 66), "D31|Dev1 (chip)|D0 / DATA(0)|");
    });
}

TEST_F(SignalPinsPageTest, EnterInTheListLeadsToThePin) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Key(PinList(shown), WXK_RETURN);
        EXPECT_TRUE(Combo(shown).GetTextCtrl()->HasFocus() || Combo(shown).HasFocus());
    });
}

TEST_F(SignalPinsPageTest, PinThatCannotServeIsTold) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        const struct {
            int row;
            const char* pin;
            const char* hint;
        } cases[] = {
            {kA0, "IN",
             "Warning: The boundary register cannot drive this pin: it has no output cell."},
            {kD0, "SEL",
             "Warning: The boundary register cannot read this pin: it has no input cell."},
            {kA0, "B1 / SEL", ""},
        };
        for (const auto& c : cases) {
            Select(shown, c.row);
            Enter(shown, c.pin);
            EXPECT_EQ(Line(shown, 0), c.hint) << c.pin;
        }
    });
}

TEST_F(SignalPinsPageTest, PinThatCannotServeIsMarkedInBothLists) {
    setup_.oe = SignalPin{{0, "IN", -1}};
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(PinList(shown).GetRowTextColour(1), wxColour(176, 0, 32));
        const OmDevicePins pins(shown.setup.devices[0]);
        EXPECT_EQ(Combo(shown).getMark(*pins.Find("IN", -1)), "(cannot be used here)");
        EXPECT_EQ(Combo(shown).getMark(*pins.Find("SEL", -1)), "");
        Select(shown, kD0);
        EXPECT_EQ(Combo(shown).getMark(*pins.Find("SEL", -1)), "(cannot be used here)");
    });
}

TEST_F(SignalPinsPageTest, FillGoesOnWithThePattern) {
    Connect(setup_, 0, 2);
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kA0 + 1);
        PressButton(shown, kFill);
        EXPECT_EQ(RowText(shown, kA0 + 23), "A23|Dev1 (chip)|A23 / ADDR(23)|");
        EXPECT_EQ(RowText(shown, kA0 + 24), "A24|||");
        Key(PinList(shown), 'Z', wxMOD_CONTROL);
        EXPECT_EQ(RowText(shown, kA0 + 2), "A2|||");
    });
}

TEST_F(SignalPinsPageTest, FillShowsFirstWhatItOverwrites) {
    for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Yes}) {
        setup_ = MakePinSetup();
        Connect(setup_, 0, 2);
        setup_.addressPins[7] = SignalPin{{0, "SEL", -1}};
        LookAtPage([&](OmDesignSetupDlg& shown) {
            boxes_.Expect(L"Filling A2 to A23 will replace these connections:\n\nA7: Dev1 (chip) "
                          L"B1 / SEL\n\nDo you wish to continue?",
                          kLossQuestionBox, answer);
            Select(shown, kA0);
            PressButton(shown, kFill);
            EXPECT_EQ(RowText(shown, kA0 + 7), answer == OmAnswer::Yes
                                                   ? "A7|Dev1 (chip)|A7 / ADDR(7)|"
                                                   : "A7|Dev1 (chip)|B1 / SEL|");
        });
    }
}

TEST_F(SignalPinsPageTest, FillWithoutAPatternSaysWhatItNeeds) {
    LookAtPage([this](OmDesignSetupDlg& shown) {
        boxes_.Expect(L"To fill the rows of a bus, first connect two neighbouring pins of it, such "
                      L"as A0 and A1, to consecutive bits of one port, and select one of them.",
                      kWarningBox);
        PressButton(shown, kFill);
    });
}

TEST_F(SignalPinsPageTest, TableGoesThroughTheClipboard) {
    Connect(setup_, 0, 3);
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kA0);
        SelectRow(PinList(shown), kA0 + 2);
        Key(PinList(shown), 'C', wxMOD_CONTROL);
        PinList(shown).SelectAll();
        PressButton(shown, kRemove);
        EXPECT_EQ(RowText(shown, kA0), "A0|||");
        PressButton(shown, "&Paste");
        EXPECT_EQ(RowText(shown, kA0), "A0|Dev1 (chip)|A0 / ADDR(0)|");
        EXPECT_EQ(RowText(shown, kA0 + 1), "A1|||");
        EXPECT_EQ(RowText(shown, kA0 + 2), "A2|Dev1 (chip)|A2 / ADDR(2)|");
    });
}

TEST_F(SignalPinsPageTest, PasteWithBadLinesAsksFirst) {
    LookAtPage([this](OmDesignSetupDlg& shown) {
        {
            const wxClipboardLocker lock;
            wxTheClipboard->SetData(new wxTextDataObject("A0\tDev1\tA0\nA1\tDev1\tZZ99\n"));
        }
        for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Yes}) {
            boxes_.Expect(L"Some lines cannot be used:\n\nLine 2: Dev1 (chip) has no pin "
                          L"\"ZZ99\".\n\nDo you wish to take 1 other line?",
                          kWarningQuestionBox, answer);
            Key(PinList(shown), 'V', wxMOD_CONTROL);
            EXPECT_EQ(shown.setup.addressPins[0].IsConnected(), answer == OmAnswer::Yes);
        }
    });
}

TEST_F(SignalPinsPageTest, TenChangesAreTakenBack) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Select(shown, kD0);
        Choose(shown, kDevice, "Dev1 (chip)");
        for (int bit = 0; bit < 12; ++bit) {
            Type(shown, kPin, "data" + std::to_string(bit));
            Key(*Combo(shown).GetTextCtrl(), WXK_RETURN);
        }
        for (int change = 0; change < 12; ++change)
            PressButton(shown, "&Undo");
        EXPECT_FALSE(IsEnabled(shown, "&Undo"));
        EXPECT_EQ(RowText(shown, kD0), "D0|||");
    });
}
