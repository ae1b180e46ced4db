#include "app/ProgressDlg.h"

#include "platform/Clock.h"
#include "platform/Text.h"

#include <algorithm>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/utils.h>

namespace {

constexpr int kGaugeRange = 100;
constexpr uint64_t kPulseMilliseconds = 200;
constexpr int kGap = 10;

void RunPendingEvents() {
    wxTheApp->Yield(true);
}

} // namespace

// No command of a disabled window needs its state looked up, and that is done at each report: a
// third of what a report costs.
struct OmProgressDlg::UpdatePause {
    UpdatePause() { wxUpdateUIEvent::SetUpdateInterval(-1); }

    ~UpdatePause() { wxUpdateUIEvent::SetUpdateInterval(before); }

    UpdatePause(const UpdatePause&) = delete;
    UpdatePause& operator=(const UpdatePause&) = delete;

    const long before = wxUpdateUIEvent::GetUpdateInterval();
};

OmProgressDlg::OmProgressDlg(wxWindow* parent, const wxString& title, const wxSize& size)
    : wxDialog(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize,
               wxCAPTION | wxRESIZE_BORDER) {
    SetBackgroundStyle(wxBG_STYLE_SYSTEM); // half the cost of painting, and the bar moves a lot
    BuildControls();
    SetSize(FromDIP(size));
    CentreOnParent();
    abortButton_->Bind(wxEVT_BUTTON, &OmProgressDlg::OnAbort, this);
    Bind(wxEVT_CHAR_HOOK, &OmProgressDlg::OnCharHook, this);
    // A window manager may ask a window without a close box to close; hiding it would leave the
    // program without a window that takes input.
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        event.Veto();
        wxCommandEvent press;
        OnAbort(press);
    });
}

OmProgressDlg::~OmProgressDlg() = default;

void OmProgressDlg::BuildControls() {
    const long centred = wxALIGN_CENTRE_HORIZONTAL | wxST_NO_AUTORESIZE;
    messageText_ = new wxStaticText(this, wxID_ANY, _("message"), wxDefaultPosition, wxDefaultSize,
                                    centred | wxST_ELLIPSIZE_MIDDLE);
    elapsedText_ = new wxStaticText(this, wxID_ANY, _("elapsed time"), wxDefaultPosition,
                                    wxDefaultSize, centred);
    gauge_ = new wxGauge(this, wxID_ANY, kGaugeRange, wxDefaultPosition, wxDefaultSize,
                         wxGA_HORIZONTAL | wxGA_SMOOTH);
    abortButton_ = new wxButton(this, wxID_ABORT, _("&Abort"));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->AddStretchSpacer();
    for (wxWindow* row : std::initializer_list<wxWindow*>{messageText_, elapsedText_, gauge_})
        column->Add(row, wxSizerFlags().Expand().Border(wxALL, FromDIP(kGap)));
    column->AddStretchSpacer();
    column->Add(abortButton_, wxSizerFlags().CentreHorizontal().Border(wxALL, FromDIP(kGap)));
    SetSizer(column);
}

bool OmProgressDlg::Show(bool show) {
    if (!show) {
        windowDisabler_.reset();
        updatePause_.reset();
    }
    const bool changed = wxDialog::Show(show);
    if (show && !windowDisabler_) {
        windowDisabler_ = std::make_unique<wxWindowDisabler>(this);
        updatePause_ = std::make_unique<UpdatePause>();
        startTime_ = GetClock().Seconds();
        lastShownSeconds_ = -1;
        lastPulse_ = 0;
    }
    return changed;
}

bool OmProgressDlg::OnProgress(int percent, const wchar_t* message) {
    RunPendingEvents();
    if (percent == -1)
        PulseNowAndThen();
    else
        ShowPercent(percent = std::min(percent, kGaugeRange));
    lastPercent_ = percent;
    if (message && messageText_->GetLabelText() != message)
        messageText_->SetLabelText(message); // a name in it may hold an ampersand
    UpdateElapsed();
    RunPendingEvents();
    return !aborted_;
}

void OmProgressDlg::OnFinish() {
    Show(false);
}

void OmProgressDlg::PulseNowAndThen() {
    const uint64_t now = GetClock().Milliseconds();
    if (now - lastPulse_ <= kPulseMilliseconds)
        return;
    lastPulse_ = now;
    gauge_->Pulse();
}

void OmProgressDlg::ShowPercent(int percent) {
    // A pulse leaves the gauge in its indeterminate state.
    if (lastPercent_ == -1)
        gauge_->SetRange(kGaugeRange);
    if (gauge_->GetValue() != percent)
        gauge_->SetValue(percent);
}

void OmProgressDlg::UpdateElapsed() {
    if (startTime_ <= 0)
        return;
    const int64_t seconds = GetClock().Seconds() - startTime_;
    if (seconds < 0 || seconds == lastShownSeconds_)
        return;
    lastShownSeconds_ = seconds;
    elapsedText_->SetLabel(wxString::Format(_("Elapsed time: %02u:%02u"),
                                            static_cast<unsigned>(seconds / 60),
                                            static_cast<unsigned>(seconds % 60)));
}

void OmProgressDlg::OnAbort(wxCommandEvent&) {
    if (aborted_)
        return;
    aborted_ = true;
    abortButton_->Disable();
}

void OmProgressDlg::OnCharHook(wxKeyEvent& event) {
    if (event.GetKeyCode() != WXK_ESCAPE || !abortButton_->IsEnabled() ||
        !abortButton_->IsShown()) {
        event.Skip();
        return;
    }
    wxCommandEvent press(wxEVT_BUTTON, abortButton_->GetId());
    press.SetEventObject(abortButton_);
    abortButton_->GetEventHandler()->ProcessEvent(press);
}
