// Where the user picks a cable and its parameters; used by the Connection dialog and by the chain
// wizard. Every cable keeps its parameters while another one is chosen.
#pragma once

#include "jtag/ConnectionSettings.h"

#include <map>
#include <vector>
#include <wx/panel.h>

class OmCablePage;
struct OmCableRow;
class wxChoice;
class wxSimplebook;
class wxStaticText;
class wxTextCtrl;

class OmCableSettingsPanel : public wxPanel {
  public:
    explicit OmCableSettingsPanel(wxWindow* parent);

    // The host sets them before TransferDataToWindow, and reads them after TransferDataFromWindow.
    void SetSettings(const OmConnectionSettings& settings) { settings_ = settings; }

    const OmConnectionSettings& GetSettings() const { return settings_; }

    // The user has said Yes to the warning about adaptive clocking, so that it need not come again.
    bool IsAdaptiveWarningAnswered() const;

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    // One page for all types that share it, and the one for what keeps a page from being shown.
    void BuildPages();
    // The pages' controls stand below the choice of the connection, whose label is `own`.
    void AlignLabels(wxStaticText& own);
    OmCableType GetChosenType() const;
    // Shows the page of the chosen connection, or what keeps it from being used.
    void ShowPage();
    bool IsShown(size_t page) const;

    std::vector<const OmCableRow*> rows_; // as the choice has them
    wxChoice* connection_ = nullptr;
    wxSimplebook* book_ = nullptr;
    std::vector<OmCablePage*> pages_;
    std::map<OmCableType, size_t> pageOfType_; // places in pages_
    wxTextCtrl* errorText_ = nullptr;
    OmConnectionSettings settings_;
};
