// The connection settings of the parallel-port cables.
#pragma once

#include "jtag/ui/CablePage.h"

class wxTextCtrl;

class OmParallelPage : public OmCablePage {
  public:
    OmParallelPage(wxWindow* parent, const std::function<void()>& recheck);

    bool Check(const OmConnectionSettings& settings, wxString& error) override;
    void ShowSettings(const OmConnectionSettings& settings) override;
    bool Read(OmConnectionSettings& settings, bool isShown) override;

  private:
    wxChoice* port_;
    wxTextCtrl* frequency_;
    bool filled_ = false; // ports do not come and go
};
