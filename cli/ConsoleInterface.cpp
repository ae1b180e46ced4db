#include "cli/ConsoleInterface.h"

#include "platform/Text.h"

namespace {

struct Answers {
    OmAnswer consent;
    OmAnswer refusal;
};

Answers GetAnswers(OmButtons buttons) {
    switch (buttons) {
    case OmButtons::Ok:
        return {OmAnswer::Ok, OmAnswer::Ok};
    case OmButtons::OkCancel:
        return {OmAnswer::Ok, OmAnswer::Cancel};
    case OmButtons::YesNo:
        return {OmAnswer::Yes, OmAnswer::No};
    case OmButtons::YesNoCancel:
        break;
    }
    return {OmAnswer::Yes, OmAnswer::Cancel};
}

} // namespace

OmAnswer OmConsoleInterface::ShowMessage(const std::wstring& text, const std::wstring& caption,
                                         OmMessageStyle style) {
    const bool isQuestion = style.buttons != OmButtons::Ok;
    if (quiet_ && !isQuestion && style.icon == OmIcon::Information)
        return OmAnswer::Ok;
    // The product's own name would stand before nearly every line and tell nothing.
    if (caption != kProductName)
        std::fprintf(stream_, "%s: ", ToLocal(caption).c_str());
    std::fprintf(stream_, "%s\n", ToLocal(text).c_str());
    if (isQuestion)
        std::fputs(yes_ ? "Answered Yes.\n" : "Answered No. The option --yes answers Yes.\n",
                   stream_);
    std::fflush(stream_);
    const Answers answers = GetAnswers(style.buttons);
    return yes_ ? answers.consent : answers.refusal;
}

void OmConsoleInterface::ShowFailure(const std::wstring& text, const std::wstring& details) {
    ShowMessage(details.empty() ? text : text + L"\n" + details, kProductName, kErrorBox);
}

void OmConsoleLog::Write(const std::wstring& text) {
    std::fputs(ToLocal(text).c_str(), stream_);
    std::fflush(stream_);
}
