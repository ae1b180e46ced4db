#include "dialogs/PinCombo.h"
#include "tests/dialogs/DesignSetupFixture.h"

#include <wx/clipbrd.h>

namespace {

constexpr char kDevice[] = "JTAG &device:";
constexpr char kPin[] = "JTAG device pin:";
constexpr char kValue[] = "Pin value:";
constexpr char kNote[] = "&Note (optional):";
constexpr char kAdd[] = "Add";
constexpr char kApply[] = "Apply changes";
constexpr char kRemove[] = "Remove";
constexpr wchar_t kIncomplete[] =
    L"Please make sure to select 'JTAG device', 'JTAG device pin' and 'Pin value'.";
constexpr wchar_t kAlreadyThere[] = L"The pin is already in the list.";

class StaticPinsPageTest : public DesignSetupTest {
  protected:
    void LookAtPage(const Step& step) {
        Look([&step](OmDesignSetupDlg& shown) {
            OpenPage(shown, kStaticPinsPage);
            step(shown);
        });
    }

    static void Enter(OmDesignSetupDlg& dialog, const wxString& pin, const wxString& value,
                      const wxString& note = "") {
        Choose(dialog, kDevice, "Dev1 (chip)");
        Type(dialog, kPin, pin);
        Choose(dialog, kValue, value);
        Type(dialog, kNote, note);
    }

    static std::vector<std::string> Rows(wxWindow& dialog) {
        std::vector<std::string> rows;
        for (int row = 0; row < PinList(dialog).GetItemCount(); ++row)
            rows.push_back(RowText(dialog, row));
        return rows;
    }
};

using Texts = std::vector<std::string>;

const std::vector<StaticPin> kTwoPins = {StaticPin{{0, "SEL", -1}, 1, L"reset"},
                                         StaticPin{{0, "ADDR", 3}, 0, L""}};

} // namespace

TEST_F(StaticPinsPageTest, StartsEmpty) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_NE(FindByLabel(shown, "Please specify here any pins that need to be held at a "
                                     "certain value."),
                  nullptr);
        EXPECT_EQ(Rows(shown), Texts());
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kValue)), (Texts{"0", "1", "Z"}));
        EXPECT_TRUE(IsEnabled(Page(shown), kAdd));
        EXPECT_FALSE(IsEnabled(Page(shown), kApply));
        EXPECT_FALSE(IsEnabled(Page(shown), kRemove));
        Texts columns;
        for (int column = 0; column < PinList(shown).GetColumnCount(); ++column) {
            wxListItem item;
            item.SetMask(wxLIST_MASK_TEXT);
            PinList(shown).GetColumn(column, item);
            columns.push_back(item.GetText().ToStdString());
        }
        EXPECT_EQ(columns, (Texts{"JTAG device", "JTAG device pin", "Pin value", "Note"}));
    });
}

TEST_F(StaticPinsPageTest, AddAppendsARow) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Enter(shown, "SEL", "1", "reset");
        PressButton(Page(shown), kAdd);
        Enter(shown, "IN", "Z");
        PressButton(Page(shown), kAdd);
        EXPECT_EQ(Rows(shown), (Texts{"Dev1 (chip)|B1 / SEL|1|reset", "Dev1 (chip)|B2 / IN|Z|"}));
        EXPECT_EQ(shown.setup.staticPins,
                  (std::vector<StaticPin>{StaticPin{{0, "SEL", -1}, 1, L"reset"},
                                          StaticPin{{0, "IN", -1}, 'Z', L""}}));
    });
}

TEST_F(StaticPinsPageTest, IncompleteInputIsRefused) {
    LookAtPage([this](OmDesignSetupDlg& shown) {
        for (int box = 0; box < 3; ++box)
            boxes_.Expect(kIncomplete, kWarningBox);
        PressButton(Page(shown), kAdd); // nothing
        Choose(shown, kDevice, "Dev1 (chip)");
        Choose(shown, kValue, "0");
        PressButton(Page(shown), kAdd); // no pin
        Type(shown, kPin, "DATA");
        PressButton(Page(shown), kAdd); // sixteen pins
        EXPECT_EQ(Rows(shown), Texts());
    });
}

TEST_F(StaticPinsPageTest, PinIsAddedOnce) {
    setup_.staticPins = kTwoPins;
    LookAtPage([this](OmDesignSetupDlg& shown) {
        boxes_.Expect(kAlreadyThere, kWarningBox);
        Enter(shown, "sel", "0");
        PressButton(Page(shown), kAdd);
        EXPECT_EQ(shown.setup.staticPins, kTwoPins);
    });
}

TEST_F(StaticPinsPageTest, SelectedRowIsShownAndChanged) {
    setup_.staticPins = kTwoPins;
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(ChoiceBehind(shown, kDevice).GetStringSelection(), "Dev1 (chip)");
        EXPECT_EQ(TextBehind(shown, kPin), "B1 / SEL");
        EXPECT_EQ(ChoiceBehind(shown, kValue).GetStringSelection(), "1");
        EXPECT_EQ(TextBehind(shown, kNote), "reset");
        Enter(shown, "SEL", "Z", "released");
        PressButton(Page(shown), kApply);
        EXPECT_EQ(RowText(shown, 0), "Dev1 (chip)|B1 / SEL|Z|released");
        EXPECT_EQ(PinList(shown).GetItemCount(), 2);
    });
}

