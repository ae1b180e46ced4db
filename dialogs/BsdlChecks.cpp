#include "dialogs/BsdlChecks.h"

#include "bsdl/BsdlData.h"
#include "bsdl/BsdlParser.h"
#include "jtag/IdcodeLayout.h"
#include "platform/Text.h"
#include "platform/TextEditor.h"
#include "platform/UserInterface.h"
#include "widgets/ErrorMessageDlg.h"

#include <wx/intl.h>

bool ParseOrShowErrors(wxWindow* parent, const wxString& path, OmBsdlData& data) {
    OmBsdlParserCallbackImpl callback;
    if (ParseBsdlFile(ToLocal(path.ToStdWstring()).c_str(), data, &callback))
        return true;
    OmErrorMessageDlg dialog(parent, _("Error"));
    dialog.message = _("An error occurred while parsing the BSDL file.");
    dialog.details = FromLocal(callback.text);
    dialog.ShowModal();
    return false;
}

OmBsdlFit TestBsdlFile(wxWindow* parent, const wxString& path, const OmBitVector& idcode,
                       std::vector<std::string>& patterns) {
    OmBsdlData data;
    if (!ParseOrShowErrors(parent, path, data))
        return OmBsdlFit::Unreadable;
    patterns = data.GetIdcodes();
    if (idcode.size() != kIdcodeBits)
        return OmBsdlFit::Unknown;
    bool versionOnly = false;
    if (IdcodeMatches(idcode, data, versionOnly))
        return OmBsdlFit::Full;
    return versionOnly ? OmBsdlFit::AllButVersion : OmBsdlFit::None;
}

OmAcceptedMismatches& GetChosenMismatches() {
    static OmAcceptedMismatches mismatches;
    return mismatches;
}

bool ViewFile(const wxString& path) {
    if (OpenInTextEditor(path.ToStdWstring()))
        return true;
    ShowMessage(_("Failed to start a text editor.").ToStdWstring(), kErrorBox);
    return false;
}
