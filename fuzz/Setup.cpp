// A setup file: the XML around it, the whole setup in it, its integrity check, and saving it.

#include "fuzz/Check.h"
#include "fuzz/MemoryFile.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"
#include "setup/DesignSetup.h"
#include "setup/SetupFile.h"

#include <clocale>
#include <wx/init.h>

namespace {

class AgreeingUser : public OmUserInterface {
  public:
    OmAnswer ShowMessage(const std::wstring&, const std::wstring&, OmMessageStyle style) override {
        return style.buttons == OmButtons::Ok ? OmAnswer::Ok : OmAnswer::Yes;
    }

    void BeginBusyCursor() override {}

    void EndBusyCursor() override {}
};

OmDesignSetup SaveAndLoadAgain(const OmDesignSetup& setup) {
    const std::wstring path = FromLocal(ScratchPath());
    Check(SaveSetupXml(setup, path), "a setup that was loaded can be saved");
    OmDesignSetup second;
    Check(LoadSetupXml(second, path), "a saved setup can be loaded");
    return second;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static const wxInitializer initializer;
    static AgreeingUser user;
    SetUserInterface(&user);
    return std::setlocale(LC_CTYPE, "C.UTF-8") ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemoryFile file(data, size);
    OmDesignSetup setup;
    if (!LoadSetupXml(setup, FromLocal(file.Path())))
        return 0;
    setup.CheckSetupIntegrity(1, false);
    setup.CheckPinCollisions();
    for (unsigned index = 0; index < setup.GetDeviceCount(); ++index) {
        OmBitVector levels;
        setup.GetDevice(index).GetSafeBsrVector(levels);
    }
    uint32_t first = 0;
    uint32_t count = 0;
    setup.sectors.GetSectorRange(4, 0x1000, 0xFFFFFFFF, first, count);
    setup.sectors.Describe({0, 1, first}, 4);
    // The first time may drop what means nothing, such as one bound of a port without the other.
    const OmDesignSetup saved = SaveAndLoadAgain(setup);
    Check(SaveAndLoadAgain(saved) == saved, "what was saved once stays the same");
    return 0;
}
