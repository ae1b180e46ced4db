// Finds a BSDL file for one device: by searching folders for its IDCODE, or by name.
#pragma once

#include "dialogs/BsdlChecks.h"
#include "jtag/BitVector.h"
#include "platform/UserInterface.h"
#include "widgets/DialogLayout.h"

class wxButton;
class wxListBox;

class OmBsdlFileDlg : public wxDialog {
  public:
    explicit OmBsdlFileDlg(wxWindow* parent);

    wxString displayName; // in; may be empty
    OmBitVector idcode;   // in; of other than 32 elements: unknown
    wxString fileName;    // in and out; empty: no BSDL file

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    using Action = void (OmBsdlFileDlg::*)();

    void BuildSearchGroup(wxSizer* column);
    wxSizer* BuildFolderButtons(wxWindow* parent);
    void BuildFileGroup(wxSizer* column);
    wxButton* AddButton(wxWindow* parent, wxBoxSizer* sizer, const wxString& label, Action action);

    // The list of folders, kept in the settings.
    void LoadFolders();
    void SaveFolders() const;
    void AddFolder();
    void RemoveFolder();
    void MoveFolderUp();
    void MoveFolderDown();
    void ExchangeFolders(int row, int neighbour);

    void Browse();
    void Verify();
    void ViewTypedFile();
    void Search();

    wxString GetTypedName() const;
    bool IsThere(const wxString& name) const;
    // Asks whether a file that does not match is wanted, and keeps a Yes.
    bool AcceptVersion(const wxString& name, const std::vector<std::string>& patterns);
    bool AcceptMismatch(const wxString& name, const std::vector<std::string>& patterns);
    bool Accept(const wxString& question, OmMessageStyle style,
                const std::vector<std::string>& patterns);
    void TakeName(const wxString& name);
    void UpdateEnabled();

    wxListBox* folders_ = nullptr;
    wxButton* remove_ = nullptr;
    wxButton* up_ = nullptr;
    wxButton* down_ = nullptr;
    wxTextCtrl* nameBox_ = nullptr;
    wxButton* verify_ = nullptr;
    wxButton* view_ = nullptr;
};
