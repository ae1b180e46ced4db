// How the windows ask for a file or a folder: the host's own dialogs in the program, a list of
// answers in tests.
#pragma once

#include <wx/string.h>

class wxWindow;

class OmFileChooser {
  public:
    virtual ~OmFileChooser() = default;

    // An existing file; empty if the user cancels. `filter` is in the toolkit's form,
    // "label|pattern|label|pattern".
    virtual wxString ChooseToOpen(wxWindow* parent, const wxString& title,
                                  const wxString& filter) = 0;

    // A file to write; the user has agreed to replace one that exists. Empty if the user cancels.
    // `filterIndex` receives the number of the filter in use, from 0.
    virtual wxString ChooseToSave(wxWindow* parent, const wxString& title, const wxString& filter,
                                  int& filterIndex) = 0;

    // An existing folder; empty if the user cancels.
    virtual wxString ChooseFolder(wxWindow* parent, const wxString& title) = 0;
};

OmFileChooser& GetFileChooser();

// Installs `chooser` (not owned; null restores the host's dialogs); returns the one installed
// before, null for the host's.
OmFileChooser* SetFileChooser(OmFileChooser* chooser);

// `path`, with the first extension of the filter's entry of that index if it has none itself.
wxString AddFilterExtension(const wxString& path, const wxString& filter, int filterIndex);
