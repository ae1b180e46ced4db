// The application object: settles what holds for the whole process, reads the command line, opens
// the main window and loads the files the user named.
#pragma once

#include "app/CommandLine.h"
#include "widgets/Help.h"
#include "widgets/WxUserInterface.h"

#include <memory>
#include <wx/app.h>

class OmMainFrame;

// How Windows' toolbar bitmaps are mapped to the system's colours: not at all (0) where that would
// spoil them, otherwise by the toolkit's own rule for bitmaps of 32 bits (2).
int ChooseBitmapRemapping(int commonControlsVersion, int displayDepth);

class OmApp : public wxApp {
  public:
    ~OmApp() override;

    bool OnInit() override;
    int OnExit() override;

    // Null before OnInit.
    OmHelpViewer* GetHelpController() { return helpController_.get(); }

  private:
    void SetProcessOptions();
    void ReadCommandLine();
    OmMainFrame* OpenMainWindow();
    void LoadNamedFiles(OmMainFrame& window);

    std::unique_ptr<OmHelpViewer> helpController_;
    OmCommandLine commandLine_;
    WxUserInterface userInterface_;
};
