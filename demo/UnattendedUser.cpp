#include "demo/UnattendedUser.h"

#include "app/ProgressDlg.h"
#include "demo/Screenshot.h"

#include <utility>
#include <wx/button.h>
#include <wx/toplevel.h>
#include <wx/uiaction.h>

namespace {

constexpr int kTickMilliseconds = 100;
constexpr int kTicksUntilProgressMoves = 6;
constexpr int kTicksUntilBoxIsRead = 4;

OmProgressDlg* FindProgressDialog() {
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<OmProgressDlg*>(window);
        if (dialog && dialog->IsShown())
            return dialog;
    }
    return nullptr;
}

void PressOk(wxDialog& dialog) {
    wxCommandEvent press(wxEVT_BUTTON, wxID_OK);
    press.SetEventObject(dialog.FindWindow(wxID_OK));
    dialog.ProcessWindowEvent(press);
}

} // namespace

UnattendedUser::UnattendedUser(const wxString& folder)
    : folder_(folder), window_(&GetUserInterface()) {
    SetUserInterface(this);
    wxModalDialogHook::Register();
    Start(kTickMilliseconds);
}

UnattendedUser::~UnattendedUser() {
    Stop();
    wxModalDialogHook::Unregister();
    SetUserInterface(window_);
}

void UnattendedUser::Prepare(const wxString& title, const wxString& picture,
                             std::function<void(wxDialog&)> fill) {
    plans_[title] = {picture, std::move(fill)};
}

bool UnattendedUser::TakePicture(const wxString& name) {
    const bool taken = TakeScreenshot(folder_ + "/" + name + ".png");
    allPicturesTaken = allPicturesTaken && taken;
    return taken;
}

OmAnswer UnattendedUser::ShowMessage(const std::wstring& text, const std::wstring& caption,
                                     OmMessageStyle style) {
    if (style.buttons != OmButtons::Ok)
        return OmAnswer::No;
    lastMessage = text;
    ticksWithBox_ = 0;
    const OmAnswer answer = window_->ShowMessage(text, caption, style);
    ticksWithBox_ = -1;
    return answer;
}

// Called when a dialog is about to be shown; message boxes are worked on by the timer.
int UnattendedUser::Enter(wxDialog* dialog) {
    if (plans_.contains(dialog->GetTitle()))
        dialog->CallAfter([this, dialog] { WorkOn(*dialog); });
    return wxID_NONE;
}

void UnattendedUser::WorkOn(wxDialog& dialog) {
    const Plan& plan = plans_[dialog.GetTitle()];
    if (plan.fill)
        plan.fill(dialog);
    TakePicture(plan.picture);
    PressOk(dialog);
}

void UnattendedUser::Notify() {
    if (ticksWithBox_ >= 0)
        CloseBox();
    else
        LookAtProgress();
}

void UnattendedUser::CloseBox() {
    if (++ticksWithBox_ < kTicksUntilBoxIsRead)
        return;
    if (!boxPicture_.empty())
        TakePicture(std::exchange(boxPicture_, {}));
    ticksWithBox_ = 0; // the key may come before the box has the focus: press again later
    wxUIActionSimulator().Char(WXK_RETURN);
}

void UnattendedUser::LookAtProgress() {
    if (progressPicture_.empty() || !FindProgressDialog())
        ticksWithProgress_ = 0;
    else if (++ticksWithProgress_ >= kTicksUntilProgressMoves)
        TakePicture(std::exchange(progressPicture_, {}));
}
