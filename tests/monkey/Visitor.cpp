#include "tests/monkey/Visitor.h"

#include "app/CommandIds.h"
#include "app/MainFrame.h"
#include "app/ProgressDlg.h"
#include "tests/monkey/Hands.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/weakref.h>
#include <wx/wx.h>

namespace {

constexpr int kPatience = 4;              // rounds in a dialog that refuses its input
constexpr unsigned kLongWork = 300;       // reports of progress, after which it is aborted
constexpr unsigned kDisturbanceOdds = 12; // one report of progress in so many

OmProgressDlg* FindProgress() {
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<OmProgressDlg*>(window);
        if (dialog && dialog->IsShown())
            return dialog;
    }
    return nullptr;
}

// Every button can be reached.
void ExpectToFitOnTheScreen(const wxDialog& dialog) {
    const wxSize screen = wxGetDisplaySize();
    const wxSize size = dialog.GetBestSize();
    EXPECT_LE(size.x, screen.x) << dialog.GetTitle();
    EXPECT_LE(size.y, screen.y) << dialog.GetTitle();
}

OmAnswer SomeAnswer(OmButtons buttons, Dice& dice) {
    static constexpr OmAnswer kYesNo[] = {OmAnswer::Yes, OmAnswer::Yes, OmAnswer::No};
    static constexpr OmAnswer kYesNoCancel[] = {OmAnswer::Yes, OmAnswer::No, OmAnswer::Cancel};
    switch (buttons) {
    case OmButtons::OkCancel:
        return dice.OneIn(3) ? OmAnswer::Cancel : OmAnswer::Ok;
    case OmButtons::YesNo:
        return dice.Pick(kYesNo);
    case OmButtons::YesNoCancel:
        return dice.Pick(kYesNoCancel);
    case OmButtons::Ok:
        break;
    }
    return OmAnswer::Ok;
}

} // namespace

Visitor::Visitor(Dice& dice, Journal& journal, InputFiles& files, OmUserInterface& boxes)
    : dice_(dice), journal_(journal), files_(files), boxes_(boxes),
      previousUser_(SetUserInterface(this)), previousChooser_(SetFileChooser(this)) {
    Register();
}

Visitor::~Visitor() {
    Unregister();
    SetFileChooser(previousChooser_);
    SetUserInterface(previousUser_);
}

void Visitor::ExpectOutOfReach(const std::string& what) {
    EXPECT_FALSE(mustNotCome_) << "a command has got through to a busy window: " << what;
}

OmAnswer Visitor::ShowMessage(const std::wstring& text, const std::wstring& caption,
                              OmMessageStyle style) {
    journal_.Note("    box: " + wxString(text).Left(200).ToStdString(wxConvUTF8));
    ExpectOutOfReach("a box");
    if (dice_.OneIn(10))
        return boxes_.ShowMessage(text, caption, style);
    const OmAnswer answer = SomeAnswer(style.buttons, dice_);
    journal_.Note("    answer " + std::to_string(static_cast<int>(answer)));
    return answer;
}

void Visitor::BeginBusyCursor() {
    ++busy_;
    boxes_.BeginBusyCursor();
}

void Visitor::EndBusyCursor() {
    --busy_;
    EXPECT_GE(busy_, 0);
    boxes_.EndBusyCursor();
}

wxString Visitor::Note(const std::string& what, const std::string& path) {
    ExpectOutOfReach(what);
    journal_.Note("    " + what + " " + path.substr(0, 200));
    return wxString(path);
}

wxString Visitor::ChooseToOpen(wxWindow*, const wxString& title, const wxString&) {
    if (dice_.OneIn(8))
        return Note("cancels " + title.ToStdString(), "");
    return Note("opens", title.Contains("Setup")  ? files_.PickSetupToOpen(dice_)
                         : title.Contains("BSDL") ? files_.PickBsdlToOpen(dice_)
                                                  : files_.PickDataToOpen(dice_));
}

wxString Visitor::ChooseToSave(wxWindow*, const wxString& title, const wxString&,
                               int& filterIndex) {
    filterIndex = dice_.Between(0, 2);
    if (dice_.OneIn(8))
        return Note("cancels " + title.ToStdString(), "");
    return Note("saves as " + std::to_string(filterIndex), files_.PickToSave(dice_));
}

