#include "dialogs/BsdlInfoDlg.h"

#include "bsdl/BsdlParser.h"
#include "bsdl/BsdlReport.h"
#include "tests/dialogs/BsdlFixture.h"
#include "widgets/Product.h"

namespace {

constexpr char kReplace[] = "&Update / Replace BSDL file...";
constexpr char kView[] = "&View imported data";

std::string FileText(wxWindow& dialog) {
    return FindByClass<wxTextCtrl>(dialog)->GetValue().ToStdString();
}

} // namespace

class BsdlInfoDlgTest : public BsdlDialogTest {
  protected:
    // Shows the dialog for a device that has `data` from `fileName`.
    int Show(const OmBsdlData* data, const wxString& fileName, const ModalSteps::Step& step) {
        OmBsdlInfoDlg dialog(nullptr);
        dialog.SetDevice("Dev1", Idcode(), data, fileName);
        user_.Expect("Dev1 BSDL File", step);
        const int button = dialog.ShowModal();
        changed_ = dialog.TakeResult(resultData_, resultName_);
        return button;
    }

    // Presses Update, names `file` in the dialog that comes up, and presses its OK.
    void ReplaceBy(wxDialog& shown, const wxString& file) {
        user_.Expect("BSDL File", [file](wxDialog& dialog) {
            FindByClass<wxTextCtrl>(dialog)->SetValue(file);
            PressButton(dialog, wxID_OK);
        });
        PressButton(shown, kReplace);
    }

    OmBsdlData Parse(const wxString& file) {
        OmBsdlData data;
        EXPECT_TRUE(ParseBsdlFile(file.utf8_str(), data, nullptr));
        return data;
    }

    bool changed_ = false;
    std::unique_ptr<OmBsdlData> resultData_;
    wxString resultName_ = "untouched";
};

TEST_F(BsdlInfoDlgTest, WithoutDataThereIsNothingToView) {
    Show(nullptr, "", [](wxDialog& shown) {
        EXPECT_EQ(FileText(shown), "(no BSDL file assigned)");
        EXPECT_FALSE(IsEnabled(shown, kView));
        EXPECT_EQ(wxWindow::FindFocus(), FindByLabel(shown, kReplace));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "bsdl_info");
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
}

TEST_F(BsdlInfoDlgTest, ShowsEntityAndFile) {
    const OmBsdlData data = Parse(matching_);
    Show(&data, matching_, [&](wxDialog& shown) {
        EXPECT_EQ(FileText(shown), "Chip (matching.bsd)");
        user_.Expect("Data imported from matching.bsd", [&](wxDialog& viewer) {
            auto* box = FindByClass<wxTextCtrl>(viewer);
            EXPECT_EQ(box->GetValue(), FormatBsdlReport(data));
            EXPECT_EQ(box->GetFont().GetFaceName(), "Courier New");
            TakeScreenshot(viewer, "bsdl_report");
            PressButton(viewer, wxID_CANCEL);
        });
        PressButton(shown, kView);
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
    EXPECT_EQ(resultName_, "untouched");
}

TEST_F(BsdlInfoDlgTest, NewFileIsTaken) {
    EXPECT_EQ(Show(nullptr, "",
                   [this](wxDialog& shown) {
                       ReplaceBy(shown, matching_);
                       EXPECT_EQ(FileText(shown), "Chip (matching.bsd)");
                       EXPECT_TRUE(IsEnabled(shown, kView));
                       TakeScreenshot(shown, "bsdl_info_with_file");
                       PressButton(shown, wxID_OK);
                   }),
              wxID_OK);
    ASSERT_TRUE(changed_);
    EXPECT_EQ(resultName_, matching_);
    ASSERT_NE(resultData_, nullptr);
    EXPECT_EQ(*resultData_, Parse(matching_));
}

TEST_F(BsdlInfoDlgTest, CancelAfterAnUpdateDropsTheNewData) {
    const OmBsdlData data = Parse(matching_);
    EXPECT_EQ(Show(&data, matching_,
                   [this](wxDialog& shown) {
                       ReplaceBy(shown, anyVersion_);
                       EXPECT_EQ(FileText(shown), "Chip (any-version.bsdl)");
                       PressButton(shown, wxID_CANCEL);
                   }),
              wxID_CANCEL); // the owner asks for the result only after OK
    EXPECT_EQ(data, Parse(matching_));
}

TEST_F(BsdlInfoDlgTest, SameFileWithTheSameContentIsNoChange) {
    const OmBsdlData data = Parse(matching_);
    Show(&data, matching_, [this](wxDialog& shown) {
        ReplaceBy(shown, matching_);
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
    EXPECT_EQ(resultData_, nullptr);
}

TEST_F(BsdlInfoDlgTest, SameFileWithNewContentIsAChange) {
    const OmBsdlData data = Parse(anyVersion_);
    Show(&data, matching_, [this](wxDialog& shown) {
        ReplaceBy(shown, matching_);
        PressButton(shown, wxID_OK);
    });
    EXPECT_TRUE(changed_);
}

TEST_F(BsdlInfoDlgTest, EmptyNameRemovesTheAssignment) {
    const OmBsdlData data = Parse(matching_);
    Show(&data, matching_, [this](wxDialog& shown) {
        ReplaceBy(shown, "");
        EXPECT_EQ(FileText(shown), "(no BSDL file assigned)");
        EXPECT_FALSE(IsEnabled(shown, kView));
        PressButton(shown, wxID_OK);
    });
    ASSERT_TRUE(changed_);
    EXPECT_EQ(resultData_, nullptr);
    EXPECT_EQ(resultName_, "");
}

TEST_F(BsdlInfoDlgTest, NothingRemovedIsNoChange) {
    Show(nullptr, "", [this](wxDialog& shown) {
        ReplaceBy(shown, "");
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
}

TEST_F(BsdlInfoDlgTest, FileThatDoesNotParseChangesNothing) {
    const OmBsdlData data = Parse(matching_);
    Show(&data, matching_, [this](wxDialog& shown) {
        user_.Expect("BSDL File", [this](wxDialog& dialog) {
            FindByClass<wxTextCtrl>(dialog)->SetValue(broken_);
            ExpectParserErrors(user_);
            PressButton(dialog, wxID_OK);
        });
        PressButton(shown, kReplace);
        EXPECT_EQ(FileText(shown), "Chip (matching.bsd)");
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
}

TEST_F(BsdlInfoDlgTest, FileThatCannotBeStoredChangesNothing) {
    const wxString file =
        Write("odd.bsd", ChangedSource("attribute INSTRUCTION_LENGTH of CHIP : entity is 4;", ""));
    boxes_.Expect(L"odd.bsd content integrity check error!\nUnfortunately, some BSDL files do not "
                  L"strictly conforms the standard. However, they are usually easy to fix. Please "
                  L"feel free to send us this BSDL file at support@velmora.example.",
                  kErrorBox, OmAnswer::Ok, L"Error");
    Show(nullptr, "", [&](wxDialog& shown) {
        ReplaceBy(shown, file);
        EXPECT_EQ(FileText(shown), "(no BSDL file assigned)");
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
}

TEST_F(BsdlInfoDlgTest, CancelledFileDialogChangesNothing) {
    const OmBsdlData data = Parse(matching_);
    Show(&data, matching_, [this](wxDialog& shown) {
        user_.ExpectAndPress("BSDL File", wxID_CANCEL);
        PressButton(shown, kReplace);
        PressButton(shown, wxID_OK);
    });
    EXPECT_FALSE(changed_);
}
