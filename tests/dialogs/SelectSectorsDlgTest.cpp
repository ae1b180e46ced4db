#include "dialogs/SelectSectorsDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/checklst.h>
#include <wx/wx.h>

namespace {

// 4 x 4 KiB, 2 x 64 KiB
const OmFlashSectorLayout kMap{{{4, 0x1000}, {2, 0x10000}}};

wxCheckListBox& List(wxWindow& dialog) {
    return *FindByClass<wxCheckListBox>(dialog);
}

std::vector<unsigned> Ticked(wxWindow& dialog) {
    wxArrayInt rows;
    List(dialog).GetCheckedItems(rows);
    return {rows.begin(), rows.end()};
}

void ClickRow(wxWindow& dialog, unsigned row) {
    wxCheckListBox& list = List(dialog);
    list.Check(row, !list.IsChecked(row));
    wxCommandEvent event(wxEVT_CHECKLISTBOX, list.GetId());
    event.SetEventObject(&list);
    event.SetInt(static_cast<int>(row));
    list.GetEventHandler()->ProcessEvent(event);
}

void Select(wxWindow& dialog, const wxString& from, const wxString& to) {
    Type(dialog, "&From:", from);
    Type(dialog, "&To:", to);
    PressButton(dialog, "&Select");
}

struct Outcome {
    int button;
    OmSectorRange selection;
};

// Shows the dialog with `map` and lets the user take `step`.
Outcome Show(const ModalSteps::Step& step, const OmFlashSectorLayout& map = kMap,
             OmSelectSectorsMode mode = OmSelectSectorsMode::Plain, uint32_t chips = 1,
             const OmSectorRange& selection = {}) {
    OmSelectSectorsDlg dialog(nullptr);
    dialog.sectorMap = &map;
    dialog.chipCount = chips;
    dialog.mode = mode;
    dialog.selection = selection;
    ModalSteps user;
    user.Expect("Select Sectors", step);
    const int button = dialog.ShowModal();
    return {button, dialog.selection};
}

using Rows = std::vector<unsigned>;

} // namespace

TEST(SelectSectorsDlg, ListsSectorsAndTicksTheSelection) {
    const RecordingUserInterface boxes;
    const Outcome outcome = Show(
        [](wxDialog& shown) {
            EXPECT_EQ(List(shown).GetCount(), 6u);
            EXPECT_EQ(List(shown).GetString(0), " 1) 00000h - 00FFFh, 4096");
            EXPECT_EQ(List(shown).GetString(5), " 6) 14000h - 23FFFh, 65536");
            EXPECT_EQ(Ticked(shown), Rows({1, 5}));
            EXPECT_NE(FindByLabel(shown, "2 sectors selected"), nullptr);
            EXPECT_NE(FindByLabel(shown, "NOTE: All addresses here are 8-bit offsets."), nullptr);
            ExpectGoodLayout(shown);
            TakeScreenshot(shown, "select_sectors");
            PressButton(shown, wxID_OK);
        },
        kMap, OmSelectSectorsMode::Plain, 1, {1, 5});
    EXPECT_EQ(outcome.button, wxID_OK);
    EXPECT_EQ(outcome.selection, OmSectorRange({1, 5}));
}

TEST(SelectSectorsDlg, RowOfTwoChipsTellsBothSizes) {
    const OmFlashSectorLayout map{{{1, 65536}}};
    Show(
        [](wxDialog& shown) {
            EXPECT_EQ(List(shown).GetString(0), " 1) 00000h - 1FFFFh, 2 x 65536");
            PressButton(shown, wxID_CANCEL);
        },
        map, OmSelectSectorsMode::Plain, 2);
}

TEST(SelectSectorsDlg, EveryTickCounts) {
    const Outcome outcome = Show([](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "0 sectors selected"), nullptr);
        ClickRow(shown, 3);
        EXPECT_NE(FindByLabel(shown, "1 sector selected"), nullptr);
        ClickRow(shown, 0);
        EXPECT_NE(FindByLabel(shown, "2 sectors selected"), nullptr);
        ClickRow(shown, 3);
        EXPECT_NE(FindByLabel(shown, "1 sector selected"), nullptr);
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(outcome.selection, OmSectorRange({0}));
}

TEST(SelectSectorsDlg, CancelLeavesTheSelection) {
    const Outcome outcome = Show(
        [](wxDialog& shown) {
            PressButton(shown, "&Deselect All");
            PressButton(shown, wxID_CANCEL);
        },
        kMap, OmSelectSectorsMode::Plain, 1, {2});
    EXPECT_EQ(outcome.button, wxID_CANCEL);
    EXPECT_EQ(outcome.selection, OmSectorRange({2}));
}

TEST(SelectSectorsDlg, SelectTicksTheRange) {
    const struct {
        const char* from;
        const char* to;
        Rows rows;
    } cases[] = {
        {"", "", {0, 1, 2, 3, 4, 5}},
        {" ", "\t", {0, 1, 2, 3, 4, 5}},
        {"1000", "2FFF", {1, 2}},
        {"2FFF", "1000", {1, 2}}, // the other way round
        {"", "0", {0}},
        {"13FFF", "", {4, 5}},
        {"10xyz", "1Fh", {0}},
        {"24000", "7FFFFFFF", {}}, // past the end of the flash
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.from << " to " << c.to);
        const RecordingUserInterface boxes;
        Show([&](wxDialog& shown) {
            Select(shown, c.from, c.to);
            EXPECT_EQ(Ticked(shown), c.rows);
            PressButton(shown, wxID_CANCEL);
        });
    }
}

