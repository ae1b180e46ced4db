#include "jtag/ui/Ftd2xxPage.h"

#include "jtag/CableTable.h"
#include "jtag/FrequencyText.h"
#include "jtag/StaticPinsSchemes.h"
#include "jtag/ui/StaticPinsDlg.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>

namespace {

// Of a 60 MHz engine, and of a 12 MHz one.
const char* const kHighSpeedFrequencies[] = {
    "30 MHz",  "15 MHz",  "10 MHz", "7.5 MHz", "6 MHz",   "5 MHz",   "3.75 MHz",
    "3 MHz",   "2 MHz",   "1 MHz",  "750 KHz", "500 KHz", "300 KHz", "200 KHz",
    "150 KHz", "100 KHz", "50 KHz", "10 KHz",  "5 KHz",   "1 KHz",
};
const char* const kFullSpeedFrequencies[] = {
    "6 MHz",   "3 MHz",   "2 MHz",   "1 MHz",   "750 KHz", "600 KHz",
    "500 KHz", "400 KHz", "300 KHz", "200 KHz", "150 KHz", "100 KHz",
    "50 KHz",  "25 KHz",  "10 KHz",  "5 KHz",   "1 KHz",
};

template <size_t N>
wxArrayString ToArray(const char* const (&entries)[N]) {
    return wxArrayString(N, const_cast<const char**>(entries));
}

wxString DescribeDevice(const OmFtd2xxRecord& record) {
    return FromLocal(record.serial.empty() ? record.description
                                           : record.description + " (" + record.serial + ")");
}

// The scheme of the settings; entered into the list if another run has removed it.
int FindOrAddScheme(const OmConnectionSettings& settings) {
    OmStaticPinsSchemes& schemes = GetStaticPinsSchemes();
    const int found = FindScheme(schemes, settings.ftd2xxGpioSchemeDesc, settings.ftd2xxGpioDir,
                                 settings.ftd2xxGpioValue);
    if (found >= 0)
        return found;
    const std::wstring description = settings.ftd2xxGpioSchemeDesc.empty()
                                         ? _("(unnamed)").ToStdWstring()
                                         : settings.ftd2xxGpioSchemeDesc;
    schemes.push_back({description, settings.ftd2xxGpioDir, settings.ftd2xxGpioValue, false});
    return static_cast<int>(schemes.size()) - 1;
}

} // namespace

OmFtd2xxPage::OmFtd2xxPage(wxWindow* parent, std::function<void()> recheck) : OmCablePage(parent) {
    BeginRow(_("Device:"));
    device_ = MakeChoice();
    device_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { UpdateFrequencies(); });
    EndRow(device_, MakeButton(_("Update list"), std::move(recheck)));
    BeginRow(_("Static pins:"));
    staticPins_ = MakeChoice();
    auto* edit = MakeButton("...", [this] { EditSchemes(); });
    edit->SetToolTip(_("Define states of static pins (GPIO/DBUS/CBUS pins)"));
    EndRow(staticPins_, edit);
    BeginRow(_("TCK freq:"));
    frequency_ = MakeChoice();
    EndRow(frequency_);
    BeginRow("");
    adaptive_ = new wxCheckBox(this, wxID_ANY, _("Adaptive Clocking"));
    EndRow(adaptive_);
}

bool OmFtd2xxPage::Check(const OmConnectionSettings& settings, wxString& error) {
    OmFtd2xx cable;
    if (!cable.Load()) {
        error = _("ERROR: FTD2XX driver is not installed! Please install driver that came with "
                  "your FT2232 based hardware.");
        return false;
    }
    cable.ListDevices(records_);
    FillDevices(settings);
    FillSchemes(FindOrAddScheme(settings));
    storedFrequency_ = settings.ftd2xxFrequency;
    UpdateFrequencies();
    return true;
}

void OmFtd2xxPage::FillDevices(const OmConnectionSettings& settings) {
    wxArrayString names;
    for (const OmFtd2xxRecord& record : records_)
        names.push_back(DescribeDevice(record));
    FillChoice(*device_, names, _("press this button to refresh -->"));
    for (size_t i = 0; i < records_.size(); ++i)
        if (records_[i].description == settings.ftd2xxDescription &&
            records_[i].serial == settings.ftd2xxSerial)
            device_->SetSelection(static_cast<int>(i));
}

void OmFtd2xxPage::FillSchemes(int selected) {
    wxArrayString descriptions;
    for (const OmFtd2xxStaticPinsScheme& scheme : GetStaticPinsSchemes())
        descriptions.push_back(scheme.description);
    staticPins_->Set(descriptions);
    staticPins_->SetSelection(selected);
}

