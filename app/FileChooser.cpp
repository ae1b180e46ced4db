#include "app/FileChooser.h"

#include <wx/dirdlg.h>
#include <wx/filedlg.h>

namespace {

class HostFileChooser : public OmFileChooser {
  public:
    wxString ChooseToOpen(wxWindow* parent, const wxString& title,
                          const wxString& filter) override {
        wxFileDialog dialog(parent, title, "", "", filter, wxFD_OPEN | wxFD_FILE_MUST_EXIST);
        return dialog.ShowModal() == wxID_OK ? dialog.GetPath() : wxString();
    }

    wxString ChooseToSave(wxWindow* parent, const wxString& title, const wxString& filter,
                          int& filterIndex) override {
        wxFileDialog dialog(parent, title, "", "", filter, wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
        if (dialog.ShowModal() != wxID_OK)
            return {};
        filterIndex = dialog.GetFilterIndex();
        return dialog.GetPath();
    }

    wxString ChooseFolder(wxWindow* parent, const wxString& title) override {
        wxDirDialog dialog(parent, title, "", wxDD_DEFAULT_STYLE | wxDD_DIR_MUST_EXIST);
        return dialog.ShowModal() == wxID_OK ? dialog.GetPath() : wxString();
    }
};

HostFileChooser hostChooser;
OmFileChooser* installed = nullptr;

} // namespace

OmFileChooser& GetFileChooser() {
    return installed ? *installed : hostChooser;
}

OmFileChooser* SetFileChooser(OmFileChooser* chooser) {
    OmFileChooser* previous = installed;
    installed = chooser;
    return previous;
}
