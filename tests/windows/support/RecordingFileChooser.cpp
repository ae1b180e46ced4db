#include "tests/windows/support/RecordingFileChooser.h"

#include <gtest/gtest.h>

namespace {

constexpr char kOpen[] = "open";
constexpr char kSave[] = "save";
constexpr char kFolder[] = "folder";

} // namespace

RecordingFileChooser::RecordingFileChooser() : previous_(SetFileChooser(this)) {}

RecordingFileChooser::~RecordingFileChooser() {
    SetFileChooser(previous_);
    for (const Expected& missing : expected_)
        ADD_FAILURE() << "expected file dialog did not come: " << missing.title.ToStdString();
}

void RecordingFileChooser::ExpectOpen(const wxString& title, const wxString& filter,
                                      const wxString& answer) {
    expected_.push_back({kOpen, title, filter, answer, 0});
}

void RecordingFileChooser::ExpectSave(const wxString& title, const wxString& filter,
                                      const wxString& answer, int filterIndex) {
    expected_.push_back({kSave, title, filter, answer, filterIndex});
}

void RecordingFileChooser::ExpectFolder(const wxString& title, const wxString& answer) {
    expected_.push_back({kFolder, title, wxString(), answer, 0});
}

wxString RecordingFileChooser::ChooseToOpen(wxWindow*, const wxString& title,
                                            const wxString& filter) {
    return Answer(kOpen, title, filter, nullptr);
}

wxString RecordingFileChooser::ChooseToSave(wxWindow*, const wxString& title,
                                            const wxString& filter, int& filterIndex) {
    return Answer(kSave, title, filter, &filterIndex);
}

wxString RecordingFileChooser::ChooseFolder(wxWindow*, const wxString& title) {
    return Answer(kFolder, title, wxString(), nullptr);
}

wxString RecordingFileChooser::Answer(const char* kind, const wxString& title,
                                      const wxString& filter, int* filterIndex) {
    if (expected_.empty()) {
        ADD_FAILURE() << "unexpected file dialog \"" << title.ToStdString() << "\"";
        return {};
    }
    const Expected next = expected_.front();
    expected_.pop_front();
    EXPECT_STREQ(next.kind, kind);
    EXPECT_EQ(next.title, title);
    EXPECT_EQ(next.filter, filter);
    if (filterIndex)
        *filterIndex = next.filterIndex;
    return next.answer;
}
