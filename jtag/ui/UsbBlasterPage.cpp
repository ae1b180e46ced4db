#include "jtag/ui/UsbBlasterPage.h"

#include "platform/Text.h"

#include <wx/button.h>
#include <wx/choice.h>

namespace {

wxString DescribeDevice(const OmUsbBlasterRecord& record) {
    return FromLocal(record.description + " (" + record.serial + ")");
}

} // namespace

OmUsbBlasterPage::OmUsbBlasterPage(wxWindow* parent, std::function<void()> recheck)
    : OmCablePage(parent) {
    BeginRow(_("Device:"));
    device_ = MakeChoice();
    EndRow(device_, MakeButton(_("Update list"), std::move(recheck)));
}

bool OmUsbBlasterPage::Check(const OmConnectionSettings& settings, wxString& error) {
    OmUsbBlaster blaster;
    if (!blaster.Load()) {
        error = _("ERROR: Altera USB-Blaster driver is not installed!");
        return false;
    }
    blaster.ListDevices(records_);
    wxArrayString names;
    for (const OmUsbBlasterRecord& record : records_)
        names.push_back(DescribeDevice(record));
    FillChoice(*device_, names, _("press this button to refresh -->"));
    if (records_.size() == 1)
        device_->SetSelection(0);
    for (size_t i = 0; i < records_.size(); ++i)
        if (records_[i].description == settings.usbBlasterDescription &&
            records_[i].serial == settings.usbBlasterSerial)
            device_->SetSelection(static_cast<int>(i));
    return true;
}

bool OmUsbBlasterPage::Read(OmConnectionSettings& settings, bool isShown) {
    if (!device_->IsThisEnabled())
        return Refuse(isShown, *device_, _("There are no Altera USB-Blaster cables found."));
    const int selected = GetSelected(*device_);
    if (selected == wxNOT_FOUND)
        return Refuse(isShown, *device_, _("Please select a cable."));
    settings.usbBlasterDescription = records_[selected].description;
    settings.usbBlasterSerial = records_[selected].serial;
    return true;
}