wxString Visitor::ChooseFolder(wxWindow*, const wxString& title) {
    return Note("answers " + title.ToStdString(), files_.PickFolder(dice_));
}

void Visitor::ShowAlone(wxDialog& dialog) {
    ++alone_;
    dialog.ShowModal();
    --alone_;
}

// The toolkit asks twice about dialogs that call their base class's ShowModal.
int Visitor::Enter(wxDialog* dialog) {
    if (!entered_.insert(dialog).second)
        return wxID_NONE;
    journal_.Note("    dialog: " + dialog->GetTitle().ToStdString(wxConvUTF8));
    ExpectOutOfReach("a dialog");
    dialog->CallAfter([this, dialog] { WorkOn(*dialog); });
    return wxID_NONE;
}

void Visitor::Exit(wxDialog* dialog) {
    entered_.erase(dialog);
}

void Visitor::WorkOn(wxDialog& dialog) {
    const wxWeakRef<wxDialog> alive(&dialog);
    ExpectToFitOnTheScreen(dialog);
    for (int round = 0; round < kPatience; ++round)
        if (!WorkOnce(dialog) || !alive || !alive->IsModal())
            return;
    journal_.Note("    gives up");
    Cancel(dialog);
    RunEvents();
    if (alive && alive->IsModal()) {
        ADD_FAILURE() << "the dialog \"" << dialog.GetTitle() << "\" cannot be cancelled";
        alive->EndModal(wxID_CANCEL);
    }
}

// False when the dialog has gone.
bool Visitor::WorkOnce(wxDialog& dialog) {
    const wxWeakRef<wxDialog> alive(&dialog);
    for (unsigned deeds = dice_.Below(5); deeds > 0; --deeds) {
        const std::string deed = PlayWithSomeControl(dialog, dice_);
        if (!deed.empty())
            journal_.Note("    " + deed);
        RunEvents();
        if (!alive || !alive->IsModal())
            return false;
    }
    if (alone_ == 0 && dice_.OneIn(3))
        ReachForFrame();
    if (!alive || !alive->IsModal())
        return false;
    journal_.Note("    " + TryToEnd(dialog, dice_));
    RunEvents();
    return alive != nullptr;
}

// A command as the window manager, a queued event or a screen reader may send it.
void Visitor::ReachForFrame() {
    if (!frame_ || mustNotCome_)
        return;
    mustNotCome_ = true;
    if (dice_.OneIn(4)) {
        journal_.Note("    tries to close the window");
        frame_->Close(dice_.OneIn(2));
    } else {
        static constexpr int kCommands[] = {wxID_NEW,  wxID_OPEN,    wxID_SAVEAS,   kIdLoadData,
                                            kIdInfo,   kIdProgram,   kIdConnection, kIdRead,
                                            wxID_EXIT, kIdGoToOffset};
        wxCommandEvent command(wxEVT_MENU, dice_.Pick(kCommands));
        journal_.Note("    tries command " + std::to_string(command.GetId()));
        frame_->GetEventHandler()->ProcessEvent(command);
    }
    RunEvents();
    mustNotCome_ = false;
    EXPECT_TRUE(frame_->IsShown());
    EXPECT_FALSE(frame_->IsBeingDeleted());
}

void Visitor::WatchProgress() {
    OmProgressDlg* dialog = FindProgress();
    if (!dialog) {
        looks_ = 0;
        return;
    }
    const bool tooLong = ++looks_ > kLongWork;
    if (tooLong || dice_.OneIn(kDisturbanceOdds))
        dialog->CallAfter([this, dialog, tooLong] {
            if (tooLong)
                dialog->Close();
            else
                Disturb(*dialog);
        });
}

void Visitor::Disturb(OmProgressDlg& dialog) {
    wxWindow& abort = *dialog.FindWindow(wxID_ABORT);
    switch (dice_.Below(6)) {
    case 0:
        if (!abort.IsEnabled())
            return;
        journal_.Note("    aborts");
        return PressButton(dialog, wxID_ABORT);
    case 1:
        journal_.Note("    aborts by Escape or closing");
        return Cancel(dialog);
    case 2:
        journal_.Note("    resizes the progress");
        return dialog.SetSize(dice_.Between(1, 1500), dice_.Between(1, 1500));
    case 3:
        journal_.Note("    breaks the connection");
        return breakBoard();
    default:
        return ReachForFrame();
    }
}
