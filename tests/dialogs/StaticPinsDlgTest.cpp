#include "jtag/ui/StaticPinsDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

constexpr char kListTitle[] = "Edit Schemes for Static Pins Values of FT2232-based JTAG Pods";
constexpr char kEditTitle[] = "DBUS/CBUS Pins States";
constexpr char kDescription[] = "Scheme description (e.g. JTAG pod or pods this scheme is for):";

const OmFtd2xxStaticPinsScheme kPredefined{L"Standard", 0x0710, 0x0300, true};
const OmFtd2xxStaticPinsScheme kMine{L"Mine", 0x051B, 0x010A, false};

wxListBox& List(wxWindow& dialog) {
    return *FindByClass<wxListBox>(dialog);
}

// The states of all twelve pins, DBUS4 first, as in "Z01".
std::string Pins(wxWindow& dialog) {
    std::string states;
    for (unsigned pin = 0; pin < 12; ++pin)
        states += FindByClass<wxChoice>(dialog, pin)->GetStringSelection().ToStdString();
    return states;
}

class StaticPinsDlgTest : public testing::Test {
  protected:
    int Show(const ModalSteps::Step& step) {
        OmFtd2xxStaticPinsDlg dialog(nullptr);
        dialog.schemes = {kPredefined, kMine};
        dialog.selected = selected_;
        user_.Expect(kListTitle, step);
        const int button = dialog.ShowModal();
        schemes_ = dialog.schemes;
        selected_ = dialog.selected;
        return button;
    }

    int Edit(const ModalSteps::Step& step) {
        OmEditFtd2xxStaticPinsSchemeDlg dialog(nullptr);
        dialog.scheme = scheme_;
        user_.Expect(kEditTitle, step);
        const int button = dialog.ShowModal();
        scheme_ = dialog.scheme;
        return button;
    }

    RecordingUserInterface boxes_;
    ModalSteps user_;
    OmStaticPinsSchemes schemes_;
    int selected_ = 1;
    OmFtd2xxStaticPinsScheme scheme_ = kMine;
};

} // namespace

TEST_F(StaticPinsDlgTest, ShowsTheSchemes) {
    EXPECT_EQ(Show([](wxDialog& shown) {
                  EXPECT_EQ(wxJoin(List(shown).GetStrings(), ','), "Standard,Mine");
                  EXPECT_EQ(List(shown).GetSelection(), 1);
                  ExpectGoodLayout(shown);
                  TakeScreenshot(shown, "static_pins");
                  SelectRow(List(shown), wxNOT_FOUND);
                  EXPECT_FALSE(IsEnabled(shown, "&Edit..."));
                  EXPECT_FALSE(IsEnabled(shown, "&Delete..."));
                  SelectRow(List(shown), 0);
                  PressButton(shown, wxID_OK);
              }),
              wxID_OK);
    EXPECT_EQ(selected_, 0);
}

TEST_F(StaticPinsDlgTest, NewSchemeIsAddedAndSelected) {
    Show([this](wxDialog& shown) {
        user_.Expect(kEditTitle, [](wxDialog& editor) {
            EXPECT_EQ(Pins(editor), "ZZZZZZZZZZZZ");
            Type(editor, kDescription, "New pod");
            Choose(editor, "GPIOL0 / DBUS4:", "1");
            PressButton(editor, wxID_OK);
        });
        PressButton(shown, "&New...");
        EXPECT_EQ(List(shown).GetStringSelection(), "New pod");
        PressButton(shown, wxID_OK);
    });
    ASSERT_EQ(schemes_.size(), 3u);
    EXPECT_EQ(schemes_[2], (OmFtd2xxStaticPinsScheme{L"New pod", 0x0010, 0x0010, false}));
}

