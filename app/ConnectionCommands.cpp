// The commands for what the program is connected to.
#include "app/MainFrame.h"
#include "flash/FlashProgrammer.h"
#include "jtag/ui/CableSettingsDlg.h"

// The cable is opened anew even if nothing changed: the user may have plugged it in meanwhile.
void OmMainFrame::OnConnection(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmCableSettingsDlg dialog(this);
    dialog.settings = programmer.settings;
    if (dialog.ShowModal() != wxID_OK)
        return;
    programmer.settings = dialog.settings;
    if (dialog.adaptiveWarningAnswered)
        programmer.adaptiveWarningAnswered = true;
    programmer.CloseCable();
    programmer.OpenCable();
}

void OmMainFrame::OnJtagReset(wxCommandEvent&) {
    OmFlashProgrammer::GetInstance().JtagReset();
}
