#include "app/WxUserInterface.h"

#include <wx/app.h>
#include <wx/generic/msgdlgg.h>
#include <wx/msgdlg.h>
#include <wx/utils.h>

namespace {

long ToToolkitStyle(OmMessageStyle style) {
    static constexpr long kButtons[] = {wxOK, wxOK | wxCANCEL, wxYES_NO, wxYES_NO | wxCANCEL};
    static constexpr long kIcons[] = {wxICON_NONE, wxICON_INFORMATION, wxICON_EXCLAMATION,
                                      wxICON_ERROR, wxICON_QUESTION};
    return kButtons[static_cast<size_t>(style.buttons)] | kIcons[static_cast<size_t>(style.icon)] |
           (style.noIsDefault ? wxNO_DEFAULT : 0);
}

#ifdef __WXGTK__
// GTK's own message dialog shows no icon, and the icon tells a failure from a result at a glance.
using MessageDialog = wxGenericMessageDialog;
#else
using MessageDialog = wxMessageDialog;
#endif

OmAnswer FromToolkitAnswer(int buttonId) {
    switch (buttonId) {
    case wxID_YES:
        return OmAnswer::Yes;
    case wxID_NO:
        return OmAnswer::No;
    case wxID_CANCEL:
        return OmAnswer::Cancel;
    default:
        return OmAnswer::Ok;
    }
}

// wxGetActiveWindow misses dialogs on some hosts, and then a box would hide behind its dialog.
wxWindow* FindBoxParent() {
    wxWindow* parent = wxGetActiveWindow();
    return parent ? wxGetTopLevelParent(parent) : wxTheApp->GetTopWindow();
}

} // namespace

OmAnswer WxUserInterface::ShowMessage(const std::wstring& text, const std::wstring& caption,
                                      OmMessageStyle style) {
    MessageDialog dialog(FindBoxParent(), text, caption, ToToolkitStyle(style));
    return FromToolkitAnswer(dialog.ShowModal());
}

void WxUserInterface::BeginBusyCursor() {
    wxBeginBusyCursor();
}

void WxUserInterface::EndBusyCursor() {
    wxEndBusyCursor();
}
