// The J-Link over a vendor's library that may answer anything.

#include "jtag/JLink.h"
#include "fuzz/CableScans.h"
#include "fuzz/Check.h"
#include "fuzz/Patience.h"
#include "fuzz/Pod.h"
#include "tests/jtag/JLinkExports.h"

namespace {

using Handler = void (*)(const char* text);

struct HostileJLink : Pod {
    HostileJLink(const uint8_t* data, size_t size);
    ~HostileJLink() override;
    HostileJLink(const HostileJLink&) = delete;
    HostileJLink& operator=(const HostileJLink&) = delete;

    void Report(Handler handler) {
        if (!handler || !Misbehaves())
            return;
        const std::string text = input.ConsumeRandomLengthString(2000);
        handler(input.ConsumeBool() ? nullptr : text.c_str());
    }

    bool isOpen = false;
    Handler onWarning = nullptr;
    Handler onError = nullptr;
};

HostileJLink* pod = nullptr; // the library's functions carry no context

struct Exported {
    static const char* Open() {
        pod->Report(pod->onWarning);
        pod->isOpen = !pod->Misbehaves();
        return pod->isOpen ? nullptr : "\xFF?";
    }

    static void Close() {
        Check(pod->isOpen, "only what is open is closed");
        pod->isOpen = false;
    }

    static uint8_t SelectUSB(int) { return pod->Misbehaves(); }

    static uint8_t SelectIP(const char*, int) { return pod->Misbehaves(); }

    static void SetWarnOutHandler(Handler handler) { pod->onWarning = handler; }

    static void SetErrorOutHandler(Handler handler) { pod->onError = handler; }

    static uint8_t HasError() { return pod->Misbehaves(); }

    static void ClrError() { pod->Report(pod->onError); }

    static void SetSpeed(uint32_t) { pod->Report(pod->onWarning); }

    static void StoreGetRaw(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms, uint32_t bits) {
        Check(pod->isOpen && tdi && tms, "only an open device is used");
        pod->Fill({tdo, (bits + 7) / 8});
        pod->Report(pod->onError);
    }

    static void StoreRaw(const uint8_t* tdi, const uint8_t* tms, uint32_t) {
        Check(pod->isOpen && tdi && tms, "only an open device is used");
        pod->Report(pod->onError);
    }
};

HostileJLink::HostileJLink(const uint8_t* data, size_t size) : Pod(data, size) {
    pod = this;
    libraries = {"JLinkARM.dll"};
    exports = GetJLinkExports<Exported>();
}

HostileJLink::~HostileJLink() {
    Check(!isOpen && loaded == 0, "everything is closed in the end");
    pod = nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Patience patience;
    HostileJLink hostile(data, size);
    OmJLink cable;
    const int number = hostile.input.ConsumeIntegralInRange(OmJLink::kOverIp, 3);
    if (cable.Initialize(number, "localhost", 19020, hostile.input.ConsumeIntegral<uint32_t>()))
        RunScans(cable, hostile);
    return 0;
}