TEST_F(StaticPinsDlgTest, CancelledEditorChangesNothing) {
    Show([this](wxDialog& shown) {
        for (const char* button : {"&New...", "&Edit..."}) {
            user_.Expect(kEditTitle, [](wxDialog& editor) {
                Type(editor, kDescription, "Changed");
                PressButton(editor, wxID_CANCEL);
            });
            PressButton(shown, button);
        }
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(schemes_, (OmStaticPinsSchemes{kPredefined, kMine}));
}

TEST_F(StaticPinsDlgTest, EditChangesTheSelectedScheme) {
    Show([this](wxDialog& shown) {
        user_.Expect(kEditTitle, [](wxDialog& editor) {
            Type(editor, kDescription, " Renamed ");
            PressButton(editor, wxID_OK);
        });
        PressButton(shown, "&Edit...");
        EXPECT_EQ(List(shown).GetStringSelection(), "Renamed");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(schemes_[1], (OmFtd2xxStaticPinsScheme{L"Renamed", 0x051B, 0x010A, false}));
}

TEST_F(StaticPinsDlgTest, DeleteAsksAndRemoves) {
    for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Yes}) {
        selected_ = 1;
        boxes_.Expect(L"Are you sure you want to delete 'Mine' scheme?", kLossQuestionBox, answer);
        Show([](wxDialog& shown) {
            PressButton(shown, "&Delete...");
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(schemes_.size(), answer == OmAnswer::Yes ? 1u : 2u);
    }
}

TEST_F(StaticPinsDlgTest, PredefinedSchemeCannotBeDeleted) {
    boxes_.Expect(L"Sorry, 'Standard' is a predefined standard scheme and it cannot be deleted.",
                  kWarningBox);
    Show([](wxDialog& shown) {
        SelectRow(List(shown), 0);
        PressButton(shown, "&Delete...");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(schemes_.size(), 2u);
}

TEST_F(StaticPinsDlgTest, EditorShowsThePinStates) {
    Edit([](wxDialog& shown) {
        // 051B outputs DBUS4, CBUS0 and CBUS2 of the static pins; 010A drives CBUS0 high.
        EXPECT_EQ(Pins(shown), "0ZZZ1Z0ZZZZZ");
        EXPECT_EQ(TextBehind(shown, kDescription), "Mine");
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "static_pins_editor");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(scheme_, kMine);
}

TEST_F(StaticPinsDlgTest, EditorMapsEachPinToItsBit) {
    const struct {
        const char* label;
        uint16_t bit;
    } pins[] = {
        {"GPIOL0 / DBUS4:", 0x0010}, {"GPIOL1 / DBUS5:", 0x0020}, {"GPIOL2 / DBUS6:", 0x0040},
        {"GPIOL3 / DBUS7:", 0x0080}, {"GPIOH0 / CBUS0:", 0x0100}, {"GPIOH1 / CBUS1:", 0x0200},
        {"GPIOH2 / CBUS2:", 0x0400}, {"GPIOH3 / CBUS3:", 0x0800}, {"GPIOH4 / CBUS4:", 0x1000},
        {"GPIOH5 / CBUS5:", 0x2000}, {"GPIOH6 / CBUS6:", 0x4000}, {"GPIOH7 / CBUS7:", 0x8000},
    };

    for (const auto& pin : pins) {
        scheme_ = {L"Any", 0x000B, 0x000A, false};
        Edit([&](wxDialog& shown) {
            Choose(shown, pin.label, "1");
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(scheme_.gpioDir, 0x000B | pin.bit) << pin.label;
        EXPECT_EQ(scheme_.gpioValue, 0x000A | pin.bit) << pin.label;
    }
}

TEST_F(StaticPinsDlgTest, EditorKnowsThreeStatesOfAPin) {
    const struct {
        const char* state;
        uint16_t direction;
        uint16_t value;
    } states[] = {{"Z", 0x000B, 0x000A}, {"0", 0x080B, 0x000A}, {"1", 0x080B, 0x080A}};

    for (const auto& c : states) {
        scheme_ = {L"Any", 0x000B, 0x000A, false};
        Edit([&](wxDialog& shown) {
            Choose(shown, "GPIOH3 / CBUS3:", c.state);
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(scheme_.gpioDir, c.direction) << c.state;
        EXPECT_EQ(scheme_.gpioValue, c.value) << c.state;
    }
}

TEST_F(StaticPinsDlgTest, EditorWantsADescription) {
    boxes_.Expect(L"Scheme description cannot be empty.", kWarningBox);
    Edit([](wxDialog& shown) {
        Type(shown, kDescription, "  ");
        PressButton(shown, wxID_OK);
        EXPECT_TRUE(shown.IsModal());
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kDescription));
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(StaticPinsDlgTest, PredefinedSchemeCanOnlyBeLookedAt) {
    scheme_ = kPredefined;
    Edit([](wxDialog& shown) {
        EXPECT_TRUE(
            FindByLabel(shown,
                        "NOTE: This is a predefined standard scheme and it cannot be modified.")
                ->IsShownOnScreen());
        EXPECT_FALSE(BoxBehind(shown, kDescription).IsThisEnabled());
        EXPECT_FALSE(ChoiceBehind(shown, "GPIOH7 / CBUS7:").IsThisEnabled());
        TakeScreenshot(shown, "static_pins_predefined");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(scheme_, kPredefined);
}
