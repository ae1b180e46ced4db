// A box to choose a device pin from thousands: typing leaves what fits in its list, and pins that
// cannot serve are marked there.
#pragma once

#include "setup/DevicePins.h"

#include <functional>
#include <wx/clntdata.h>
#include <wx/odcombo.h>

// Of every entry of the list.
class OmDevPinClientData : public wxClientData {
  public:
    OmDevPinClientData(const OmChainDevice* ofDevice, const OmPinChoice& pin)
        : device(ofDevice), portName(pin.portName), portIndex(pin.portIndex),
          packagePin(pin.packagePin) {}

    const OmChainDevice* device; // in the setup's chain, not owned
    std::string portName;
    int32_t portIndex; // -1 for a scalar
    std::string packagePin;
};

class OmPinCombo : public wxOwnerDrawnComboBox {
  public:
    explicit OmPinCombo(wxWindow* parent);

    // Lists the pins of a device; none for null. Neither is owned. The text is emptied.
    void ShowPins(const OmChainDevice* device, const OmDevicePins* pins);

    // Shows a pin, and all others in the list; empties the text for null.
    void ShowPin(const OmPinChoice* pin);

    // What the text means; null while it means no pin, or several.
    const OmPinChoice* GetPin() const;

    // Whether a pin is marked in the list, and with what words; empty for none.
    std::function<wxString(const OmPinChoice&)> getMark = [](const OmPinChoice&) {
        return wxString();
    };

    // After the text has changed in any way.
    std::function<void()> onChanged = [] {};

  protected:
    void OnDrawItem(wxDC& dc, const wxRect& rect, int item, int flags) const override;
    void DoClear() override;

  private:
    void OnTyped();
    void OnDropDown();
    void List(const std::vector<size_t>& indexes);

    const OmChainDevice* device_ = nullptr;
    const OmDevicePins* pins_ = nullptr;
    std::vector<size_t> listed_; // indexes of the pins in the list
};
