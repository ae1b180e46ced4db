// A user who answers file dialogs from a list. A dialog that nobody expected fails the test and is
// cancelled.
#pragma once

#include "widgets/FileChooser.h"

#include <deque>

class RecordingFileChooser : public OmFileChooser {
  public:
    RecordingFileChooser();           // installs itself
    ~RecordingFileChooser() override; // fails the test if an expected dialog did not come
    RecordingFileChooser(const RecordingFileChooser&) = delete;
    RecordingFileChooser& operator=(const RecordingFileChooser&) = delete;

    // The next dialog, in order; an empty answer cancels it.
    void ExpectOpen(const wxString& title, const wxString& filter, const wxString& answer);
    void ExpectSave(const wxString& title, const wxString& filter, const wxString& answer,
                    int filterIndex = 0);
    void ExpectFolder(const wxString& title, const wxString& answer);

    wxString ChooseToOpen(wxWindow* parent, const wxString& title, const wxString& filter) override;
    wxString ChooseToSave(wxWindow* parent, const wxString& title, const wxString& filter,
                          int& filterIndex) override;
    wxString ChooseFolder(wxWindow* parent, const wxString& title) override;

  private:
    struct Expected {
        const char* kind;
        wxString title;
        wxString filter;
        wxString answer;
        int filterIndex;
    };

    wxString Answer(const char* kind, const wxString& title, const wxString& filter,
                    int* filterIndex);

    std::deque<Expected> expected_;
    OmFileChooser* previous_;
};
