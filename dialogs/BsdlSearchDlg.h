// Shows a running search for BSDL files, and lets the user take one of those found.
#pragma once

#include "bsdl/BsdlFinder.h"

#include <string>
#include <vector>
#include <wx/dialog.h>

class wxButton;
class wxListCtrl;
class wxSizer;
class wxStaticText;

class OmBsdlSearchDlg : public wxDialog {
  public:
    // `idcode` has 32 elements. The search starts when the dialog has come up.
    OmBsdlSearchDlg(wxWindow* parent, const OmBitVector& idcode,
                    const std::vector<std::string>& folders);

    wxString resultPath; // out; empty if nothing was selected

    // However the dialog ends, no search runs behind it: nobody else may parse meanwhile.
    void EndModal(int returnCode) override;
    bool TransferDataFromWindow() override;

  private:
    void BuildControls();
    wxListCtrl* BuildList(wxWindow* parent);
    wxSizer* BuildButtons();
    void BindEvents();

    void OnListSize(wxSizeEvent& event);
    void OnFirstIdle(wxIdleEvent& event);
    void OnFile(wxCommandEvent& event);
    void OnFound(wxCommandEvent& event);
    void OnLog(wxCommandEvent& event);
    void OnDone(wxCommandEvent& event);

    void Stop();
    void ShowErrors();
    void ViewSelectedFile();
    void PressOk();
    void UpdateEnabled();
    wxString GetSelectedPath() const;

    wxStaticText* status_ = nullptr;
    wxStaticText* currentFile_ = nullptr;
    wxListCtrl* list_ = nullptr;
    wxButton* stop_ = nullptr;
    wxButton* errors_ = nullptr;
    wxButton* view_ = nullptr;
    wxButton* ok_ = nullptr;
    int foundCount_ = 0;
    int errorCount_ = 0;
    wxString errorText_;
    OmBsdlFinder finder_;
};
