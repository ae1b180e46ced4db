#include "tests/support/RecordingUserInterface.h"

#include "platform/Text.h"

#include <gtest/gtest.h>

std::ostream& operator<<(std::ostream& stream, const ShownMessage& message) {
    return stream << "[" << ToLocal(message.caption) << "] \"" << ToLocal(message.text)
                  << "\" buttons " << static_cast<int>(message.style.buttons) << " icon "
                  << static_cast<int>(message.style.icon)
                  << (message.style.noIsDefault ? " default No" : "");
}

RecordingUserInterface::RecordingUserInterface() : previous_(SetUserInterface(this)) {}

RecordingUserInterface::~RecordingUserInterface() {
    SetUserInterface(previous_);
    for (const Expected& missing : expected_)
        ADD_FAILURE() << "expected box did not come: " << missing.message;
    EXPECT_EQ(busyDepth, 0) << "busy cursors are not paired";
}

void RecordingUserInterface::Expect(const std::wstring& text, OmMessageStyle style, OmAnswer answer,
                                    const std::wstring& caption) {
    expected_.push_back({{text, caption, style}, answer});
}

OmAnswer RecordingUserInterface::ShowMessage(const std::wstring& text, const std::wstring& caption,
                                             OmMessageStyle style) {
    shown.push_back({text, caption, style});
    if (expected_.empty()) {
        ADD_FAILURE() << "unexpected box: " << shown.back();
        const bool canCancel =
            style.buttons == OmButtons::OkCancel || style.buttons == OmButtons::YesNoCancel;
        return style.buttons == OmButtons::Ok ? OmAnswer::Ok
               : canCancel                    ? OmAnswer::Cancel
                                              : OmAnswer::No;
    }
    const Expected next = expected_.front();
    expected_.pop_front();
    EXPECT_EQ(shown.back(), next.message);
    return next.answer;
}

void RecordingUserInterface::BeginBusyCursor() {
    ++busyDepth;
    ++busyCount;
}

void RecordingUserInterface::EndBusyCursor() {
    --busyDepth;
    EXPECT_GE(busyDepth, 0) << "a busy cursor ended that had not begun";
}
