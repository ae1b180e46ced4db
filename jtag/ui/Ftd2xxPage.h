// The connection settings of an FT2232 cable.
#pragma once

#include "jtag/Ftd2xx.h"
#include "jtag/ui/CablePage.h"

#include <vector>

class wxCheckBox;

class OmFtd2xxPage : public OmCablePage {
  public:
    // `recheck` shows the page anew.
    OmFtd2xxPage(wxWindow* parent, std::function<void()> recheck);

    bool Check(const OmConnectionSettings& settings, wxString& error) override;
    void ShowSettings(const OmConnectionSettings& settings) override;
    bool Read(OmConnectionSettings& settings, bool isShown) override;

    bool IsAdaptiveWarningAnswered() const override { return adaptiveWarningAnswered_; }

  private:
    void FillDevices(const OmConnectionSettings& settings);
    void FillSchemes(int selected);
    void EditSchemes();

    // Which frequencies there are, and adaptive clocking, depend on the device.
    void UpdateFrequencies();
    void OfferAdaptiveClocking(bool offer);
    const OmFtd2xxRecord* GetSelectedDevice() const;

    bool ReadStaticPins(OmConnectionSettings& settings, bool isShown);
    bool ReadFrequency(OmConnectionSettings& settings, bool isShown);
    bool ReadAdaptiveClocking(OmConnectionSettings& settings);
    bool ReadDevice(OmConnectionSettings& settings, bool isShown);

    wxChoice* device_;
    wxChoice* staticPins_;
    wxChoice* frequency_;
    wxCheckBox* adaptive_;
    std::vector<OmFtd2xxRecord> records_;
    int32_t storedFrequency_ = 0;
    bool adaptiveRemembered_ = false; // the check while it cannot be offered
    bool adaptiveWarningAnswered_ = false;
};
