#include "dialogs/BsdlSearchDlg.h"

#include "tests/dialogs/BsdlFixture.h"

#include <filesystem>
#include <wx/listctrl.h>

namespace {

wxListCtrl& List(wxWindow& dialog) {
    return *FindByClass<wxListCtrl>(dialog);
}

std::vector<std::string> Row(wxWindow& dialog, const wxString& path) {
    const long row = List(dialog).FindItem(-1, path);
    std::vector<std::string> cells;
    for (int column = 0; row >= 0 && column < 4; ++column)
        cells.push_back(List(dialog).GetItemText(row, column).ToStdString());
    return cells;
}

void WaitForEnd(wxWindow& dialog) {
    EXPECT_TRUE(WaitFor([&] { return !dialog.FindWindow(wxID_STOP)->IsThisEnabled(); }, 10000));
}

// The button that counts the errors.
wxWindow& ErrorsButton(wxWindow& dialog) {
    wxWindow* found = nullptr;
    ForEachDescendant(dialog, [&](wxWindow& window) {
        if (window.GetLabel().EndsWith(" &errors"))
            found = &window;
    });
    return *found;
}

void Post(wxWindow& dialog, wxEventType type, const wxString& text) {
    wxCommandEvent event(type);
    event.SetString(text);
    dialog.GetEventHandler()->ProcessEvent(event);
}

std::vector<std::string> Cells(std::initializer_list<std::string> cells) {
    return cells;
}

} // namespace

class BsdlSearchDlgTest : public BsdlDialogTest {
  protected:
    // Searches `folders` and returns the result path.
    wxString Search(const std::vector<std::string>& folders, const ModalSteps::Step& step) {
        OmBsdlSearchDlg dialog(nullptr, Idcode(), folders);
        user_.Expect("Searching for BSDL Files", step);
        button_ = dialog.ShowModal();
        return dialog.resultPath;
    }

    int button_ = 0;
};

TEST_F(BsdlSearchDlgTest, ListsWhatFitsTheDevice) {
    const wxString result = Search({folder_.path.string()}, [this](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "Searching for *.bsd, *.bsdl and *.bsm files matching the "
                                     "device IDCODE..."),
                  nullptr);
        EXPECT_FALSE(IsEnabled(shown, "&OK"));
        EXPECT_FALSE(IsEnabled(shown, "&View File..."));
        WaitForEnd(shown);
        EXPECT_NE(FindByLabel(shown, "Search done."), nullptr);
        EXPECT_NE(FindByLabel(shown, "3 file(s) found."), nullptr);
        EXPECT_EQ(List(shown).GetItemCount(), 3);
        EXPECT_EQ(Row(shown, matching_), Cells({matching_.ToStdString(), "Chip", "QFP_8",
                                                "00010001001000110100000000101111"}));
        EXPECT_EQ(Row(shown, otherVersion_).back(), "00100001001000110100000000101111");
        EXPECT_EQ(Row(shown, other_), Cells({}));
        EXPECT_TRUE(List(shown).HasFocus());
        ExpectGoodLayout(shown);
        SelectRow(List(shown), List(shown).FindItem(-1, anyVersion_));
        EXPECT_TRUE(IsEnabled(shown, "&OK"));
        TakeScreenshot(shown, "bsdl_search");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(result, anyVersion_);
}

