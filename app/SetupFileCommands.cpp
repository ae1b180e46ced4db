// The commands that load and save the setup file. A file enters the recent files when it stops
// being the current one, so that the list offers what is not open.
#include "app/CommandIds.h"
#include "app/MainFrame.h"
#include "app/ScopedFlag.h"
#include "flash/FlashProgrammer.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"
#include "widgets/FileChooser.h"

#include <wx/intl.h>

namespace {

constexpr char kLoadFilter[] =
    wxTRANSLATE("Setup Files (*.velflash)|*.velflash|All Files (*.*)|*.*");
constexpr char kSaveFilter[] = wxTRANSLATE("Setup Files (*.velflash)|*.velflash");

// `format` takes the path.
void ShowSetupFailure(const wxString& format, const wxString& path) {
    ShowMessage(wxString::Format(format, path).ToStdWstring(), kErrorBox);
}

} // namespace

bool OmMainFrame::PromptSaveSetup() {
    if (!setupModified_)
        return true;
    const wxString question = _("Do you want to save current setup?");
    const OmAnswer answer = ShowMessage(question.ToStdWstring(), kSaveQuestionBox);
    if (answer == OmAnswer::Yes)
        SaveCurrentSetup();
    return answer == OmAnswer::No || (answer == OmAnswer::Yes && !setupModified_);
}

void OmMainFrame::OnLoadSetup(wxCommandEvent&) {
    if (!PromptSaveSetup())
        return;
    const wxString path =
        GetFileChooser().ChooseToOpen(this, _("Load Setup File"), wxGetTranslation(kLoadFilter));
    if (!path.empty())
        LoadSetupFile(path);
}

bool OmMainFrame::LoadSetupFile(const wxString& path) {
    const ScopedFlag guard(commandRunning_); // at the start of the program no command runs
    if (!OmFlashProgrammer::GetInstance().LoadDesignSetup(ToLocal(path.ToStdWstring()))) {
        ShowSetupFailure(_("Failed to load setup file '%s'."), path);
        return false;
    }
    if (!setupPath_.empty())
        recentSetups_.AddFileToHistory(setupPath_);
    TakeSetupPath(path);
    return true;
}

void OmMainFrame::OnSaveSetup(wxCommandEvent&) {
    SaveCurrentSetup();
}

void OmMainFrame::OnSaveSetupAs(wxCommandEvent&) {
    SaveSetupUnderNewName();
}

void OmMainFrame::SaveCurrentSetup() {
    if (setupPath_.empty())
        SaveSetupUnderNewName();
    else
        SaveSetupFile(setupPath_);
}

void OmMainFrame::SaveSetupUnderNewName() {
    int filterIndex = 0;
    const wxString path = GetFileChooser().ChooseToSave(this, _("Save Setup File"),
                                                        wxGetTranslation(kSaveFilter), filterIndex);
    if (!path.empty())
        SaveSetupFile(path);
}

bool OmMainFrame::SaveSetupFile(const wxString& path) {
    if (!OmFlashProgrammer::GetInstance().SaveDesignSetup(ToLocal(path.ToStdWstring()))) {
        ShowSetupFailure(_("Failed to save setup file '%s'."), path);
        return false;
    }
    if (!setupPath_.empty() && setupPath_ != path)
        recentSetups_.AddFileToHistory(setupPath_);
    TakeSetupPath(path);
    return true;
}

void OmMainFrame::TakeSetupPath(const wxString& path) {
    setupPath_ = path;
    setupModified_ = false;
    UpdateTitle();
}

void OmMainFrame::MarkSetupModified() {
    setupModified_ = true;
    UpdateTitle();
}

void OmMainFrame::OnRecentSetup(wxCommandEvent& event) {
    const auto index = static_cast<size_t>(event.GetId() - kIdFirstRecentSetup);
    if (index >= recentSetups_.GetCount())
        return;
    const wxString path = recentSetups_.GetHistoryFile(index);
    if (!path.empty() && PromptSaveSetup())
        LoadSetupFile(path);
}
