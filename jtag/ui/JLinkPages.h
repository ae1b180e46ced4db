// The connection settings of a J-Link on USB, and of one behind a TCP/IP server.
#pragma once

#include "jtag/ui/CablePage.h"

class wxTextCtrl;

class OmJLinkUsbPage : public OmCablePage {
  public:
    OmJLinkUsbPage(wxWindow* parent, const std::function<void()>& recheck);

    bool Check(const OmConnectionSettings& settings, wxString& error) override;
    void ShowSettings(const OmConnectionSettings& settings) override;
    bool Read(OmConnectionSettings& settings, bool isShown) override;

  private:
    wxChoice* device_;
    wxChoice* frequency_;
};

class OmJLinkIpPage : public OmCablePage {
  public:
    OmJLinkIpPage(wxWindow* parent, const std::function<void()>& recheck);

    bool Check(const OmConnectionSettings& settings, wxString& error) override;
    void ShowSettings(const OmConnectionSettings& settings) override;
    bool Read(OmConnectionSettings& settings, bool isShown) override;

  private:
    bool ReadHost(OmConnectionSettings& settings, bool isShown);
    bool ReadPort(OmConnectionSettings& settings, bool isShown);

    wxTextCtrl* host_;
    wxTextCtrl* port_;
    wxChoice* frequency_;
};
