// How commands reach their handlers, and the commands that touch neither files nor flash.
#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "app/MainFrame.h"
#include "app/ScopedFlag.h"
#include "dialogs/AboutDlg.h"
#include "platform/UserInterface.h"
#include "platform/Version.h"
#include "widgets/Help.h"
#include "widgets/Product.h"

#include <wx/intl.h>
#include <wx/utils.h>

void OmMainFrame::BindCommand(int id, Handler handler) {
    Bind(
        wxEVT_MENU, [this, handler](wxCommandEvent& event) { RunCommand(handler, event); }, id);
}

void OmMainFrame::BindCommands() {
    static const struct {
        int id;
        Handler handler;
    } kCommands[] = {
        {wxID_NEW, &OmMainFrame::OnNewSetup},
        {wxID_OPEN, &OmMainFrame::OnLoadSetup},
        {wxID_SAVE, &OmMainFrame::OnSaveSetup},
        {wxID_SAVEAS, &OmMainFrame::OnSaveSetupAs},
        {kIdLoadData, &OmMainFrame::OnLoadData},
        {kIdSaveDataAs, &OmMainFrame::OnSaveDataAs},
        {kIdGoToOffset, &OmMainFrame::OnGoToOffset},
        {kIdConnection, &OmMainFrame::OnConnection},
        {kIdSetup, &OmMainFrame::OnSetup},
        {kIdInfo, &OmMainFrame::OnInfo},
        {kIdRead, &OmMainFrame::OnRead},
        {kIdErase, &OmMainFrame::OnErase},
        {kIdBlankCheck, &OmMainFrame::OnBlankCheck},
        {kIdProgram, &OmMainFrame::OnProgram},
        {kIdVerify, &OmMainFrame::OnVerify},
        {kIdLockSectors, &OmMainFrame::OnLockSectors},
        {kIdUnlockSectors, &OmMainFrame::OnUnlockSectors},
        {kIdJtagReset, &OmMainFrame::OnJtagReset},
        {wxID_HELP, &OmMainFrame::OnHelp},
        {kIdWebsite, &OmMainFrame::OnWebsite},
        {wxID_ABOUT, &OmMainFrame::OnAbout},
    };

    for (const auto& [id, handler] : kCommands)
        BindCommand(id, handler);
    for (int id = kIdFirstRecentSetup; id <= kIdLastRecentSetup; ++id)
        BindCommand(id, &OmMainFrame::OnRecentSetup);
    for (int id = kIdFirstRecentData; id <= kIdLastRecentData; ++id)
        BindCommand(id, &OmMainFrame::OnRecentData);
    // Closing the window has a guard of its own.
    Bind(wxEVT_MENU, &OmMainFrame::OnExit, this, wxID_EXIT);
    Bind(wxEVT_CLOSE_WINDOW, &OmMainFrame::OnCloseWindow, this);
    Bind(wxEVT_ACTIVATE, &OmMainFrame::OnActivateWindow, this);
    BindEnableRules();
}

// Commands that miss a setup or a flash are not disabled: they say what is missing when chosen.
void OmMainFrame::BindEnableRules() {
    const auto enableWhen = [this](int id, auto condition) {
        Bind(
            wxEVT_UPDATE_UI, [condition](wxUpdateUIEvent& event) { event.Enable(condition()); },
            id);
    };
    const auto dataPresent = [this] { return !dataImage_.IsEmpty(); };
    enableWhen(kIdSaveDataAs, dataPresent);
    enableWhen(kIdGoToOffset, dataPresent);
    enableWhen(kIdRecentSetups, [this] { return recentSetups_.GetCount() > 0; });
    enableWhen(kIdRecentData, [this] { return recentDataFiles_.GetCount() > 0; });
}

// Events that are queued, or that come from the window manager, reach this window even while a
// dialog or a flash operation of another command is up.
void OmMainFrame::RunCommand(Handler handler, wxCommandEvent& event) {
    if (commandRunning_)
        return;
    const ScopedFlag guard(commandRunning_);
    (this->*handler)(event);
}

void OmMainFrame::OnCloseWindow(wxCloseEvent& event) {
    if (!commandRunning_) {
        const ScopedFlag guard(commandRunning_);
        if (PromptSaveSetup() && PromptSaveData())
            return event.Skip();
    }
    if (event.CanVeto())
        event.Veto();
}

void OmMainFrame::OnActivateWindow(wxActivateEvent& event) {
    if (event.GetActive())
        hexView_->SetFocus();
    event.Skip();
}

void OmMainFrame::OnExit(wxCommandEvent&) {
    Close(true);
}

void OmMainFrame::OnHelp(wxCommandEvent&) {
    ShowHelpTopic("welcome.htm");
}

void OmMainFrame::OnWebsite(wxCommandEvent&) {
    wxLaunchDefaultBrowser(kWebsiteUrl);
}

void OmMainFrame::OnAbout(wxCommandEvent&) {
    OmAboutDlg dialog(this);
    dialog.SetTitle(_("About Velmora Flash Programmer"));
    dialog.SetTexts(kProductName, kVersionText, Translated(kRightsText));
    dialog.ShowModal();
}
