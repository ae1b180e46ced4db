#include "dialogs/BsdlFileDlg.h"

#include "dialogs/BsdlSearchDlg.h"
#include "jtag/IdcodeLayout.h"
#include "platform/Text.h"
#include "widgets/FileChooser.h"
#include "widgets/Help.h"

#include <wx/arrstr.h>
#include <wx/button.h>
#include <wx/config.h>
#include <wx/filename.h>
#include <wx/listbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/tokenzr.h>

namespace {

constexpr char kFoldersKey[] = "BsdlDirs";
constexpr char kFoldersSeparator[] = ";";
constexpr unsigned kListColumns = 50;
constexpr unsigned kListRows = 7;

void Tell(const wxString& text, OmMessageStyle style) {
    ShowMessage(text.ToStdWstring(), style);
}

} // namespace

OmBsdlFileDlg::OmBsdlFileDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("BSDL File"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    BuildSearchGroup(column);
    BuildFileGroup(column);
    LayOutDialog(this, column, MakeOkCancelHelpRow(this, [] { ShowHelpTopic("bsdl.htm"); }));
}

void OmBsdlFileDlg::BuildSearchGroup(wxSizer* column) {
    const auto [box, rows] =
        AddGroup(this, column, _("Search for BSDL files matching the device IDCODE ..."));
    rows->Add(new wxStaticText(box, wxID_ANY, _("Directories in which to search for BSDL files:")),
              RowFlags());
    folders_ = new wxListBox(box, wxID_ANY);
    folders_->SetMinSize(MeasureText(*folders_, kListColumns, kListRows));
    folders_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { UpdateEnabled(); });
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(folders_, wxSizerFlags(1).Expand());
    row->Add(BuildFolderButtons(box), wxSizerFlags().Border(wxLEFT));
    rows->Add(row, RowFlags(1));
    auto* searchRow = new wxBoxSizer(wxHORIZONTAL);
    AddButton(box, searchRow, _("&Search"), &OmBsdlFileDlg::Search);
    rows->Add(searchRow, RowFlags());
}

wxSizer* OmBsdlFileDlg::BuildFolderButtons(wxWindow* parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    AddButton(parent, column, _("Add Directory to List"), &OmBsdlFileDlg::AddFolder);
    remove_ =
        AddButton(parent, column, _("Remove Directory from List"), &OmBsdlFileDlg::RemoveFolder);
    up_ = AddButton(parent, column, _("Move Line Up"), &OmBsdlFileDlg::MoveFolderUp);
    down_ = AddButton(parent, column, _("Move Line Down"), &OmBsdlFileDlg::MoveFolderDown);
    return column;
}

void OmBsdlFileDlg::BuildFileGroup(wxSizer* column) {
    const auto [box, rows] = AddGroup(this, column, _("... or manually specify the BSDL file"), 0);
    nameBox_ = new wxTextCtrl(box, wxID_ANY);
    nameBox_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { UpdateEnabled(); });
    rows->Add(nameBox_, RowFlags());
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    AddButton(box, row, _("&Browse..."), &OmBsdlFileDlg::Browse);
    verify_ = AddButton(box, row, _("&Verify..."), &OmBsdlFileDlg::Verify);
    view_ = AddButton(box, row, _("View &File..."), &OmBsdlFileDlg::ViewTypedFile);
    rows->Add(row, RowFlags());
}

