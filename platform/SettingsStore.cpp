#include "platform/SettingsStore.h"

#include <memory>
#include <wx/app.h>
#include <wx/config.h>
#include <wx/debug.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

namespace {

// Settings that are damaged, or that cannot be read or written, are no reason to stop the user: the
// toolkit's parser takes what it understands, and says the rest on standard error. Otherwise each
// complaint would become a box, behind the main window at the start and without one at the end, and
// a line without a name would be an assertion.
class ComplaintsToStandardError {
  public:
    ComplaintsToStandardError()
        : previousLog_(wxLog::SetActiveTarget(&log_)),
          previousAssertHandler_(wxSetAssertHandler(nullptr)) {}

    ~ComplaintsToStandardError() {
        wxSetAssertHandler(previousAssertHandler_);
        wxLog::SetActiveTarget(previousLog_);
    }

    ComplaintsToStandardError(const ComplaintsToStandardError&) = delete;
    ComplaintsToStandardError& operator=(const ComplaintsToStandardError&) = delete;

  private:
    wxLogStderr log_;
    wxLog* previousLog_;
    wxAssertHandler_t previousAssertHandler_;
};

} // namespace

void OpenSettingsStore([[maybe_unused]] OmStoreAccess access) {
    const ComplaintsToStandardError complaints;
    const wxAppConsole& names = *wxAppConsole::GetInstance();
#ifdef __WXMSW__
    auto store = std::make_unique<wxConfig>(names.GetAppName(), names.GetVendorName());
#else
    wxStandardPaths::Get().SetFileLayout(wxStandardPaths::FileLayout_XDG);
    // Private to the user, as the XDG base directory specification asks; the toolkit does not make
    // the folder. Without it the settings simply do not outlive the run.
    const wxString folder = wxStandardPaths::Get().GetUserConfigDir();
    if (access == OmStoreAccess::ReadAndWrite && !wxFileName::DirExists(folder))
        wxFileName::Mkdir(folder, wxS_IRUSR | wxS_IWUSR | wxS_IXUSR, wxPATH_MKDIR_FULL);
    auto store =
        std::make_unique<wxFileConfig>(names.GetAppName(), names.GetVendorName(), wxEmptyString,
                                       wxEmptyString, wxCONFIG_USE_LOCAL_FILE);
#endif
    // A path may hold a dollar sign.
    store->SetExpandEnvVars(false);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the toolkit keeps what is set
    delete wxConfigBase::Set(store.release());
}

void CloseSettingsStore() {
    const ComplaintsToStandardError complaints;
    delete wxConfigBase::Set(nullptr);
}
