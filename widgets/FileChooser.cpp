#include "widgets/FileChooser.h"

#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <wx/arrstr.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/intl.h>

namespace {

// Windows adds the extension of the chosen filter to a name typed without one; elsewhere the file
// would be hidden by the very filter with which it is looked for later.
#ifdef __WXMSW__
constexpr bool kHostAddsExtension = true;
#else
constexpr bool kHostAddsExtension = false;
#endif

bool ConfirmReplace(const wxString& path) {
    return ShowMessage(
               TranslatedFormat("%ls already exists.\nDo you want to replace the existing file?",
                                path.wc_str()),
               kLossQuestionBox) == OmAnswer::Yes;
}

// The name as typed has been confirmed by the dialog; one that is completed here has not.
bool CompleteName(const wxString& filter, int filterIndex, wxString& path) {
    const wxString typed = path;
    path = AddFilterExtension(typed, filter, filterIndex);
    return path == typed || !wxFileName::FileExists(path) || ConfirmReplace(path);
}

// Every dialog opens where the last file was chosen.
class HostFileChooser : public OmFileChooser {
  public:
    wxString ChooseToOpen(wxWindow* parent, const wxString& title,
                          const wxString& filter) override {
        wxFileDialog dialog(parent, title, folder_, "", filter, wxFD_OPEN | wxFD_FILE_MUST_EXIST);
        return dialog.ShowModal() == wxID_OK ? Take(dialog.GetPath()) : wxString();
    }

    wxString ChooseToSave(wxWindow* parent, const wxString& title, const wxString& filter,
                          int& filterIndex) override {
        wxFileDialog dialog(parent, title, folder_, "", filter, wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
        while (dialog.ShowModal() == wxID_OK) {
            filterIndex = dialog.GetFilterIndex();
            wxString path = dialog.GetPath();
            if (kHostAddsExtension || CompleteName(filter, filterIndex, path))
                return Take(path);
        }
        return {};
    }

    wxString ChooseFolder(wxWindow* parent, const wxString& title) override {
        wxDirDialog dialog(parent, title, folder_, wxDD_DEFAULT_STYLE | wxDD_DIR_MUST_EXIST);
        return dialog.ShowModal() == wxID_OK ? dialog.GetPath() : wxString();
    }

  private:
    wxString Take(const wxString& path) {
        folder_ = wxFileName(path).GetPath();
        return path;
    }

    wxString folder_;
};

HostFileChooser hostChooser;
OmFileChooser* installed = nullptr;

} // namespace

wxString AddFilterExtension(const wxString& path, const wxString& filter, int filterIndex) {
    const wxArrayString parts = wxSplit(filter, '|', '\0');
    const size_t pattern = 2 * static_cast<size_t>(filterIndex) + 1;
    if (filterIndex < 0 || pattern >= parts.size() || wxFileName(path).HasExt())
        return path;
    const wxString first = parts[pattern].BeforeFirst(';').AfterFirst('*');
    return first.StartsWith(".") && !first.Contains("*") ? path + first : path;
}

OmFileChooser& GetFileChooser() {
    return installed ? *installed : hostChooser;
}

OmFileChooser* SetFileChooser(OmFileChooser* chooser) {
    OmFileChooser* previous = installed;
    installed = chooser;
    return previous;
}
