// A user who answers every box with what changes nothing, and remembers it.
#pragma once

#include "tests/support/RecordingUserInterface.h"

#include <vector>

class SilentUser : public OmUserInterface {
  public:
    SilentUser() : previous_(SetUserInterface(this)) {}

    ~SilentUser() override { SetUserInterface(previous_); }

    SilentUser(const SilentUser&) = delete;
    SilentUser& operator=(const SilentUser&) = delete;

    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override {
        boxes.push_back({text, caption, style});
        return style.buttons == OmButtons::Ok ? OmAnswer::Ok : OmAnswer::No;
    }

    void BeginBusyCursor() override { ++busy; }

    void EndBusyCursor() override { --busy; }

    std::vector<ShownMessage> boxes;
    int busy = 0;

  private:
    OmUserInterface* previous_;
};
