// The connection settings of a Digilent JTAG-USB adapter.
#pragma once

#include "jtag/ui/CablePage.h"

class OmDigilentAdept;

class OmDigilentPage : public OmCablePage {
  public:
    // `recheck` shows the page anew.
    OmDigilentPage(wxWindow* parent, std::function<void()> recheck);

    bool Check(const OmConnectionSettings& settings, wxString& error) override;
    bool Read(OmConnectionSettings& settings, bool isShown) override;

  private:
    void Configure();
    // False if it failed, which has been told.
    bool OpenVendorWindow(OmDigilentAdept& adept);

    wxChoice* device_;
    std::function<void()> recheck_;
};
