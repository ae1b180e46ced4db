#include "cli/Cli.h"
#include "cli/ExitCodes.h"
#include "platform/SettingsStore.h"
#include "platform/UserInterface.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/uilocale.h>

namespace {

// In the C locale the names of files that are not ASCII could be neither read nor shown. Production
// lines and boot scripts often run in it, with files from elsewhere: they are taken for UTF-8 then,
// as most are.
void UseUserLocale() {
    wxUILocale::UseDefault();
#ifndef _WIN32
    std::setlocale(LC_MESSAGES, "C"); // the system's reasons in the language of all other messages
    if (MB_CUR_MAX == 1)
        std::setlocale(LC_CTYPE, "C.UTF-8");
#endif
}

} // namespace

// The same names as the windows use, so that both have the same settings. The store is not written:
// a script must not change what the user has set.
int main(int argc, char** argv) {
    const wxInitializer toolkit;
    if (!toolkit.IsOk()) {
        std::fputs("velflash-cli: the toolkit does not start\n", stderr);
        return kExitFailed;
    }
    wxLog::DisableTimestamp();
    UseUserLocale();
    wxAppConsole::GetInstance()->SetVendorName(kVendorName);
    wxAppConsole::GetInstance()->SetAppName(kProductName);
    OpenSettingsStore(OmStoreAccess::Read);
    const int exitCode = RunCli(argc, argv);
    CloseSettingsStore();
    return exitCode;
}
