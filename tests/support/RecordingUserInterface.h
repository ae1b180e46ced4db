// A user who answers message boxes from a list. A box that nobody expected fails the test and is
// answered with what changes nothing.
#pragma once

#include "platform/UserInterface.h"

#include <deque>
#include <ostream>
#include <string>
#include <vector>

struct ShownMessage {
    std::wstring text;
    std::wstring caption;
    OmMessageStyle style;

    bool operator==(const ShownMessage&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ShownMessage& message);

class RecordingUserInterface : public OmUserInterface {
  public:
    RecordingUserInterface();           // installs itself
    ~RecordingUserInterface() override; // fails the test if an expected box did not come
    RecordingUserInterface(const RecordingUserInterface&) = delete;
    RecordingUserInterface& operator=(const RecordingUserInterface&) = delete;

    // The next box, in order, must be exactly this one, and is answered with `answer`.
    void Expect(const std::wstring& text, OmMessageStyle style, OmAnswer answer = OmAnswer::Ok,
                const std::wstring& caption = kProductName);

    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override;
    void BeginBusyCursor() override;
    void EndBusyCursor() override;

    std::vector<ShownMessage> shown; // every box so far
    int busyDepth = 0;
    int busyCount = 0; // how often a busy cursor began

  private:
    struct Expected {
        ShownMessage message;
        OmAnswer answer;
    };

    std::deque<Expected> expected_;
    OmUserInterface* previous_;
};
