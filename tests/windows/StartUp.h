// An application started inside the tests' own, which comes back at the end. Its settings are those
// of a folder of the test's.
#pragma once

#include "app/App.h"
#include "app/MainFrame.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

class wxConfigBase;

inline constexpr char kSettingsFile[] = "Velmora Flash Programmer.conf";

class StartUp : public testing::Test {
  protected:
    StartUp();
    ~StartUp() override; // stops what still runs

    OmMainFrame& Start(std::vector<std::string> arguments);
    // The same for a window that may be closed meanwhile: frame_ is null then.
    void StartOnly(std::vector<std::string> arguments);
    // Ends the run as closing the window does.
    void Stop();

    wxAppConsole* outer_;
    TemporaryFolder folder_;
    wxConfigBase* previousStore_;
    std::unique_ptr<OmApp> app_;
    OmMainFrame* frame_ = nullptr;
    std::function<void()> duringStart_; // taken up by the first look at pending events
};