wxButton* OmBsdlFileDlg::AddButton(wxWindow* parent, wxBoxSizer* sizer, const wxString& label,
                                   Action action) {
    auto* button = new wxButton(parent, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
    const int next = sizer->GetOrientation() == wxVERTICAL ? wxBOTTOM : wxRIGHT;
    sizer->Add(button, wxSizerFlags().Expand().Border(next));
    return button;
}

bool OmBsdlFileDlg::TransferDataToWindow() {
    if (!displayName.empty())
        SetTitle(wxString::Format(_("%s BSDL File"), displayName));
    LoadFolders();
    nameBox_->ChangeValue(fileName);
    UpdateEnabled();
    nameBox_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

// Only OK keeps what was done to the list of folders.
bool OmBsdlFileDlg::TransferDataFromWindow() {
    SaveFolders();
    fileName = GetTypedName();
    return true;
}

void OmBsdlFileDlg::LoadFolders() {
    const wxString value = wxConfigBase::Get()->Read(kFoldersKey, wxString());
    folders_->Set(wxStringTokenize(value, kFoldersSeparator, wxTOKEN_STRTOK));
}

void OmBsdlFileDlg::SaveFolders() const {
    wxString value;
    for (const wxString& folder : folders_->GetStrings())
        value += (value.empty() ? "" : kFoldersSeparator) + folder;
    wxConfigBase::Get()->Write(kFoldersKey, value);
}

void OmBsdlFileDlg::AddFolder() {
    const wxString folder = GetFileChooser().ChooseFolder(this, _("Select a directory"));
    if (!folder.empty())
        folders_->Append(folder);
    UpdateEnabled();
}

void OmBsdlFileDlg::RemoveFolder() {
    folders_->Delete(static_cast<unsigned>(folders_->GetSelection()));
    UpdateEnabled();
}

void OmBsdlFileDlg::MoveFolderUp() {
    ExchangeFolders(folders_->GetSelection(), folders_->GetSelection() - 1);
}

void OmBsdlFileDlg::MoveFolderDown() {
    ExchangeFolders(folders_->GetSelection(), folders_->GetSelection() + 1);
}

void OmBsdlFileDlg::ExchangeFolders(int row, int neighbour) {
    if (neighbour < 0 || neighbour >= static_cast<int>(folders_->GetCount()))
        return;
    const wxString moved = folders_->GetString(row);
    folders_->SetString(row, folders_->GetString(neighbour));
    folders_->SetString(neighbour, moved);
    folders_->SetSelection(neighbour);
    UpdateEnabled();
}

void OmBsdlFileDlg::UpdateEnabled() {
    const bool named = !nameBox_->IsEmpty();
    verify_->Enable(named);
    view_->Enable(named);
    const bool selected = folders_->GetSelection() != wxNOT_FOUND;
    remove_->Enable(selected);
    up_->Enable(selected && folders_->GetCount() >= 2);
    down_->Enable(selected && folders_->GetCount() >= 2);
}

wxString OmBsdlFileDlg::GetTypedName() const {
    return nameBox_->GetValue().Trim().Trim(false);
}

bool OmBsdlFileDlg::IsThere(const wxString& name) const {
    if (wxFileName::FileExists(name))
        return true;
    Tell(wxString::Format(_("Cannot find the '%s' file."), name), kErrorBox);
    return false;
}

void OmBsdlFileDlg::TakeName(const wxString& name) {
    nameBox_->ChangeValue(name);
    UpdateEnabled();
}

void OmBsdlFileDlg::Verify() {
    const wxString name = GetTypedName();
    std::vector<std::string> patterns;
    if (name.empty() || !IsThere(name))
        return;
    switch (TestBsdlFile(this, name, idcode, patterns)) {
    case OmBsdlFit::Unreadable:
        return;
    case OmBsdlFit::Unknown:
        return Tell(_("The BSDL file was parsed without errors but it cannot be verified if it "
                      "matches the device IDCODE as the IDCODE is unknown."),
                    kInformationBox);
    case OmBsdlFit::Full:
        return Tell(_("The BSDL file is OK and matches the device IDCODE."), kInformationBox);
    case OmBsdlFit::AllButVersion:
        return Tell(_("The detected device IDCODE and the IDCODE specified in the BSDL file have "
                      "different version fields."),
                    kInformationBox);
    case OmBsdlFit::None:
        return Tell(_("The BSDL file does not match the device IDCODE."), kWarningBox);
    }
}

void OmBsdlFileDlg::Browse() {
    const wxString name = GetFileChooser().ChooseToOpen(
        this, _("Select a BSDL File"),
        _("BSDL Files (*.bsd; *.bsdl; *.bsm)|*.bsd;*.bsdl;*.bsm|All Files (*.*)|*.*"));
    if (name.empty())
        return;
    std::vector<std::string> patterns;
    const OmBsdlFit fit = TestBsdlFile(this, name, idcode, patterns);
    if (fit == OmBsdlFit::AllButVersion && !AcceptVersion(name, patterns))
        return;
    if (fit == OmBsdlFit::None && !AcceptMismatch(name, patterns))
        return;
    TakeName(name); // an unreadable one too: the user may want to look at it
}

bool OmBsdlFileDlg::AcceptVersion(const wxString& name, const std::vector<std::string>& patterns) {
    return Accept(
        wxString::Format(_("There are different version fields in the detected device IDCODE and "
                           "the IDCODE specified in the '%s' BSDL file.\nAre you sure you want to "
                           "use this file anyway?"),
                         name),
        kQuestionBox, patterns);
}

bool OmBsdlFileDlg::AcceptMismatch(const wxString& name, const std::vector<std::string>& patterns) {
    return Accept(
        wxString::Format(_("The '%s' BSDL file does not match the device IDCODE.\nAre you "
                           "sure you want to use this file anyway?"),
                         name),
        kLossQuestionBox, patterns);
}

bool OmBsdlFileDlg::Accept(const wxString& question, OmMessageStyle style,
                           const std::vector<std::string>& patterns) {
    if (ShowMessage(question.ToStdWstring(), style) != OmAnswer::Yes)
        return false;
    GetChosenMismatches().push_back({idcode, patterns});
    return true;
}

void OmBsdlFileDlg::ViewTypedFile() {
    const wxString name = GetTypedName();
    if (IsThere(name))
        ViewFile(name);
}

void OmBsdlFileDlg::Search() {
    if (idcode.size() != kIdcodeBits)
        return Tell(_("Cannot run the BSDL file search as the device IDCODE is unknown."),
                    kWarningBox);
    if (folders_->IsEmpty())
        return Tell(_("Please specify directories in which to search for BSDL files."),
                    kWarningBox);
    std::vector<std::string> folders;
    for (const wxString& folder : folders_->GetStrings())
        folders.push_back(ToLocal(folder.ToStdWstring()));
    OmBsdlSearchDlg dialog(this, idcode, folders);
    if (dialog.ShowModal() != wxID_OK || dialog.resultPath.empty())
        return;
    std::vector<std::string> patterns;
    const OmBsdlFit fit = TestBsdlFile(this, dialog.resultPath, idcode, patterns);
    if (fit != OmBsdlFit::AllButVersion || AcceptVersion(dialog.resultPath, patterns))
        TakeName(dialog.resultPath);
}
