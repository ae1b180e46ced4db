// BSDL files on disk, a settings store of its own, and a text editor that only notes what it was
// asked to open.
#pragma once

#include "jtag/BitVector.h"
#include "tests/bsdl/BsdlSource.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/RecordingFileChooser.h"

#include <gtest/gtest.h>
#include <wx/config.h>
#include <wx/wx.h>

class BsdlDialogTest : public testing::Test {
  protected:
    BsdlDialogTest();
    ~BsdlDialogTest() override;

    wxString Write(const std::string& name, const std::string& text) const {
        return folder_.Write(name, text);
    }

    // The IDCODE, version 1, that matching_ and anyVersion_ match; otherVersion_ differs in
    // the version alone and other_ altogether.
    static OmBitVector Idcode();

    // What the editor was asked to open; waits for it.
    std::string GetViewedFile() const;

    TemporaryFolder folder_;
    RecordingUserInterface boxes_;
    RecordingFileChooser files_;
    ModalSteps user_;

    const wxString matching_;
    const wxString anyVersion_;
    const wxString otherVersion_;
    const wxString other_;
    const wxString broken_; // does not parse

  private:
    wxConfigBase* previousStore_;
    std::string previousPath_;
};

// Expects the box with the parser's details and closes it.
void ExpectParserErrors(ModalSteps& user);
