// The connection settings of a USB-Blaster.
#pragma once

#include "jtag/ui/CablePage.h"
#include "jtag/UsbBlaster.h"

#include <vector>

class OmUsbBlasterPage : public OmCablePage {
  public:
    OmUsbBlasterPage(wxWindow* parent, std::function<void()> recheck);

    bool Check(const OmConnectionSettings& settings, wxString& error) override;
    bool Read(OmConnectionSettings& settings, bool isShown) override;

  private:
    wxChoice* device_;
    std::vector<OmUsbBlasterRecord> records_;
};
