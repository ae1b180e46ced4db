// The Digilent cable over a vendor's library that may answer anything.

#include "fuzz/CableScans.h"
#include "fuzz/Check.h"
#include "fuzz/Patience.h"
#include "fuzz/Pod.h"
#include "jtag/DigilentAdept.h"
#include "tests/jtag/DigilentExports.h"

namespace {

using ErrorCode = int32_t;
using Handle = uintptr_t;
using Result = uint8_t; // only the low byte of a result is looked at

constexpr Handle kInterface = 0x4A746167;

struct HostileDigilent : Pod {
    HostileDigilent(const uint8_t* data, size_t size);
    ~HostileDigilent() override;
    HostileDigilent(const HostileDigilent&) = delete;
    HostileDigilent& operator=(const HostileDigilent&) = delete;

    Result Succeeds(ErrorCode* error) {
        *error = input.ConsumeIntegral<uint8_t>();
        return Misbehaves() ? 0 : 1;
    }

    bool isOpen = false;
};

HostileDigilent* pod = nullptr; // the library's functions carry no context

Result SucceedsOn(Handle handle, ErrorCode* error) {
    Check(pod->isOpen && handle == kInterface, "only an open interface is used");
    return pod->Succeeds(error);
}

void GiveTdo(int clocks, int getTdo, uint8_t* tdo) {
    Check(clocks > 0 && (getTdo != 0) == (tdo != nullptr), "an answer has a place to go to");
    if (tdo)
        pod->Fill({tdo, static_cast<size_t>(clocks + 7) / 8});
}

struct Exported {
    static Result Init(ErrorCode* error) { return pod->Succeeds(error); }

    static void Term() { Check(!pod->isOpen, "everything is closed before the library ends"); }

    static void StartConfigureDevices(void*, ErrorCode* error) { pod->Succeeds(error); }

    static int GetDevCount(ErrorCode* error) {
        pod->Succeeds(error);
        return pod->input.ConsumeIntegral<int>();
    }

    static Result GetDevName(int, char* name, ErrorCode* error) {
        pod->FillText({name, 1024});
        return pod->Succeeds(error);
    }

    static Result OpenJtag(Handle* handle, char*, ErrorCode* error, void*) {
        *handle = kInterface;
        pod->isOpen = pod->Succeeds(error) != 0;
        return pod->isOpen ? 1 : 0;
    }

    static Result CloseJtag(Handle handle, ErrorCode* error) {
        const Result result = SucceedsOn(handle, error);
        pod->isOpen = false;
        return result;
    }

    static Result EnableJtag(Handle handle, ErrorCode* error, void*) {
        return SucceedsOn(handle, error);
    }

    static Result DisableJtag(Handle handle, ErrorCode* error, uint32_t*) {
        return SucceedsOn(handle, error);
    }

    static Result PutTdiBits(Handle handle, int bits, uint8_t*, int, int getTdo, uint8_t* tdo,
                             ErrorCode* error, void*) {
        GiveTdo(bits, getTdo, tdo);
        return SucceedsOn(handle, error);
    }

    static Result PutTmsTdiBits(Handle handle, int pairs, uint8_t*, int getTdo, uint8_t* tdo,
                                ErrorCode* error, void*) {
        GiveTdo(pairs, getTdo, tdo);
        return SucceedsOn(handle, error);
    }
};

HostileDigilent::HostileDigilent(const uint8_t* data, size_t size) : Pod(data, size) {
    pod = this;
    libraries = {"dpcutil.dll"};
    exports = GetDigilentExports<Exported>();
}

HostileDigilent::~HostileDigilent() {
    Check(!isOpen && loaded == 0, "everything is closed in the end");
    pod = nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Patience patience;
    HostileDigilent hostile(data, size);
    OmDigilentAdept cable;
    if (!cable.Load())
        return 0;
    Check(cable.GetDeviceCount() >= 0, "a number of devices is none below 0");
    std::string name;
    cable.GetDeviceName(0, name);
    if (cable.Initialize(name))
        RunScans(cable, hostile);
    return 0;
}