TEST(SelectSectorsDlg, SelectKeepsOtherTicks) {
    Show(
        [](wxDialog& shown) {
            Select(shown, "0", "FFF");
            EXPECT_EQ(Ticked(shown), Rows({0, 4}));
            EXPECT_NE(FindByLabel(shown, "2 sectors selected"), nullptr);
            PressButton(shown, "&Deselect All");
            EXPECT_EQ(Ticked(shown), Rows());
            EXPECT_NE(FindByLabel(shown, "0 sectors selected"), nullptr);
            PressButton(shown, wxID_CANCEL);
        },
        kMap, OmSelectSectorsMode::Plain, 1, {4});
}

TEST(SelectSectorsDlg, SelectCountsAddressesOfTheWholeArray) {
    Show(
        [](wxDialog& shown) {
            Select(shown, "1FFF", "2000");
            EXPECT_EQ(Ticked(shown), Rows({0, 1}));
            PressButton(shown, wxID_CANCEL);
        },
        kMap, OmSelectSectorsMode::Plain, 2);
}

TEST(SelectSectorsDlg, RefusesWhatIsNoAddress) {
    for (const char* address : {"xyz", "80000000", "-1", "FFFFFFFF"}) {
        SCOPED_TRACE(address);
        RecordingUserInterface boxes;
        boxes.Expect(L"Invalid 'from' address.\nAddress must be an unsigned hexadecimal integer.",
                     kWarningBox);
        boxes.Expect(L"Invalid 'to' address.\nAddress must be an unsigned hexadecimal integer.",
                     kWarningBox);
        Show([&](wxDialog& shown) {
            Select(shown, address, "0");
            EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, "&From:"));
            Select(shown, "0", address);
            EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, "&To:"));
            EXPECT_EQ(Ticked(shown), Rows());
            PressButton(shown, wxID_CANCEL);
        });
    }
}

TEST(SelectSectorsDlg, PlainModeAllowsAnEmptySelection) {
    const RecordingUserInterface boxes;
    EXPECT_EQ(Show([](wxDialog& shown) {
                  EXPECT_EQ(shown.FindWindow(wxID_OK)->GetLabel(), "&OK");
                  PressButton(shown, wxID_OK);
              }).button,
              wxID_OK);
}

TEST(SelectSectorsDlg, LockModeWantsASector) {
    RecordingUserInterface boxes;
    boxes.Expect(L"No sectors selected.", kWarningBox);
    const Outcome outcome = Show(
        [](wxDialog& shown) {
            PressButton(shown, "&Lock");
            EXPECT_TRUE(shown.IsModal());
            EXPECT_EQ(wxWindow::FindFocus(), &List(shown));
            ClickRow(shown, 2);
            TakeScreenshot(shown, "select_sectors_lock");
            PressButton(shown, "&Lock");
        },
        kMap, OmSelectSectorsMode::Lock);
    EXPECT_EQ(outcome.button, wxID_OK);
    EXPECT_EQ(outcome.selection, OmSectorRange({2}));
}

TEST(SelectSectorsDlg, UnlockModeExplainsItself) {
    RecordingUserInterface boxes;
    boxes.Expect(L"No sectors selected.", kWarningBox);
    Show(
        [](wxDialog& shown) {
            EXPECT_NE(FindByLabel(shown,
                                  "NOTE1: Many flash memory devices do not support individual "
                                  "sector unlocking,\ninstead all sectors are unlocked "
                                  "simultaneously upon issuing a single sector\nunlock command to "
                                  "any device address. To unlock these devices' sectors "
                                  "it's\nenough to select just any one sector from the list "
                                  "below.\n\nNOTE2: All addresses here are 8-bit offsets."),
                      nullptr);
            ExpectGoodLayout(shown);
            TakeScreenshot(shown, "select_sectors_unlock");
            PressButton(shown, "&Unlock");
            EXPECT_TRUE(shown.IsModal());
            PressButton(shown, wxID_CANCEL);
        },
        kMap, OmSelectSectorsMode::Unlock);
}

TEST(SelectSectorsDlg, AbsurdLayoutIsListedInPartWithANote) {
    const OmFlashSectorLayout map{{{1000000000, 1}, {0xFFFFFFFF, 0xFFFFFFFF}}};
    const Outcome outcome = Show(
        [](wxDialog& shown) {
            EXPECT_EQ(List(shown).GetCount(), 8192u);
            EXPECT_NE(FindByLabel(shown, "Only the first 8192 of 5294967295 sectors are listed."),
                      nullptr);
            Select(shown, "", "");
            EXPECT_EQ(Ticked(shown).size(), 8192u);
            TakeScreenshot(shown, "select_sectors_absurd");
            PressButton(shown, wxID_OK);
        },
        map, OmSelectSectorsMode::Plain, 1, {5, 0xFFFFFFFF});
    EXPECT_EQ(outcome.selection.size(), 8192u);
}
