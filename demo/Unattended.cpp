// The demo without a user: the real program with its main window, in which an unattended user
// programs and verifies the loaded data and reads it back.
//   velflash-demo SETUP_FILE DATA_FILE PICTURE_FOLDER
// The status is 0 only if everything came out as it should.
#include "app/App.h"
#include "app/CommandIds.h"
#include "app/MainFrame.h"
#include "demo/UnattendedUser.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <span>
#include <wx/dialog.h>
#include <wx/textctrl.h>

namespace {

constexpr wchar_t kProgrammed[] = L"Program operation completed and succesfully verified.";

bool Contains(const OmDataImage& whole, const OmDataChunk& part) {
    for (const OmDataChunk& chunk : whole.GetChunks()) {
        if (part.address < chunk.address || part.End() > chunk.End())
            continue;
        return std::equal(part.bytes.begin(), part.bytes.end(),
                          chunk.bytes.begin() + (part.address - chunk.address));
    }
    return false;
}

class DemoApp : public OmApp {
  public:
    bool OnInit() override {
        if (!OmApp::OnInit() || argc < 4)
            return false;
        user_ = std::make_unique<UnattendedUser>(argv[3]);
        CallAfter([this] { Run(); });
        return true;
    }

    int OnRun() override {
        OmApp::OnRun();
        return succeeded_ ? 0 : 1;
    }

    int OnExit() override {
        user_.reset();
        return OmApp::OnExit();
    }

  private:
    OmMainFrame& Frame() { return dynamic_cast<OmMainFrame&>(*GetTopWindow()); }

    void Choose(int commandId) {
        wxCommandEvent command(wxEVT_MENU, commandId);
        command.SetEventObject(&Frame());
        Frame().ProcessWindowEvent(command);
    }

    void Run() {
        loaded_ = Frame().GetDataImage();
        user_->TakePicture("1-main-window");
        succeeded_ = !loaded_.IsEmpty() && Program() && ReadBack() && user_->allPicturesTaken;
        Frame().Close(true);
    }

    bool Program() {
        user_->Prepare(_("Program"), "2-program");
        user_->PictureProgressAs("3-progress");
        user_->PictureBoxAs("4-result");
        Choose(kIdProgram);
        return Expect(user_->lastMessage == kProgrammed,
                      "the data was not programmed and verified");
    }

    bool ReadBack() {
        user_->lastMessage.clear();
        user_->Prepare(_("Read"), "5-read", [this](wxDialog& dialog) { FillReadDialog(dialog); });
        user_->PictureProgressAs("6-read-progress");
        Choose(kIdRead);
        user_->TakePicture("7-read-back");
        const OmDataImage& read = Frame().GetDataImage();
        bool same = !read.IsEmpty();
        for (const OmDataChunk& chunk : loaded_.GetChunks())
            same = same && Contains(read, chunk);
        return Expect(same, "what was read back differs from what was programmed");
    }

    // The boxes stand in reading order: start, then size.
    void FillReadDialog(wxDialog& dialog) {
        const unsigned long long size = uint64_t{loaded_.GetHighestAddress()} + 1;
        const wxString texts[] = {"0", wxString::Format("%llu", size)};
        size_t next = 0;
        FillTextBoxes(dialog, texts, next);
    }

    void FillTextBoxes(wxWindow& parent, std::span<const wxString> texts, size_t& next) {
        for (wxWindow* child : parent.GetChildren()) {
            auto* box = dynamic_cast<wxTextCtrl*>(child);
            if (box && next < texts.size())
                box->SetValue(texts[next++]);
            FillTextBoxes(*child, texts, next);
        }
    }

    bool Expect(bool condition, const char* failure) {
        if (!condition)
            std::fprintf(stderr, "demo: %s; last message: %ls\n", failure,
                         user_->lastMessage.c_str());
        return condition;
    }

    std::unique_ptr<UnattendedUser> user_;
    OmDataImage loaded_;
    bool succeeded_ = false;
};

} // namespace

wxIMPLEMENT_APP(DemoApp);
