#include "demo/Screenshot.h"

#include <wx/app.h>
#include <wx/utils.h>

bool TakeScreenshot(const wxString& path) {
    constexpr int kPaintMilliseconds = 150; // what the display server may need after the last event
    wxTheApp->Yield(true);
    wxMilliSleep(kPaintMilliseconds);
    wxTheApp->Yield(true);
    const wchar_t* const command[] = {L"import", L"-silent",    L"-window",
                                      L"root",   path.wc_str(), nullptr};
    return wxExecute(const_cast<wchar_t**>(command), wxEXEC_SYNC | wxEXEC_NOEVENTS) == 0;
}
