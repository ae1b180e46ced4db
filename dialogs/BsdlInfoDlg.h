// What is known of one device from its BSDL file, and the way to another file. Works on its own
// copy of what it was given: nothing changes before TakeResult.
#pragma once

#include "bsdl/BsdlData.h"
#include "widgets/DialogLayout.h"

#include <memory>

class wxButton;

class OmBsdlInfoDlg : public wxDialog {
  public:
    explicit OmBsdlInfoDlg(wxWindow* parent);

    // `displayName` leads the title, such as "Dev1". `data` (null for none) is not owned and must
    // outlive the dialog; it came from `fileName`. `idcode` has 32 elements if it is known.
    void SetDevice(const wxString& displayName, const OmBitVector& idcode, const OmBsdlData* data,
                   const wxString& fileName);

    // Hands the new data over, null for none. False, and nothing handed over, if nothing changed:
    // the same file name and equal data count as no change.
    bool TakeResult(std::unique_ptr<OmBsdlData>& data, wxString& fileName);

    bool TransferDataToWindow() override;

  private:
    void BuildControls();
    void Refresh();
    void ViewData();
    void Replace();
    void LoadFile(const wxString& path);
    void Take(std::unique_ptr<OmBsdlData> data, const wxString& fileName);

    wxTextCtrl* fileText_ = nullptr;
    wxButton* replaceButton_ = nullptr;
    wxButton* viewButton_ = nullptr;
    wxString displayName_;
    OmBitVector idcode_;
    const OmBsdlData* entryData_ = nullptr;
    const OmBsdlData* currentData_ = nullptr; // entryData_, or that of ownData_
    std::unique_ptr<OmBsdlData> ownData_;
    wxString entryFileName_;
    wxString currentFileName_;
};
