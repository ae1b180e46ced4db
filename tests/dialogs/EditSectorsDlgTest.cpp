#include "dialogs/EditSectorsDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

constexpr char kCount[] = "&Number of sectors in a group:";
constexpr char kSize[] = "&Sector size in bytes:";
constexpr wchar_t kBadCount[] = L"Number of sectors in a group must be >= 1.";
constexpr wchar_t kBadSize[] = L"Sector size must be >= 1.";

using Groups = std::vector<OmSectorGroup>;
using Labels = std::vector<std::string>;

const Groups kThreeGroups = {{1, 16384}, {2, 8192}, {1, 32768}};

wxListBox& List(wxWindow& dialog) {
    return *FindByClass<wxListBox>(dialog);
}

Labels Rows(wxWindow& dialog) {
    Labels rows;
    for (const wxString& row : List(dialog).GetStrings())
        rows.push_back(row.ToStdString());
    return rows;
}

void Fill(wxWindow& dialog, const wxString& count, const wxString& size) {
    Type(dialog, kCount, count);
    Type(dialog, kSize, size);
}

// Which of the four buttons for a row can be pressed, as in "MRUD".
std::string EnabledButtons(wxWindow& dialog) {
    std::string enabled;
    for (const char* label : {"&Modify", "&Remove", "&Up", "&Down"})
        if (IsEnabled(dialog, label))
            enabled += label[1];
    return enabled;
}

std::string Fields(wxWindow& dialog) {
    return TextBehind(dialog, kCount) + " x " + TextBehind(dialog, kSize);
}

struct Outcome {
    int button;
    Groups groups;
};

Outcome Show(const Groups& groups, const ModalSteps::Step& step) {
    OmEditSectorsDlg dialog(nullptr);
    dialog.layout.groups = groups;
    ModalSteps user;
    user.Expect("Sectors", step);
    const int button = dialog.ShowModal();
    return {button, dialog.layout.groups};
}

// Takes `step` with `row` selected; the groups and the selected row after it.
struct Edited {
    Groups groups;
    int selected;
};

Edited Edit(const Groups& groups, int row, const ModalSteps::Step& step) {
    const RecordingUserInterface boxes;
    int selected = -2;
    const Outcome outcome = Show(groups, [&](wxDialog& shown) {
        SelectRow(List(shown), row);
        step(shown);
        selected = List(shown).GetSelection();
        EXPECT_EQ(EnabledButtons(shown).empty(), selected == wxNOT_FOUND);
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.button, wxID_OK);
    return {outcome.groups, selected};
}

ModalSteps::Step Press(const char* label) {
    return [label](wxDialog& shown) { PressButton(shown, label); };
}

ModalSteps::Step FillAndPress(const char* count, const char* size, const char* label) {
    return [=](wxDialog& shown) {
        Fill(shown, count, size);
        PressButton(shown, label);
    };
}

} // namespace

