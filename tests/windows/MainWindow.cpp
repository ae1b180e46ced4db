#include "tests/windows/MainWindow.h"

#include "app/CommandIds.h"
#include "flash/FlashProgrammer.h"

#include <wx/aui/auibar.h>
#include <wx/fileconf.h>
#include <wx/filename.h>

OmDesignSetup MakeSmallestSetup() {
    OmDesignSetup setup;
    setup.SetChainDevices(std::vector<OmBitVector>(1), OmBitVector());
    return setup;
}

MainWindowTest::MainWindowTest() {
    auto* store = new wxFileConfig("test", "test", folder_.Path("settings"), wxString(),
                                   wxCONFIG_USE_LOCAL_FILE);
    store->SetExpandEnvVars(false);
    previousStore_ = wxConfigBase::Set(store);
    OmFlashProgrammer::GetInstance().SetDesignSetup(OmDesignSetup());
    OpenWindow();
}

MainWindowTest::~MainWindowTest() {
    CloseWindow();
    delete wxConfigBase::Set(previousStore_);
}

void MainWindowTest::OpenWindow() {
    frame_ = new OmMainFrame("Velmora Flash Programmer", wxPoint(20, 30), wxSize(800, 600), help_);
    frame_->Show();
    SettleEvents();
}

void MainWindowTest::CloseWindow() {
    delete frame_;
    frame_ = nullptr;
    SettleEvents();
}

void MainWindowTest::ReadFromFlash(uint32_t address, const std::vector<uint8_t>& bytes) {
    frame_->BeginFlashData().SetBytes(address, bytes);
    frame_->ShowFlashData();
}

std::vector<std::string> MainWindowTest::GetRecentFiles(int submenuId) const {
    std::vector<std::string> names;
    const wxMenu& menu = *frame_->GetMenuBar()->FindItem(submenuId)->GetSubMenu();
    for (const wxMenuItem* item : menu.GetMenuItems())
        names.push_back(
            wxFileName(item->GetItemLabelText().AfterFirst(' ')).GetFullName().ToStdString());
    return names;
}

wxString MainWindowTest::GetCaption() const {
    return FindByClass<wxStaticText>(*frame_)->GetLabel();
}

wxAuiToolBar& MainWindowTest::GetToolBar(unsigned index) const {
    return *FindByClass<wxAuiToolBar>(*frame_, index);
}