TEST_F(BsdlSearchDlgTest, ButtonsFollowTheSelection) {
    Search({folder_.path.string()}, [](wxDialog& shown) {
        WaitForEnd(shown);
        SelectRow(List(shown), 0);
        EXPECT_TRUE(IsEnabled(shown, "&OK"));
        EXPECT_TRUE(IsEnabled(shown, "&View File..."));
        SelectRow(List(shown), 0, false);
        EXPECT_FALSE(IsEnabled(shown, "&OK"));
        EXPECT_FALSE(IsEnabled(shown, "&View File..."));
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(button_, wxID_CANCEL);
}

TEST_F(BsdlSearchDlgTest, ActivatedRowActsAsOk) {
    const wxString result = Search({folder_.path.string()}, [this](wxDialog& shown) {
        WaitForEnd(shown);
        const long row = List(shown).FindItem(-1, matching_);
        SelectRow(List(shown), row);
        wxListEvent event(wxEVT_LIST_ITEM_ACTIVATED, List(shown).GetId());
        event.SetEventObject(&List(shown));
        event.m_itemIndex = row;
        List(shown).GetEventHandler()->ProcessEvent(event);
    });
    EXPECT_EQ(button_, wxID_OK);
    EXPECT_EQ(result, matching_);
}

TEST_F(BsdlSearchDlgTest, ViewOpensTheSelectedFile) {
    Search({folder_.path.string()}, [this](wxDialog& shown) {
        WaitForEnd(shown);
        SelectRow(List(shown), List(shown).FindItem(-1, matching_));
        PressButton(shown, "&View File...");
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(GetViewedFile(), matching_);
}

TEST_F(BsdlSearchDlgTest, ErrorsAreCountedAndShown) {
    Search({"/nowhere", folder_.path.string()}, [this](wxDialog& shown) {
        WaitForEnd(shown);
        EXPECT_EQ(ErrorsButton(shown).GetLabel(), "2 &errors");
        user_.Expect("Errors", [](wxDialog& errors) {
            const wxString text = FindByClass<wxTextCtrl>(errors)->GetValue();
            EXPECT_TRUE(text.StartsWith("Cannot open directory '/nowhere'\n"))
                << text.ToStdString();
            EXPECT_TRUE(text.Contains("broken.bsd")) << text.ToStdString();
            TakeScreenshot(errors, "bsdl_search_errors");
            PressButton(errors, wxID_CANCEL);
        });
        PressButton(shown, "2 &errors");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlSearchDlgTest, FiftyErrorsAreKeptAndAllAreCounted) {
    Search({}, [this](wxDialog& shown) {
        WaitForEnd(shown);
        wxString expected;
        for (int error = 1; error <= 52; ++error) {
            Post(shown, OM_EVT_BSDL_LOG, wxString::Format("error %d", error));
            if (error <= 50)
                expected += wxString::Format("error %d\n", error);
        }
        expected += "\nToo many errors -- output truncated.";
        user_.Expect("Errors", [&](wxDialog& errors) {
            EXPECT_EQ(FindByClass<wxTextCtrl>(errors)->GetValue(), expected);
            PressButton(errors, wxID_CANCEL);
        });
        EXPECT_EQ(ErrorsButton(shown).GetLabel(), "52 &errors");
        PressButton(shown, "52 &errors");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlSearchDlgTest, PathMayHoldTheSeparator) {
    Search({}, [](wxDialog& shown) {
        WaitForEnd(shown);
        Post(shown, OM_EVT_BSDL_FOUND, "/a;b/chip.bsd;CHIP;QFP, BGA;0101");
        EXPECT_EQ(Row(shown, "/a;b/chip.bsd"),
                  Cells({"/a;b/chip.bsd", "CHIP", "QFP, BGA", "0101"}));
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlSearchDlgTest, StoppedSearchSaysSo) {
    for (int copy = 0; copy < 300; ++copy)
        Write("copy" + std::to_string(copy) + ".bsd", SampleSource());
    Search({folder_.path.string()}, [](wxDialog& shown) {
        EXPECT_TRUE(WaitFor([&] { return List(shown).GetItemCount() > 0; }));
        PressButton(shown, "&Stop");
        EXPECT_FALSE(shown.FindWindow(wxID_STOP)->IsThisEnabled());
        EXPECT_TRUE(WaitFor(
            [&] { return FindByLabel(shown, "Search has been stopped by a user.") != nullptr; }));
        const int found = List(shown).GetItemCount();
        EXPECT_LT(found, 303);
        EXPECT_NE(FindByLabel(shown, wxString::Format("%d file(s) found.", found)), nullptr);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(BsdlSearchDlgTest, ClosingWaitsForTheSearchToEnd) {
    for (int copy = 0; copy < 300; ++copy)
        Write("copy" + std::to_string(copy) + ".bsd", SampleSource());
    Search({folder_.path.string()}, [](wxDialog& shown) {
        EXPECT_TRUE(WaitFor([&] { return List(shown).GetItemCount() > 0; }));
        PressButton(shown, wxID_CANCEL);
    });
    // The folder goes away now; a search still running would complain.
    Search({}, [](wxDialog& shown) {
        WaitForEnd(shown);
        EXPECT_EQ(ErrorsButton(shown).GetLabel(), "0 &errors");
        PressButton(shown, wxID_CANCEL);
    });
}
