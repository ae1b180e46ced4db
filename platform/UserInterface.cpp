#include "platform/UserInterface.h"

#include "platform/Text.h"

#include <cstdio>

namespace {

class StandardErrorInterface : public OmUserInterface {
  public:
    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override {
        std::fprintf(stderr, "%s: %s\n", ToLocal(caption).c_str(), ToLocal(text).c_str());
        switch (style.buttons) {
        case OmButtons::Ok:
            return OmAnswer::Ok;
        case OmButtons::YesNo:
            return OmAnswer::No;
        case OmButtons::OkCancel:
        case OmButtons::YesNoCancel:
            break;
        }
        return OmAnswer::Cancel;
    }

    void BeginBusyCursor() override {}

    void EndBusyCursor() override {}
};

StandardErrorInterface initialInterface;
OmUserInterface* installed = nullptr;

} // namespace

OmUserInterface& GetUserInterface() {
    return installed ? *installed : initialInterface;
}

OmUserInterface* SetUserInterface(OmUserInterface* userInterface) {
    OmUserInterface* previous = installed;
    installed = userInterface;
    return previous;
}

OmAnswer ShowMessage(const std::wstring& text, OmMessageStyle style) {
    return GetUserInterface().ShowMessage(text, kProductName, style);
}
