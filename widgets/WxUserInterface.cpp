#include "widgets/WxUserInterface.h"

#include "widgets/BoxText.h"

#include <wx/app.h>
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

} // namespace

OmAnswer WxUserInterface::ShowMessage(const std::wstring& text, const std::wstring& caption,
                                      OmMessageStyle style) {
    HostMessageDialog box(FindBoxParent(), FitIntoBox(text), caption, ToToolkitStyle(style));
    return FromButton(box.ShowModal(), style);
}

void WxUserInterface::ShowFailure(const std::wstring& text, const std::wstring& details) {
    HostMessageDialog box(FindBoxParent(), FitIntoBox(text), kProductName,
                          ToToolkitStyle(kErrorBox));
    if (!details.empty())
        box.SetExtendedMessage(FitIntoBox(details));
    box.ShowModal();
}

void WxUserInterface::BeginBusyCursor() {
    wxBeginBusyCursor();
}

void WxUserInterface::EndBusyCursor() {
    wxEndBusyCursor();
}
