// The page of the setup dialog about the flash array: width of the bus, command set, sectors.
#pragma once

#include "setup/ClosingChecks.h"
#include "setup/SetupSession.h"

#include <wx/panel.h>

class wxButton;
class wxCheckBox;
class wxChoice;
class wxSizer;
class wxTextCtrl;

class OmFlashArrayPage : public wxPanel {
  public:
    OmFlashArrayPage(wxWindow* parent, OmSetupSession& session);

    // Shows what the setup holds.
    void ShowSetup();

    // Takes the controls into the setup. The groups of sectors are left as they are.
    void StoreControls();

    void FocusField(OmClosingField field);

  private:
    void BuildOrganisation(wxSizer* column);
    void BuildAlgorithm(wxSizer* column);
    void BuildSectors(wxSizer* column);
    wxCheckBox* AddCheck(wxWindow* parent, wxSizer* column, const wxString& label);
    wxChoice* AddChoice(wxWindow* parent, wxSizer* column, const wxString& label);

    void ListMaxWidths(int32_t wordSize, int32_t selected);
    void ChangeOrganisation();
    void DefineSectors();
    // Stores after a change that the user made, so that it can be taken back.
    void StoreChange();
    void UpdateEnabled();

    OmSetupSession& session_;
    wxChoice* organisation_ = nullptr;
    wxChoice* maxWidth_ = nullptr;
    wxChoice* commandSet_ = nullptr;
    wxCheckBox* buffered_ = nullptr;
    wxCheckBox* noStatus_ = nullptr;
    wxCheckBox* unlockBypass_ = nullptr;
    wxCheckBox* cfi_ = nullptr;
    wxButton* defineSectors_ = nullptr;
    wxTextCtrl* summary_ = nullptr;
};
