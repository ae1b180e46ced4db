// The setup dialog over a chain whose pins can be told apart, worked with as a user does.
#pragma once

#include "dialogs/DesignSetupDlg.h"
#include "dialogs/PinListCtrl.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/setup/PinDevice.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/notebook.h>
#include <wx/wx.h>

enum SetupPage { kChainPage, kFlashArrayPage, kSignalPinsPage, kStaticPinsPage };

class DesignSetupTest : public testing::Test {
  protected:
    using Step = std::function<void(OmDesignSetupDlg&)>;

    // Shows the dialog for setup_ and takes `step`, which is to leave it closed; setup_ is then
    // what the dialog made of it. Answers the button.
    int Show(const Step& step);

    // The same for a step that only looks: the dialog is cancelled.
    void Look(const Step& step);

    // The same for a step behind which OK is pressed.
    int Edit(const Step& step);

    static wxNotebook& Notebook(wxWindow& dialog);
    static void OpenPage(wxWindow& dialog, SetupPage page);
    static OmPinListCtrl& PinList(wxWindow& dialog); // of the page that is open

    static wxWindow& Page(wxWindow& dialog); // that is open

    // A line of the page with a message: 0 what was typed, 1 the error, 2 the rows in conflict.
    static std::string Line(wxWindow& dialog, unsigned index);

    // The columns of a row, joined by "|".
    static std::string RowText(wxWindow& dialog, int row);

    // Sends a key to the control that has the focus, as the host does before anything else.
    static void Key(wxWindow& focus, int key, int modifiers = wxMOD_NONE);

    OmDesignSetup setup_ = MakePinSetup();
    RecordingUserInterface boxes_;
    ModalSteps user_;
};
