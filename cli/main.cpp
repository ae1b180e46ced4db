#include "cli/Cli.h"
#include "cli/ExitCodes.h"
#include "platform/SettingsStore.h"
#include "platform/UserInterface.h"

#include <cstdio>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/uilocale.h>

// The same names as the windows use, so that both have the same settings. The store is not written:
// a script must not change what the user has set.
int main(int argc, char** argv) {
    const wxInitializer toolkit;
    if (!toolkit.IsOk()) {
        std::fputs("velflash-cli: the toolkit does not start\n", stderr);
        return kExitFailed;
    }
    wxUILocale::UseDefault();
    wxAppConsole::GetInstance()->SetVendorName(kVendorName);
    wxAppConsole::GetInstance()->SetAppName(kProductName);
    OpenSettingsStore();
    const int exitCode = RunCli(argc, argv);
    CloseSettingsStore();
    return exitCode;
}
