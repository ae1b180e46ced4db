// The two controls by which a pin of the chain is chosen, device and pin, with a line that tells
// what the typed text means and what speaks against it. Shared by the pages with pins.
#pragma once

#include "setup/SetupSession.h"

#include <functional>
#include <optional>
#include <wx/string.h>

class OmPinCombo;
class wxChoice;
class wxSizer;
class wxTextCtrl;
class wxWindow;

class OmPinChooser {
  public:
    OmPinChooser(wxWindow* parent, OmSetupSession& session);

    // Two columns of a label and its control.
    void AddControls(wxSizer* row);

    // The line with the words, to be placed where there is room.
    wxTextCtrl* GetHintLine() const { return hint_; }

    OmPinCombo& GetCombo() { return *combo_; }

    // Lists the devices of the chain anew, or none. Nothing is chosen then.
    void ListDevices();
    void ClearLists();
    void Enable(bool enable);

    // Shows where a signal is connected. One that is not connected keeps the device, since its
    // neighbours mostly are on the same one.
    void ShowPin(const OmDevicePin& pin);

    // Nothing while device or pin are not chosen.
    std::optional<OmDevicePin> GetPin() const;

    // Why a pin cannot serve the present purpose; empty if it can.
    std::function<std::wstring(const OmPinChoice&)> findFault = [](const OmPinChoice&) {
        return std::wstring();
    };

    void UpdateHint();

  private:
    void ChooseDevice(int device);
    std::wstring MakeHint() const;

    wxWindow* parent_;
    OmSetupSession& session_;
    wxChoice* device_ = nullptr;
    OmPinCombo* combo_ = nullptr;
    wxTextCtrl* hint_ = nullptr;
};

// A label above its control.
wxSizer* MakeLabelled(wxWindow* label, wxWindow* control);
