#include "jtag/ui/ParallelPage.h"

#include "jtag/CableTable.h"
#include "jtag/LptPorts.h"
#include "widgets/NumberParsing.h"

#include <wx/choice.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr int kPortCount = 3;

// The same for every cable of this page.
const OmSetting& GetFrequencyRange() {
    return GetSetting(OmCableType::XilinxParallelCable3, OmSettingRole::Frequency);
}

} // namespace

OmParallelPage::OmParallelPage(wxWindow* parent, const std::function<void()>& /*recheck*/)
    : OmCablePage(parent) {
    BeginRow(_("Port:"));
    port_ = MakeChoice();
    EndRow(port_);
    BeginRow(_("TCK freq:"));
    frequency_ = new wxTextCtrl(this, wxID_ANY);
    EndRow(frequency_, new wxStaticText(this, wxID_ANY, _("Hz")));
}

bool OmParallelPage::Check(const OmConnectionSettings& settings, wxString& error) {
    if (filled_)
        return true;
    uint16_t addresses[kPortCount] = {};
    if (!GetLptAddresses(&addresses[0], &addresses[1], &addresses[2])) {
        error = _("ERROR: failed to open parallel port I/O driver. Reinstalling this software "
                  "might solve the problem.");
        return false;
    }
    for (int port = 0; port < kPortCount; ++port)
        if (addresses[port] != 0)
            port_->Append(wxString::Format("LPT%d", port + 1));
    if (port_->IsEmpty()) {
        error = _("ERROR: there are no parallel ports found in your computer.");
        return false;
    }
    port_->SetStringSelection(wxString::Format("LPT%d", settings.lptPort + 1));
    filled_ = true;
    return true;
}

void OmParallelPage::ShowSettings(const OmConnectionSettings& settings) {
    port_->SetStringSelection(wxString::Format("LPT%d", settings.lptPort + 1));
    frequency_->ChangeValue(wxString::Format("%d", settings.lptFrequency));
}

bool OmParallelPage::Read(OmConnectionSettings& settings, bool isShown) {
    const OmSetting& range = GetFrequencyRange();
    const std::optional<uint32_t> frequency =
        ParseDecimal(frequency_->GetValue().ToStdWstring(), range.lowest);
    if (frequency && *frequency <= static_cast<uint32_t>(range.highest))
        settings.lptFrequency = static_cast<int32_t>(*frequency);
    else if (!Refuse(isShown, *frequency_,
                     wxString::Format(_("The TCK frequency must be in a range from %dHz to %dHz."),
                                      range.lowest, range.highest)))
        return false;
    wxString number;
    long port = 0;
    if (port_->GetStringSelection().StartsWith("LPT", &number) && number.ToLong(&port) &&
        port >= 1 && port <= kPortCount)
        settings.lptPort = static_cast<int32_t>(port - 1);
    else if (!Refuse(isShown, *port_, ""))
        return false;
    return true;
}
