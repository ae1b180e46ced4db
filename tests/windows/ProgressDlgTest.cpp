#include "app/ProgressDlg.h"

#include "tests/support/VirtualClock.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

class ProgressDlg : public testing::Test {
  protected:
    ProgressDlg() {
        frame_ = new wxFrame(nullptr, wxID_ANY, "Owner", wxPoint(0, 0), wxSize(500, 400));
        frame_->Show();
        dialog_ = std::make_unique<OmProgressDlg>(frame_, "Please Wait");
        dialog_->Show(true);
        gauge_ = FindByClass<wxGauge>(*dialog_);
        abort_ = FindByClass<wxButton>(*dialog_);
    }

    ~ProgressDlg() override {
        dialog_.reset();
        delete frame_;
        SettleEvents();
    }

    wxString GetText(unsigned index) {
        return FindByClass<wxStaticText>(*dialog_, index)->GetLabel();
    }

    // True if the dialog took the key for itself.
    bool PressEscape(int key = WXK_ESCAPE) {
        wxKeyEvent event(wxEVT_CHAR_HOOK);
        event.m_keyCode = key;
        event.SetEventObject(dialog_.get());
        dialog_->GetEventHandler()->ProcessEventLocally(event);
        return !event.GetSkipped();
    }

    VirtualClock clock_;
    wxFrame* frame_;
    std::unique_ptr<OmProgressDlg> dialog_;
    wxGauge* gauge_;
    wxButton* abort_;
};

} // namespace

TEST_F(ProgressDlg, StartsWithPlaceholdersAndAnEmptyBar) {
    EXPECT_EQ(dialog_->GetTitle(), "Please Wait");
    EXPECT_EQ(GetText(0), "message");
    EXPECT_EQ(GetText(1), "elapsed time");
    EXPECT_EQ(gauge_->GetRange(), 100);
    EXPECT_EQ(gauge_->GetValue(), 0);
    EXPECT_EQ(abort_->GetLabel(), "&Abort");
    EXPECT_EQ(dialog_->GetSize(), wxSize(400, 300));
    EXPECT_TRUE(dialog_->HasFlag(wxCAPTION));
    EXPECT_TRUE(dialog_->HasFlag(wxRESIZE_BORDER));
    EXPECT_FALSE(dialog_->HasFlag(wxCLOSE_BOX));
}

TEST_F(ProgressDlg, ReportsMoveTheBarAndTheText) {
    EXPECT_TRUE(dialog_->OnProgress(40, L"Erasing sector 3 of 7"));
    EXPECT_EQ(gauge_->GetValue(), 40);
    EXPECT_EQ(GetText(0), "Erasing sector 3 of 7");
    EXPECT_TRUE(dialog_->OnProgress(41, nullptr));
    EXPECT_EQ(GetText(0), "Erasing sector 3 of 7");
    TakeScreenshot(*dialog_, "progress");
}

TEST_F(ProgressDlg, AmpersandInAMessageStays) {
    dialog_->OnProgress(1, L"Reading a&b");
    EXPECT_EQ(FindByClass<wxStaticText>(*dialog_)->GetLabelText(), "Reading a&b");
}

TEST_F(ProgressDlg, PercentIsClampedToAHundred) {
    dialog_->OnProgress(150, nullptr);
    EXPECT_EQ(gauge_->GetValue(), 100);
    EXPECT_EQ(dialog_->GetLastPercent(), 100);
}

TEST_F(ProgressDlg, PulseIsFollowedByARealValue) {
    dialog_->OnProgress(-1, nullptr);
    EXPECT_EQ(dialog_->GetLastPercent(), -1);
    dialog_->OnProgress(40, nullptr);
    EXPECT_EQ(gauge_->GetRange(), 100);
    EXPECT_EQ(gauge_->GetValue(), 40);
    EXPECT_EQ(dialog_->GetLastPercent(), 40);
}

TEST_F(ProgressDlg, PulsesAreMoreThanTwoHundredMillisecondsApart) {
    clock_.microseconds = 1000 * 1000;
    dialog_->OnProgress(-1, nullptr);
    EXPECT_EQ(dialog_->GetLastPulse(), 1000u);
    clock_.AdvanceMilliseconds(100);
    dialog_->OnProgress(-1, nullptr);
    EXPECT_EQ(dialog_->GetLastPulse(), 1000u);
    clock_.AdvanceMilliseconds(100);
    dialog_->OnProgress(-1, nullptr);
    EXPECT_EQ(dialog_->GetLastPulse(), 1000u);
    clock_.AdvanceMilliseconds(1);
    dialog_->OnProgress(-1, nullptr);
    EXPECT_EQ(dialog_->GetLastPulse(), 1201u);
}