TEST_F(StaticPinsPageTest, ChangeToAPinOfAnotherRowIsRefused) {
    setup_.staticPins = kTwoPins;
    LookAtPage([this](OmDesignSetupDlg& shown) {
        boxes_.Expect(kAlreadyThere, kWarningBox);
        Type(shown, kPin, "ADDR(3)");
        PressButton(Page(shown), kApply);
        EXPECT_EQ(shown.setup.staticPins, kTwoPins);
    });
}

TEST_F(StaticPinsPageTest, ChangeWithoutAPinIsRefused) {
    setup_.staticPins = kTwoPins;
    LookAtPage([this](OmDesignSetupDlg& shown) {
        boxes_.Expect(kIncomplete, kWarningBox);
        Type(shown, kPin, "");
        PressButton(Page(shown), kApply);
        EXPECT_EQ(shown.setup.staticPins, kTwoPins);
    });
}

TEST_F(StaticPinsPageTest, RemoveTakesTheSelectedRowsAway) {
    setup_.staticPins = kTwoPins;
    setup_.staticPins.push_back(StaticPin{{0, "IN", -1}, 'Z', L""});
    LookAtPage([](OmDesignSetupDlg& shown) {
        PressButton(Page(shown), kRemove);
        EXPECT_EQ(Rows(shown), (Texts{"Dev1 (chip)|A3 / ADDR(3)|0|", "Dev1 (chip)|B2 / IN|Z|"}));
        EXPECT_EQ(PinList(shown).GetSelectedRow(), 0);
        Key(PinList(shown), 'A', wxMOD_CONTROL);
        Key(PinList(shown), WXK_DELETE);
        EXPECT_EQ(Rows(shown), Texts());
        EXPECT_FALSE(IsEnabled(Page(shown), kRemove));
        PressButton(Page(shown), "&Undo");
        EXPECT_EQ(PinList(shown).GetItemCount(), 2);
    });
}

TEST_F(StaticPinsPageTest, ConflictWithASignalIsShownOnBothPages) {
    setup_.ce = SignalPin{{0, "SEL", -1}};
    LookAtPage([](OmDesignSetupDlg& shown) {
        Enter(shown, "SEL", "1");
        PressButton(Page(shown), kAdd);
        for (const SetupPage page : {kStaticPinsPage, kSignalPinsPage}) {
            OpenPage(shown, page);
            EXPECT_EQ(PinList(shown).GetRowBackground(0), wxColour(255, 64, 0));
            std::vector<std::string> texts;
            ForEachDescendant(*Notebook(shown).GetCurrentPage(), [&](wxWindow& window) {
                if (const auto* line = dynamic_cast<wxTextCtrl*>(&window))
                    texts.push_back(line->GetValue().ToStdString());
            });
            EXPECT_EQ(std::count(texts.begin(), texts.end(),
                                 "Error: the same pin of a JTAG chain device appears in the both "
                                 "Signal and Static pins lists."),
                      1);
            EXPECT_EQ(std::count(texts.begin(), texts.end(),
                                 "CE and static pin 1 are connected to the same pin, Dev1 (chip) "
                                 "B1 / SEL."),
                      1);
        }
    });
}

TEST_F(StaticPinsPageTest, ValueThatIsNoneReadsError) {
    setup_.staticPins = {StaticPin{{0, "SEL", -1}, 'X', L""}};
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(RowText(shown, 0), "Dev1 (chip)|B1 / SEL|ERROR|");
        EXPECT_EQ(ChoiceBehind(shown, kValue).GetSelection(), wxNOT_FOUND);
    });
}

TEST_F(StaticPinsPageTest, PinThatCannotBeDrivenIsTold) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        const auto hint = [&] { return Line(shown, 0); };
        Enter(shown, "B2 / IN", "1");
        EXPECT_EQ(hint(),
                  "Warning: The boundary register cannot drive this pin: it has no output cell.");
        Choose(shown, kValue, "Z");
        EXPECT_EQ(hint(), "");
    });
}

TEST_F(StaticPinsPageTest, EnterAddsAPinAfterPin) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        Choose(shown, kDevice, "Dev1 (chip)");
        Choose(shown, kValue, "0");
        for (const char* pin : {"A0", "A1", "A2"}) {
            wxTextCtrl& box = BoxBehind(shown, kPin);
            box.SetValue(pin);
            Key(box, WXK_RETURN);
        }
        EXPECT_EQ(Rows(shown), (Texts{"Dev1 (chip)|A0 / ADDR(0)|0|", "Dev1 (chip)|A1 / ADDR(1)|0|",
                                      "Dev1 (chip)|A2 / ADDR(2)|0|"}));
    });
}

TEST_F(StaticPinsPageTest, TableGoesThroughTheClipboard) {
    setup_.staticPins = kTwoPins;
    LookAtPage([](OmDesignSetupDlg& shown) {
        PinList(shown).SelectOnly(-1);
        PressButton(Page(shown), "Cop&y"); // no row means all
        PinList(shown).SelectAll();
        PressButton(Page(shown), kRemove);
        PressButton(Page(shown), "&Paste");
        EXPECT_EQ(shown.setup.staticPins, kTwoPins);
    });
}

TEST_F(StaticPinsPageTest, ThousandPinsAreListed) {
    for (int bit = 0; bit < 1000; ++bit)
        setup_.staticPins.push_back(StaticPin{{0, "ADDR", bit % 24}, 1, L"n"});
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(PinList(shown).GetItemCount(), 1000);
        EXPECT_EQ(RowText(shown, 999), "Dev1 (chip)|A15 / ADDR(15)|1|n");
    });
}
