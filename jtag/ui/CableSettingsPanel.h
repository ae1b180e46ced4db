// Where the user picks a cable and its parameters; used by the Connection dialog and by the chain
// wizard. Every cable keeps its parameters while another one is chosen.
#pragma once

#include "jtag/ConnectionSettings.h"

#include <array>
#include <wx/panel.h>

class OmCablePage;
class OmFtd2xxPage;
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
    // Places of the pages in the book and in pages_.
    enum Page : size_t {
        kParallel,
        kFtd2xx,
        kJLinkUsb,
        kJLinkIp,
        kDigilent,
        kUsbBlaster,
        kPageCount
    };

    struct Connection;

    static const Connection kConnections[];

    void BuildPages();
    // The pages' controls stand below the choice of the connection, whose label is `own`.
    void AlignLabels(wxStaticText& own);
    const Connection& GetChosenConnection() const;
    // Shows the page of the chosen connection, or what keeps it from being used.
    void ShowPage();
    bool IsShown(size_t page) const;

    wxChoice* connection_ = nullptr;
    wxSimplebook* book_ = nullptr;
    std::array<OmCablePage*, kPageCount> pages_{};
    OmFtd2xxPage* ftd2xxPage_ = nullptr;
    wxTextCtrl* errorText_ = nullptr;
    OmConnectionSettings settings_;
};
