#include "app/WxUserInterface.h"

#include "app/BoxText.h"

#include <wx/app.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>
#include <wx/utils.h>

#include <wx/generic/msgdlgg.h> // needs what wx/msgdlg.h declares

namespace {

// GTK's own message boxes have lost their icons, by which a failure is told from a result.
#ifdef __WXGTK__
using HostMessageDialog = wxGenericMessageDialog;
#else
using HostMessageDialog = wxMessageDialog;
#endif

long ToToolkitStyle(OmMessageStyle style) {
    static constexpr long kButtons[] = {wxOK, wxOK | wxCANCEL, wxYES_NO, wxYES_NO | wxCANCEL};
    static constexpr long kIcons[] = {wxICON_NONE, wxICON_INFORMATION, wxICON_EXCLAMATION,
                                      wxICON_ERROR, wxICON_QUESTION};
    return kButtons[static_cast<size_t>(style.buttons)] | kIcons[static_cast<size_t>(style.icon)] |
           (style.noIsDefault ? wxNO_DEFAULT : 0) | wxCENTRE;
}

// A box with nothing but OK may also be closed, which counts the same.
OmAnswer FromButton(int button, OmMessageStyle style) {
    switch (button) {
    case wxID_YES:
        return OmAnswer::Yes;
    case wxID_NO:
        return OmAnswer::No;
    case wxID_CANCEL:
        return style.buttons == OmButtons::Ok ? OmAnswer::Ok : OmAnswer::Cancel;
    default:
        return OmAnswer::Ok;
    }
}

// There is no active window while the user works in another program.
wxWindow* FindBoxParent() {
    wxWindow* parent = wxGetActiveWindow();
    return parent ? wxGetTopLevelParent(parent) : wxTheApp->GetTopWindow();
}

// The toolkit's own labels come from catalogues that may be missing where the program's is not.
void NameButtons(HostMessageDialog& box, OmButtons buttons) {
    switch (buttons) {
    case OmButtons::Ok:
        box.SetOKLabel(_("&OK"));
        break;
    case OmButtons::OkCancel:
        box.SetOKCancelLabels(_("&OK"), _("&Cancel"));
        break;
    case OmButtons::YesNo:
        box.SetYesNoLabels(_("&Yes"), _("&No"));
        break;
    case OmButtons::YesNoCancel:
        box.SetYesNoCancelLabels(_("&Yes"), _("&No"), _("&Cancel"));
        break;
    }
}

} // namespace

OmAnswer WxUserInterface::ShowMessage(const std::wstring& text, const std::wstring& caption,
                                      OmMessageStyle style) {
    HostMessageDialog box(FindBoxParent(), FitIntoBox(text), caption, ToToolkitStyle(style));
    NameButtons(box, style.buttons);
    return FromButton(box.ShowModal(), style);
}

void WxUserInterface::BeginBusyCursor() {
    wxBeginBusyCursor();
}

void WxUserInterface::EndBusyCursor() {
    wxEndBusyCursor();
}
