#include "tests/windows/StartUp.h"

#include "tests/windows/support/UserActions.h"

#include <cstdlib>
#include <wx/config.h>

StartUp::StartUp() : outer_(wxApp::GetInstance()), previousStore_(wxConfigBase::Set(nullptr)) {
    setenv("XDG_CONFIG_HOME", folder_.path.c_str(), 1);
}

StartUp::~StartUp() {
    Stop();
    wxConfigBase::Set(previousStore_);
}

OmMainFrame& StartUp::Start(std::vector<std::string> arguments) {
    StartOnly(std::move(arguments));
    return *frame_;
}

void StartUp::StartOnly(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "velflash");
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    app_ = std::make_unique<OmApp>();
    app_->argv.Init(static_cast<int>(pointers.size()), pointers.data());
    app_->argc = static_cast<int>(pointers.size());
    if (duringStart_)
        app_->CallAfter(duringStart_);
    EXPECT_TRUE(app_->OnInit());
    frame_ = dynamic_cast<OmMainFrame*>(app_->GetTopWindow());
}

void StartUp::Stop() {
    if (!app_)
        return;
    delete frame_;
    app_->OnExit();
    app_.reset();
    wxApp::SetInstance(outer_);
    SettleEvents();
}