TEST(EditSectorsDlg, StartsWithNothingSelected) {
    Show({}, [](wxDialog& shown) {
        EXPECT_EQ(Rows(shown), Labels());
        EXPECT_EQ(Fields(shown), " x ");
        EXPECT_EQ(EnabledButtons(shown), "");
        EXPECT_EQ(FindByClass<wxTextCtrl>(shown, 2)->GetValue(), "       (no sectors defined)");
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kCount));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "edit_sectors_empty");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EditSectorsDlg, SelectedRowFillsTheFieldsAndEnablesItsButtons) {
    Show(kThreeGroups, [](wxDialog& shown) {
        EXPECT_EQ(Rows(shown), Labels({"1 x 16384 Bytes", "2 x 8192 Bytes", "1 x 32768 Bytes"}));
        SelectRow(List(shown), 0);
        EXPECT_EQ(Fields(shown), "1 x 16384");
        EXPECT_EQ(EnabledButtons(shown), "MRD");
        SelectRow(List(shown), 1);
        EXPECT_EQ(Fields(shown), "2 x 8192");
        EXPECT_EQ(EnabledButtons(shown), "MRUD");
        TakeScreenshot(shown, "edit_sectors");
        SelectRow(List(shown), 2);
        EXPECT_EQ(EnabledButtons(shown), "MRU");
        SelectRow(List(shown), wxNOT_FOUND);
        EXPECT_EQ(Fields(shown), " x ");
        EXPECT_EQ(EnabledButtons(shown), "");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EditSectorsDlg, TableListsTheSectorsOfOneChip) {
    Show(kThreeGroups, [](wxDialog& shown) {
        EXPECT_EQ(FindByClass<wxTextCtrl>(shown, 2)->GetValue(), "       4 sectors total\n"
                                                                 "       ---------------  \n"
                                                                 " 1) 0000h - 3FFFh, 16384\n"
                                                                 " 2) 4000h - 5FFFh, 8192\n"
                                                                 " 3) 6000h - 7FFFh, 8192\n"
                                                                 " 4) 8000h - FFFFh, 32768\n");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EditSectorsDlg, AddPutsAGroupBehindTheSelectedOne) {
    const struct {
        int row;
        Groups groups;
        int selected;
    } cases[] = {
        {wxNOT_FOUND, {{1, 16384}, {2, 8192}, {1, 32768}, {4, 512}}, 3},
        {0, {{1, 16384}, {4, 512}, {2, 8192}, {1, 32768}}, 1},
        {2, {{1, 16384}, {2, 8192}, {1, 32768}, {4, 512}}, 3},
    };

    for (const auto& c : cases) {
        const Edited edited = Edit(kThreeGroups, c.row, FillAndPress("4", "512", "&Add"));
        EXPECT_EQ(edited.groups, c.groups) << "row " << c.row;
        EXPECT_EQ(edited.selected, c.selected) << "row " << c.row;
    }
}

TEST(EditSectorsDlg, AddNextToEqualSizeAddsTheCounts) {
    const Edited after = Edit({{2, 8192}}, wxNOT_FOUND, FillAndPress("4", "8192", "&Add"));
    EXPECT_EQ(after.groups, (Groups{{6, 8192}}));
    EXPECT_EQ(after.selected, 0);
    const Edited before = Edit(kThreeGroups, 0, FillAndPress("4", " 8192 ", "&Add"));
    EXPECT_EQ(before.groups, (Groups{{1, 16384}, {6, 8192}, {1, 32768}}));
    EXPECT_EQ(before.selected, 1);
}

TEST(EditSectorsDlg, ModifyChangesTheSelectedGroup) {
    const Edited edited = Edit(kThreeGroups, 1, FillAndPress("3", "4096", "&Modify"));
    EXPECT_EQ(edited.groups, (Groups{{1, 16384}, {3, 4096}, {1, 32768}}));
    EXPECT_EQ(edited.selected, 1);
}

TEST(EditSectorsDlg, ModifyThatMergesClearsTheSelection) {
    const Edited edited = Edit(kThreeGroups, 1, FillAndPress("2", "16384", "&Modify"));
    EXPECT_EQ(edited.groups, (Groups{{3, 16384}, {1, 32768}}));
    EXPECT_EQ(edited.selected, wxNOT_FOUND);
}

TEST(EditSectorsDlg, ModifyWithoutAChangeKeepsTheSelection) {
    const Edited edited = Edit(kThreeGroups, 1, Press("&Modify"));
    EXPECT_EQ(edited.groups, kThreeGroups);
    EXPECT_EQ(edited.selected, 1);
}

TEST(EditSectorsDlg, RemoveClearsTheSelection) {
    const Edited edited = Edit(kThreeGroups, 0, Press("&Remove"));
    EXPECT_EQ(edited.groups, (Groups{{2, 8192}, {1, 32768}}));
    EXPECT_EQ(edited.selected, wxNOT_FOUND);
}

TEST(EditSectorsDlg, RemoveBetweenEqualSizesMergesThem) {
    const Edited edited = Edit({{1, 512}, {2, 8192}, {3, 512}}, 1, Press("&Remove"));
    EXPECT_EQ(edited.groups, (Groups{{4, 512}}));
    EXPECT_EQ(edited.selected, wxNOT_FOUND);
}

TEST(EditSectorsDlg, UpAndDownTakeTheSelectionAlong) {
    const Edited up = Edit(kThreeGroups, 2, Press("&Up"));
    EXPECT_EQ(up.groups, (Groups{{1, 16384}, {1, 32768}, {2, 8192}}));
    EXPECT_EQ(up.selected, 1);
    const Edited down = Edit(kThreeGroups, 0, Press("&Down"));
    EXPECT_EQ(down.groups, (Groups{{2, 8192}, {1, 16384}, {1, 32768}}));
    EXPECT_EQ(down.selected, 1);
}

TEST(EditSectorsDlg, MoveThatMergesClearsTheSelection) {
    const Groups groups = {{1, 512}, {2, 8192}, {3, 512}};
    const Edited up = Edit(groups, 2, Press("&Up"));
    EXPECT_EQ(up.groups, (Groups{{4, 512}, {2, 8192}}));
    EXPECT_EQ(up.selected, wxNOT_FOUND);
    const Edited down = Edit(groups, 0, Press("&Down"));
    EXPECT_EQ(down.groups, (Groups{{2, 8192}, {4, 512}}));
    EXPECT_EQ(down.selected, wxNOT_FOUND);
}

TEST(EditSectorsDlg, ButtonThatLosesItsUseGivesTheFocusToTheCount) {
    Show(kThreeGroups, [](wxDialog& shown) {
        for (const char* label : {"&Up", "&Remove"}) {
            SelectRow(List(shown), 1);
            wxWindow* button = FindByLabel(shown, label);
            button->SetFocus();
            PressButton(shown, label);
            EXPECT_FALSE(button->IsThisEnabled()) << label;
            EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kCount)) << label;
        }
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EditSectorsDlg, ButtonThatStaysUsefulKeepsTheFocus) {
    Show(kThreeGroups, [](wxDialog& shown) {
        SelectRow(List(shown), 2);
        wxWindow* up = FindByLabel(shown, "&Up");
        up->SetFocus();
        PressButton(shown, "&Up");
        EXPECT_EQ(wxWindow::FindFocus(), up);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(EditSectorsDlg, RefusesBadNumbers) {
    const struct {
        const char* count;
        const char* size;
        const wchar_t* text;
        const char* focused;
    } cases[] = {
        {"", "512", kBadCount, kCount},
        {"0", "512", kBadCount, kCount},
        {"-1", "512", kBadCount, kCount},
        {"4x", "512", kBadCount, kCount},
        {"4294967296", "1", kBadCount, kCount},
        {"0", "0", kBadCount, kCount},
        {"1", "", kBadSize, kSize},
        {"1", "0", kBadSize, kSize},
        {"1", "1000h", kBadSize, kSize},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.count << " x " << c.size);
        for (const char* button : {"&Add", "&Modify"}) {
            RecordingUserInterface boxes;
            boxes.Expect(c.text, kWarningBox);
            const Outcome outcome = Show(kThreeGroups, [&](wxDialog& shown) {
                SelectRow(List(shown), 0);
                Fill(shown, c.count, c.size);
                PressButton(shown, button);
                EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, c.focused));
                PressButton(shown, wxID_OK);
            });
            EXPECT_EQ(outcome.groups, kThreeGroups);
        }
    }
}

TEST(EditSectorsDlg, AbsurdGroupsAreTakenAndListedInPart) {
    const RecordingUserInterface boxes;
    const Outcome outcome = Show({}, [](wxDialog& shown) {
        Fill(shown, "1000000000", "4294967295");
        PressButton(shown, "&Add");
        Fill(shown, "4294967295", "1");
        PressButton(shown, "&Add");
        EXPECT_EQ(Rows(shown), Labels({"1000000000 x 4294967295 Bytes", "4294967295 x 1 Bytes"}));
        EXPECT_EQ(FindByClass<wxTextCtrl>(shown, 2)->GetNumberOfLines(), 2 + 8192 + 1);
        TakeScreenshot(shown, "edit_sectors_absurd");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.groups, (Groups{{1000000000, 0xFFFFFFFF}, {0xFFFFFFFF, 1}}));
}
