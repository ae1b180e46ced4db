// The commands that change what the program is connected to, or what it knows of the board.
#include "app/MainFrame.h"
#include "flash/FlashProgrammer.h"

void OmMainFrame::OnConnection(wxCommandEvent&) {}

void OmMainFrame::OnSetup(wxCommandEvent&) {
    EditSetup();
}

void OmMainFrame::EditSetup() {}

void OmMainFrame::OnNewSetup(wxCommandEvent&) {
    if (!PromptSaveSetup())
        return;
    if (!setupPath_.empty())
        recentSetups_.AddFileToHistory(setupPath_);
    OmFlashProgrammer::GetInstance().SetDesignSetup(OmDesignSetup());
    TakeSetupPath(wxString());
    EditSetup();
}
