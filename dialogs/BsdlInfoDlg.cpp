#include "dialogs/BsdlInfoDlg.h"

#include "bsdl/BsdlReport.h"
#include "bsdl/BsdlXml.h"
#include "dialogs/BsdlChecks.h"
#include "dialogs/BsdlFileDlg.h"
#include "dialogs/TextViewerDlg.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"
#include "widgets/Product.h"

#include <wx/button.h>
#include <wx/filename.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kFileTextWidth = 48;

wxString GetFullName(const wxString& path) {
    return wxFileName(path).GetFullName();
}

bool Differ(const OmBsdlData* one, const OmBsdlData* other) {
    return !one != !other || (one && !(*one == *other));
}

void TellContentError(const wxString& fileName) {
    const wxString text = wxString::Format(
        _("%s content integrity check error!\nUnfortunately, some BSDL files do not strictly "
          "conforms the standard. However, they are usually easy to fix. Please feel free to send "
          "us this BSDL file at %s."),
        fileName, kSupportAddress);
    GetUserInterface().ShowMessage(text.ToStdWstring(), _("Error").ToStdWstring(), kErrorBox);
}

} // namespace

OmBsdlInfoDlg::OmBsdlInfoDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("BSDL File")) {
    BuildControls();
    viewButton_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ViewData(); });
    replaceButton_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Replace(); });
}

void OmBsdlInfoDlg::BuildControls() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, "", 0);
    fileText_ = MakeReadOnlyLine(box, kFileTextWidth);
    rows->Add(fileText_, RowFlags());
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    replaceButton_ = new wxButton(box, wxID_ANY, _("&Update / Replace BSDL file..."));
    viewButton_ = new wxButton(box, wxID_ANY, _("&View imported data"));
    buttons->Add(replaceButton_, wxSizerFlags().Border(wxRIGHT));
    buttons->Add(viewButton_);
    rows->Add(buttons, RowFlags());
    column->Add(new wxStaticText(
                    this, wxID_ANY,
                    _("NOTE: Upon assigning a BSDL file for the device, all the required data is\n"
                      "imported from the file and stored together with project data. Therefore\n"
                      "the BSDL file is no longer required and you don't need to care about\n"
                      "BSDL files when copying a project file to another computer.")),
                RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

void OmBsdlInfoDlg::SetDevice(const wxString& displayName, const OmBitVector& idcode,
                              const OmBsdlData* data, const wxString& fileName) {
    displayName_ = displayName;
    SetTitle(wxString::Format(_("%s BSDL File"), displayName));
    idcode_ = idcode;
    ownData_.reset();
    entryData_ = currentData_ = data;
    entryFileName_ = currentFileName_ = fileName;
}

bool OmBsdlInfoDlg::TakeResult(std::unique_ptr<OmBsdlData>& data, wxString& fileName) {
    const bool sameData = currentData_ == entryData_;
    if (sameData || (currentFileName_ == entryFileName_ && !Differ(currentData_, entryData_)))
        return false;
    data = std::move(ownData_);
    fileName = currentFileName_;
    return true;
}

bool OmBsdlInfoDlg::TransferDataToWindow() {
    Refresh();
    replaceButton_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

void OmBsdlInfoDlg::Refresh() {
    viewButton_->Enable(currentData_ != nullptr);
    fileText_->ChangeValue(currentData_ ? FromLocal(currentData_->entity) + L" (" +
                                              GetFullName(currentFileName_) + ")"
                                        : _("(no BSDL file assigned)"));
}

void OmBsdlInfoDlg::ViewData() {
    OmTextViewerDlg dialog(this);
    dialog.SetTitle(wxString::Format(_("Data imported from %s"), GetFullName(currentFileName_)));
    dialog.UseFixedFont();
    dialog.SetText(FromLocal(FormatBsdlReport(*currentData_)));
    dialog.ShowModal();
}

void OmBsdlInfoDlg::Replace() {
    OmBsdlFileDlg dialog(this);
    dialog.displayName = displayName_;
    dialog.idcode = idcode_;
    dialog.fileName = currentFileName_;
    if (dialog.ShowModal() != wxID_OK)
        return;
    if (dialog.fileName.empty())
        Take(nullptr, wxString());
    else
        LoadFile(dialog.fileName);
    Refresh();
}

// A file that cannot be used never changes the assignment.
void OmBsdlInfoDlg::LoadFile(const wxString& path) {
    auto data = std::make_unique<OmBsdlData>();
    if (!ParseOrShowErrors(this, path, *data))
        return;
    OmBsdlData restored;
    if (CheckBsdlContent(*data, restored))
        Take(std::move(data), path);
    else
        TellContentError(GetFullName(path));
}

void OmBsdlInfoDlg::Take(std::unique_ptr<OmBsdlData> data, const wxString& fileName) {
    ownData_ = std::move(data);
    currentData_ = ownData_.get();
    currentFileName_ = fileName;
}
