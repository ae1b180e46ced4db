// The commands that reach the flash, and Go to Offset.
#include "app/MainFrame.h"

void OmMainFrame::OnInfo(wxCommandEvent&) {}

void OmMainFrame::OnRead(wxCommandEvent&) {}

void OmMainFrame::OnErase(wxCommandEvent&) {}

void OmMainFrame::OnBlankCheck(wxCommandEvent&) {}

void OmMainFrame::OnProgram(wxCommandEvent&) {}

void OmMainFrame::OnVerify(wxCommandEvent&) {}

void OmMainFrame::OnLockSectors(wxCommandEvent&) {}

void OmMainFrame::OnUnlockSectors(wxCommandEvent&) {}

void OmMainFrame::OnGoToOffset(wxCommandEvent&) {}
