// The real main window under a window manager, and pictures of what comes up over it.
#pragma once

#include "tests/dialogs/DialogActions.h"
#include "tests/windows/MainWindow.h"

#include <string>

class ScreensTest : public MainWindowTest {
  protected:
    ScreensTest();

    // Shows the dialog, lets the user take `step`, which takes the pictures, and cancels it.
    void Show(wxDialog& dialog, const ModalSteps::Step& step);

    // Writes <name>.png with the window and its title bar, into the folder that the environment
    // variable OM_SCREENSHOTS names or else where it is forgotten; fails the test if it could not
    // be made or shows nothing.
    void Picture(wxWindow& window, const std::string& name);
};
