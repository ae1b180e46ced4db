// The commands that change what the program knows of the board.
#include "app/MainFrame.h"
#include "flash/FlashProgrammer.h"

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