void OmFtd2xxPage::EditSchemes() {
    OmFtd2xxStaticPinsDlg dialog(this);
    dialog.schemes = GetStaticPinsSchemes();
    dialog.selected = staticPins_->GetSelection();
    if (dialog.ShowModal() != wxID_OK)
        return;
    GetStaticPinsSchemes() = dialog.schemes;
    FillSchemes(dialog.selected);
}

const OmFtd2xxRecord* OmFtd2xxPage::GetSelectedDevice() const {
    const int selected = GetSelected(*device_);
    return selected == wxNOT_FOUND ? nullptr : &records_[selected];
}

// Without a device the frequency stands alone in its list, so that it is not lost.
void OmFtd2xxPage::UpdateFrequencies() {
    wxString remembered = frequency_->GetStringSelection();
    if (remembered.empty())
        remembered = FormatFrequency(storedFrequency_);
    const OmFtd2xxRecord* device = GetSelectedDevice();
    OfferAdaptiveClocking(device && device->isHighSpeed);
    frequency_->Enable(device != nullptr);
    if (!device)
        frequency_->Set(wxArrayString(1, &remembered));
    else
        frequency_->Set(device->isHighSpeed ? ToArray(kHighSpeedFrequencies)
                                            : ToArray(kFullSpeedFrequencies));
    if (!frequency_->SetStringSelection(remembered))
        frequency_->SetSelection(0);
}

void OmFtd2xxPage::OfferAdaptiveClocking(bool offer) {
    if (adaptive_->IsThisEnabled())
        adaptiveRemembered_ = adaptive_->GetValue();
    adaptive_->Enable(offer);
    adaptive_->SetValue(offer && adaptiveRemembered_);
}

void OmFtd2xxPage::ShowSettings(const OmConnectionSettings& settings) {
    adaptive_->Enable();
    adaptive_->SetValue(settings.ftd2xxAdaptiveClocking);
}

bool OmFtd2xxPage::Read(OmConnectionSettings& settings, bool isShown) {
    return ReadStaticPins(settings, isShown) && ReadFrequency(settings, isShown) &&
           ReadAdaptiveClocking(settings) && ReadDevice(settings, isShown);
}

bool OmFtd2xxPage::ReadStaticPins(OmConnectionSettings& settings, bool isShown) {
    const int selected = staticPins_->GetSelection();
    if (selected == wxNOT_FOUND)
        return Refuse(isShown, *staticPins_,
                      _("Please define FT2232 chip's static (DBUS/CBUS/GPIO) pins states."));
    const OmFtd2xxStaticPinsScheme& scheme = GetStaticPinsSchemes()[selected];
    settings.ftd2xxGpioSchemeDesc = scheme.description;
    settings.ftd2xxGpioDir = scheme.gpioDir;
    settings.ftd2xxGpioValue = scheme.gpioValue;
    return true;
}

bool OmFtd2xxPage::ReadFrequency(OmConnectionSettings& settings, bool isShown) {
    const OmSetting& range = GetSetting(OmCableType::Ftd2xx, OmSettingRole::Frequency);
    const int32_t frequency = ParseFrequency(frequency_->GetStringSelection().ToStdWstring(),
                                             range.lowest, range.highest);
    if (frequency < 0)
        return Refuse(isShown, *frequency_, "");
    settings.ftd2xxFrequency = frequency;
    return true;
}

bool OmFtd2xxPage::ReadAdaptiveClocking(OmConnectionSettings& settings) {
    settings.ftd2xxAdaptiveClocking = adaptive_->IsThisEnabled() && adaptive_->GetValue();
    if (!settings.ftd2xxAdaptiveClocking || settings.cableType != OmCableType::Ftd2xx)
        return true;
    const wxString warning =
        _("Use Adaptive Clocking ONLY IF a target device in a JTAG chain and a JTAG adapter "
          "support this feature! Otherwise, the software will hang up with no error messages (!) "
          "upon attempt to shift data into a JTAG chain.\n\nIgnore this warning and continue?");
    adaptiveWarningAnswered_ =
        GetUserInterface().ShowMessage(warning.ToStdWstring(), _("Warning").ToStdWstring(),
                                       kLossQuestionBox) == OmAnswer::Yes;
    return adaptiveWarningAnswered_;
}

bool OmFtd2xxPage::ReadDevice(OmConnectionSettings& settings, bool isShown) {
    if (!device_->IsThisEnabled())
        return Refuse(isShown, *device_, _("There are no FTDI FT2232 devices found."));
    const OmFtd2xxRecord* device = GetSelectedDevice();
    if (!device)
        return Refuse(isShown, *device_, _("Please select a device from the list."));
    settings.ftd2xxDescription = device->description;
    settings.ftd2xxSerial = device->serial;
    return true;
}
