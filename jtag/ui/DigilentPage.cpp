#include "jtag/ui/DigilentPage.h"

#include "jtag/DigilentAdept.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <wx/button.h>
#include <wx/choice.h>

namespace {

constexpr wchar_t kAdeptUrl[] = L"https://digilent.com";

} // namespace

OmDigilentPage::OmDigilentPage(wxWindow* parent, std::function<void()> recheck)
    : OmCablePage(parent), recheck_(std::move(recheck)) {
    BeginRow(_("Device:"));
    device_ = MakeChoice();
    auto* configure = MakeButton("...", [this] { Configure(); });
    configure->SetToolTip(_("Configure Digilent communication modules"));
    EndRow(device_, configure);
}

bool OmDigilentPage::Check(const OmConnectionSettings& settings, wxString& error) {
    OmDigilentAdept adept;
    if (!adept.Load()) {
        error =
            wxString::Format(_("ERROR: Digilent Adept Suite software is not installed! Visit %s "
                               "to download."),
                             kAdeptUrl);
        return false;
    }
    wxArrayString names;
    for (int device = 0; device < adept.GetDeviceCount(); ++device) {
        std::string name;
        if (adept.GetDeviceName(device, name))
            names.push_back(FromLocal(name));
    }
    FillChoice(*device_, names, _("press this button to add -->"));
    if (!names.empty())
        device_->SetStringSelection(FromLocal(settings.digilentId));
    return true;
}

bool OmDigilentPage::Read(OmConnectionSettings& settings, bool isShown) {
    if (!device_->IsThisEnabled())
        return Refuse(isShown, *device_,
                      _("Please configure and select a Digilent communication module"));
    const wxString name = device_->GetStringSelection();
    if (!name.empty())
        settings.digilentId = ToLocal(name.ToStdWstring());
    return true;
}

void OmDigilentPage::Configure() {
    OmDigilentAdept adept;
    if (adept.Load() && !OpenVendorWindow(adept))
        return;
    recheck_();
}

bool OmDigilentPage::OpenVendorWindow(OmDigilentAdept& adept) {
    if (!adept.CanConfigureDevices()) {
        ShowMessage(Translated("This version of the Digilent Adept software has no window for "
                               "configuring devices: it finds by itself what is plugged in."),
                    kInformationBox);
        return true;
    }
    const int32_t error = adept.ConfigureDevices(wxGetTopLevelParent(this)->GetHandle());
    if (error == 0)
        return true;
    ShowMessage(
        TranslatedFormat("Unexpected error %d: %ls %d", error, L"CableSettingsPanel", __LINE__),
        kErrorBox);
    return false;
}