TEST_F(ProgressDlg, ElapsedTimeCountsMinutesBeyondAnHour) {
    const struct {
        unsigned seconds;
        const char* text;
    } cases[] = {{0, "Elapsed time: 00:00"},
                 {65, "Elapsed time: 01:05"},
                 {3600, "Elapsed time: 60:00"},
                 {6000, "Elapsed time: 100:00"}};

    for (const auto& test : cases) {
        clock_.microseconds = uint64_t{test.seconds} * 1000000;
        dialog_->OnProgress(0, nullptr);
        EXPECT_EQ(GetText(1), test.text);
    }
}

TEST_F(ProgressDlg, ClockThatRunsBackwardLeavesTheTime) {
    clock_.AdvanceMilliseconds(5000);
    dialog_->OnProgress(0, nullptr);
    clock_.startSeconds -= 100;
    dialog_->OnProgress(0, nullptr);
    EXPECT_EQ(GetText(1), "Elapsed time: 00:05");
}

TEST_F(ProgressDlg, NoTimeRunsBeforeItIsShown) {
    OmProgressDlg hidden(frame_, "Please Wait");
    hidden.OnProgress(10, nullptr);
    EXPECT_EQ(FindByClass<wxStaticText>(hidden, 1)->GetLabel(), "elapsed time");
}

TEST_F(ProgressDlg, AbortIsAnsweredByEveryFurtherReport) {
    PressButton(*dialog_, "&Abort");
    EXPECT_FALSE(abort_->IsEnabled());
    EXPECT_FALSE(dialog_->OnProgress(10, nullptr));
    EXPECT_FALSE(dialog_->OnProgress(20, nullptr));
    EXPECT_TRUE(dialog_->IsShown());
}

TEST_F(ProgressDlg, EscapeIsTheAbortButton) {
    EXPECT_TRUE(PressEscape());
    EXPECT_FALSE(abort_->IsEnabled());
    EXPECT_FALSE(dialog_->OnProgress(10, nullptr));
}

TEST_F(ProgressDlg, EscapeAfterAnAbortPassesOn) {
    PressButton(*dialog_, "&Abort");
    EXPECT_FALSE(PressEscape());
    EXPECT_TRUE(dialog_->IsShown());
}

TEST_F(ProgressDlg, OtherKeysPassOn) {
    EXPECT_FALSE(PressEscape(WXK_SPACE));
    EXPECT_TRUE(dialog_->OnProgress(10, nullptr));
}

TEST_F(ProgressDlg, ClosingByTheWindowManagerAborts) {
    EXPECT_FALSE(dialog_->Close());
    EXPECT_TRUE(dialog_->IsShown());
    EXPECT_FALSE(dialog_->OnProgress(10, nullptr));
}

TEST_F(ProgressDlg, PressDuringAReportIsAnsweredByThatReport) {
    dialog_->CallAfter([this] { PressButton(*dialog_, "&Abort"); });
    EXPECT_FALSE(dialog_->OnProgress(10, nullptr));
}

TEST_F(ProgressDlg, OtherWindowsTakeNoInputWhileItIsShown) {
    EXPECT_FALSE(frame_->IsEnabled());
    EXPECT_TRUE(dialog_->IsEnabled());
    dialog_->Show(false);
    EXPECT_TRUE(frame_->IsEnabled());
    dialog_->Show(true);
    EXPECT_FALSE(frame_->IsEnabled());
    dialog_.reset();
    EXPECT_TRUE(frame_->IsEnabled());
}

TEST_F(ProgressDlg, FinishHidesIt) {
    dialog_->OnFinish();
    EXPECT_FALSE(dialog_->IsShown());
    EXPECT_TRUE(frame_->IsEnabled());
}

TEST_F(ProgressDlg, CommandsAreNotLookedAtWhileItIsShown) {
    int looks = 0;
    frame_->Bind(wxEVT_UPDATE_UI, [&](wxUpdateUIEvent&) { ++looks; });
    dialog_->OnProgress(1, nullptr);
    EXPECT_EQ(looks, 0);
    dialog_->OnFinish();
    SettleEvents();
    EXPECT_GT(looks, 0);
}
