// The commands that change what the program knows of the board.
#include "app/MainFrame.h"
#include "dialogs/DesignSetupDlg.h"
#include "flash/FlashProgrammer.h"

void OmMainFrame::OnSetup(wxCommandEvent&) {
    EditSetup();
}

// The program keeps what it knows of the chain and the flash unless the setup has changed.
void OmMainFrame::EditSetup() {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmDesignSetupDlg dialog(this);
    dialog.setup = programmer.setup;
    if (dialog.ShowModal() != wxID_OK || dialog.setup == programmer.setup)
        return;
    programmer.SetDesignSetup(dialog.setup);
    MarkSetupModified();
}

void OmMainFrame::OnNewSetup(wxCommandEvent&) {
    if (!PromptSaveSetup())
        return;
    if (!setupPath_.empty())
        recentSetups_.AddFileToHistory(setupPath_);
    OmFlashProgrammer::GetInstance().SetDesignSetup(OmDesignSetup());
    TakeSetupPath(wxString());
    EditSetup();
}
