#include "jtag/ui/JLinkPages.h"

#include "jtag/CableTable.h"
#include "jtag/FrequencyText.h"
#include "jtag/JLink.h"
#include "platform/Text.h"
#include "widgets/NumberParsing.h"

#include <cstdint>
#include <wx/choice.h>
#include <wx/textctrl.h>

namespace {

const char* const kFrequencies[] = {
    "12 MHz",  "9.6 MHz", "8 MHz",   "6 MHz",   "4 MHz",   "3 MHz",   "2 MHz",
    "1 MHz",   "750 KHz", "600 KHz", "500 KHz", "400 KHz", "300 KHz", "200 KHz",
    "150 KHz", "100 KHz", "50 KHz",  "25 KHz",  "10 KHz",  "5 KHz",   "1 KHz",
};

const char* const kDevices[] = {wxTRANSLATE("J-Link 0 (default)"), wxTRANSLATE("J-Link 1"),
                                wxTRANSLATE("J-Link 2"), wxTRANSLATE("J-Link 3")};

wxArrayString TranslateDevices() {
    wxArrayString names;
    for (const char* device : kDevices)
        names.push_back(wxGetTranslation(device));
    return names;
}

template <size_t N>
wxArrayString ToArray(const char* const (&entries)[N]) {
    return wxArrayString(N, const_cast<const char**>(entries));
}

int32_t ReadFrequency(const wxChoice& choice, OmCableType type) {
    const OmSetting& range = GetSetting(type, OmSettingRole::Frequency);
    return ParseFrequency(choice.GetStringSelection().ToStdWstring(), range.lowest, range.highest);
}

// A value that the list does not have comes from elsewhere: the next lower one is safe.
void SelectFrequency(wxChoice& choice, int32_t hertz) {
    for (const char* entry : kFrequencies)
        if (ParseFrequency(wxString(entry).ToStdWstring(), 0, INT32_MAX) <= hertz) {
            choice.SetStringSelection(entry);
            return;
        }
}

bool CheckLibrary(wxString& error) {
    if (OmJLink().Load())
        return true;
    error = _("ERROR: failed to load JLinkARM.dll.");
    return false;
}

} // namespace

OmJLinkUsbPage::OmJLinkUsbPage(wxWindow* parent, const std::function<void()>& /*recheck*/)
    : OmCablePage(parent) {
    BeginRow(_("Device:"));
    device_ = MakeChoice(TranslateDevices());
    EndRow(device_);
    BeginRow(_("TCK freq:"));
    frequency_ = MakeChoice(ToArray(kFrequencies));
    EndRow(frequency_);
}

bool OmJLinkUsbPage::Check(const OmConnectionSettings&, wxString& error) {
    return CheckLibrary(error);
}

void OmJLinkUsbPage::ShowSettings(const OmConnectionSettings& settings) {
    device_->SetSelection(settings.jlinkUsbNumber);
    SelectFrequency(*frequency_, settings.jlinkUsbFrequency);
}

bool OmJLinkUsbPage::Read(OmConnectionSettings& settings, bool isShown) {
    if (device_->GetSelection() != wxNOT_FOUND)
        settings.jlinkUsbNumber = device_->GetSelection();
    const int32_t frequency = ReadFrequency(*frequency_, OmCableType::JLinkUsb);
    if (frequency < 0)
        return Refuse(isShown, *frequency_, "");
    settings.jlinkUsbFrequency = frequency;
    return true;
}

OmJLinkIpPage::OmJLinkIpPage(wxWindow* parent, const std::function<void()>& /*recheck*/)
    : OmCablePage(parent) {
    BeginRow(_("Host:"));
    host_ = new wxTextCtrl(this, wxID_ANY);
    EndRow(host_);
    BeginRow(_("Port:"));
    port_ = new wxTextCtrl(this, wxID_ANY);
    EndRow(port_);
    BeginRow(_("TCK freq:"));
    frequency_ = MakeChoice(ToArray(kFrequencies));
    EndRow(frequency_);
}

bool OmJLinkIpPage::Check(const OmConnectionSettings&, wxString& error) {
    return CheckLibrary(error);
}

void OmJLinkIpPage::ShowSettings(const OmConnectionSettings& settings) {
    host_->ChangeValue(FromLocal(settings.jlinkIpHost));
    port_->ChangeValue(wxString::Format("%d", settings.jlinkIpPort));
    SelectFrequency(*frequency_, settings.jlinkIpFrequency);
}

bool OmJLinkIpPage::ReadHost(OmConnectionSettings& settings, bool isShown) {
    const std::wstring host = TrimText(host_->GetValue().ToStdWstring());
    if (host.empty())
        return Refuse(isShown, *host_, _("Please specify a host name or IP address."));
    settings.jlinkIpHost = ToLocal(host);
    return true;
}

bool OmJLinkIpPage::ReadPort(OmConnectionSettings& settings, bool isShown) {
    const std::optional<uint32_t> port = ParseDecimal(port_->GetValue().ToStdWstring());
    const OmSetting& range = GetSetting(OmCableType::JLinkIp, OmSettingRole::TcpPort);
    if (!port || *port > static_cast<uint32_t>(range.highest))
        return Refuse(isShown, *port_,
                      _("TCP/IP port must be in a range from 0 to 65535. The default port for "
                        "Segger J-Link TCP/IP server is 19020."));
    settings.jlinkIpPort = static_cast<int32_t>(*port);
    return true;
}

bool OmJLinkIpPage::Read(OmConnectionSettings& settings, bool isShown) {
    if (!ReadHost(settings, isShown) || !ReadPort(settings, isShown))
        return false;
    const int32_t frequency = ReadFrequency(*frequency_, OmCableType::JLinkIp);
    if (frequency < 0)
        return Refuse(isShown, *frequency_, "");
    settings.jlinkIpFrequency = frequency;
    return true;
}
