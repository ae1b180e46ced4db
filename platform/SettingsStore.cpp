#include "platform/SettingsStore.h"

#include <memory>
#include <wx/app.h>
#include <wx/config.h>
#include <wx/filename.h>
#include <wx/stdpaths.h>

void OpenSettingsStore() {
    const wxAppConsole& names = *wxAppConsole::GetInstance();
#ifdef __WXMSW__
    auto store = std::make_unique<wxConfig>(names.GetAppName(), names.GetVendorName());
#else
    wxStandardPaths::Get().SetFileLayout(wxStandardPaths::FileLayout_XDG);
    // Private to the user, as the XDG base directory specification asks; the toolkit does not make
    // the folder. Without it the settings simply do not outlive the run.
    const wxString folder = wxStandardPaths::Get().GetUserConfigDir();
    if (!wxFileName::DirExists(folder))
        wxFileName::Mkdir(folder, wxS_IRUSR | wxS_IWUSR | wxS_IXUSR, wxPATH_MKDIR_FULL);
    auto store =
        std::make_unique<wxFileConfig>(names.GetAppName(), names.GetVendorName(), wxEmptyString,
                                       wxEmptyString, wxCONFIG_USE_LOCAL_FILE);
#endif
    // A path may hold a dollar sign.
    store->SetExpandEnvVars(false);
    delete wxConfigBase::Set(store.release());
}

void CloseSettingsStore() {
    delete wxConfigBase::Set(nullptr);
}
