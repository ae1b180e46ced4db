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
    wxTextCtrl* MakeHintLine();

    OmPinCombo& GetCombo() { return *combo_; }

    // Lists the devices of the chain anew. Nothing is chosen then.
    void ListDevices();

    // Empties the lists while there is nothing to choose for, and fills them again with the device
    // that was chosen before.
    void ClearLists();
    void RestoreLists();
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
    int lastDevice_ = -1; // chosen before the lists were emptied
    wxChoice* device_ = nullptr;
    OmPinCombo* combo_ = nullptr;
    wxTextCtrl* hint_ = nullptr;
};

// A line for messages that looks as a part of its page.
wxTextCtrl* MakeMessageLine(wxWindow* page);

// A label above its control.
wxSizer* MakeLabelled(wxWindow* label, wxWindow* control);
