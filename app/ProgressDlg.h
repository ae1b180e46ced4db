// Keeps the program alive during flash work: each report updates the bar and runs the pending
// events, and its answer tells the operation whether the user pressed Abort. While it is shown,
// every other window is disabled. GUI thread only.
#pragma once

#include "flash/Progress.h"

#include <cstdint>
#include <memory>
#include <wx/dialog.h>

class wxButton;
class wxGauge;
class wxStaticText;
class wxWindowDisabler;

class OmProgressDlg : public wxDialog, public OmProgressCallback {
  public:
    // Show(true) before the operation and Show(false) before a final message, which a disabled
    // window would otherwise cover.
    OmProgressDlg(wxWindow* parent, const wxString& title, const wxSize& size = wxSize(400, 300));
    ~OmProgressDlg() override;

    bool Show(bool show = true) override;
    bool OnProgress(int percent, const wchar_t* message) override;
    void OnFinish() override;

    int GetLastPercent() const { return lastPercent_; }

    // Clock time of the last pulse of the bar, in milliseconds; 0 before the first.
    uint64_t GetLastPulse() const { return lastPulse_; }

  private:
    struct UpdatePause;

    void BuildControls();
    void ShowPercent(int percent);
    void PulseNowAndThen();
    void UpdateElapsed();
    void OnAbort(wxCommandEvent& event);
    void OnCharHook(wxKeyEvent& event);

    wxStaticText* messageText_ = nullptr;
    wxStaticText* elapsedText_ = nullptr;
    wxGauge* gauge_ = nullptr;
    wxButton* abortButton_ = nullptr;
    std::unique_ptr<wxWindowDisabler> windowDisabler_; // exists while the dialog is shown
    bool aborted_ = false;
    int64_t startTime_ = -1;
    int64_t lastShownSeconds_ = -1;
    uint64_t lastPulse_ = 0;
    int lastPercent_ = 0;
    std::unique_ptr<UpdatePause> updatePause_; // exists while the dialog is shown
};
