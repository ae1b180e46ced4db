// The page of the setup dialog about the JTAG chain: its devices, and what is known of each.
#pragma once

#include "setup/ChainItemText.h"
#include "setup/SetupSession.h"

#include <functional>
#include <vector>
#include <wx/panel.h>

class wxButton;
class wxSimpleHtmlListBox;
class wxSizer;

class OmSetupChainPage : public wxPanel {
  public:
    OmSetupChainPage(wxWindow* parent, OmSetupSession& session);

    // Shows the chain anew; the selected device stays selected if it is still there.
    void ShowChain();

    // Replaces the chain, after a question if that costs pins.
    void ApplyChain(const std::vector<OmBitVector>& devices, const OmBitVector& irBits);

  private:
    void BuildDefinition(wxSizer* column);
    void AddWay(wxWindow* parent, wxSizer* rows, const wxString& label, const wxString& note,
                void (OmSetupChainPage::*way)());
    void BuildChain(wxSizer* column);
    wxButton* AddButton(wxWindow* parent, wxSizer* row, const wxString& label,
                        std::function<void()> press);

    void Examine();
    void EnterManually();

    void FollowLink(const wxString& href);
    void ActOnSelected(OmChainAction action);
    void Act(OmChainAction action, int device);
    void ChooseBsdl(int device);
    void ChoosePinMap(int device);
    void EnterIrLength(int device);
    wxString GetDisplayName(int device) const;

    void UpdateEnabled();

    OmSetupSession& session_;
    wxSimpleHtmlListBox* list_ = nullptr;
    wxButton* bsdl_ = nullptr;
    wxButton* pinMap_ = nullptr;
    wxButton* irLength_ = nullptr;
    wxButton* verify_ = nullptr;
};
