#include "tests/jtag/FakeDigilent.h"

#include "tests/jtag/DigilentExports.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <utility>

namespace {

// The vendor's own types.
using ErrorCode = int;
using Handle = uint32_t;
using Boolean = int;

constexpr Handle kInterface = 0x4A746167;

FakeDigilent* fake = nullptr; // the library's functions carry no context

Boolean Called(const char* function, const std::string& arguments, ErrorCode* error) {
    EXPECT_NE(error, nullptr) << function;
    const bool fails = fake->Note(function, arguments);
    *error = fails ? 1 : 0;
    return fails ? 0 : 1;
}

Boolean CalledOn(Handle handle, const char* function, const std::string& arguments,
                 ErrorCode* error) {
    EXPECT_EQ(handle, kInterface) << function;
    EXPECT_EQ(fake->opened, 1) << function;
    return Called(function, arguments, error);
}

std::string Hex(const uint8_t* bytes, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", bytes[i]);
        text += digits;
    }
    return text;
}

// Fills the caller's TDO bytes, one for each eight clocks.
void GiveTdo(int getTdo, int clocks, uint8_t* tdo) {
    EXPECT_EQ(getTdo != 0, tdo != nullptr);
    if (!getTdo || fake->tdo.empty())
        return;
    const auto& answer = fake->tdo.front();
    EXPECT_LE(answer.size(), static_cast<size_t>(clocks + 7) / 8);
    std::copy(answer.begin(), answer.end(), tdo);
    fake->tdo.pop_front();
}

struct Exported {
    static Boolean Init(ErrorCode* error) {
        const Boolean done = Called("DpcInit", "", error);
        fake->initialized += done;
        return done;
    }

    static void Term() {
        EXPECT_EQ(fake->opened, 0) << "DpcTerm with an open interface";
        fake->Note("DpcTerm", "");
        --fake->initialized;
    }

    static void StartConfigureDevices(void* parent, ErrorCode* error) {
        fake->Note("DvmgStartConfigureDevices", "");
        fake->configuredOver = parent;
        *error = fake->configureError;
    }

    static int GetDevCount(ErrorCode* error) {
        return Called("DvmgGetDevCount", "", error) ? fake->deviceCount : 0;
    }

    static Boolean GetDevName(int index, char* name, ErrorCode* error) {
        if (!Called("DvmgGetDevName", std::to_string(index), error) || index < 0 ||
            static_cast<size_t>(index) >= fake->names.size())
            return 0;
        std::strcpy(name, fake->names[static_cast<size_t>(index)].c_str());
        return 1;
    }

    static Boolean OpenJtag(Handle* handle, char* name, ErrorCode* error, void* transaction) {
        EXPECT_EQ(transaction, nullptr);
        const Boolean done = Called("DpcOpenJtag", std::string("'") + name + "'", error);
        *handle = kInterface; // left there even if the call fails
        fake->opened += done;
        return done;
    }

    static Boolean CloseJtag(Handle handle, ErrorCode* error) {
        const Boolean done = CalledOn(handle, "DpcCloseJtag", "", error);
        --fake->opened;
        return done;
    }

    static Boolean EnableJtag(Handle handle, ErrorCode* error, void* transaction) {
        EXPECT_EQ(transaction, nullptr);
        const Boolean done = CalledOn(handle, "DpcEnableJtag", "", error);
        fake->enabled += done;
        return done;
    }

    static Boolean DisableJtag(Handle handle, ErrorCode* error, uint32_t* transaction) {
        EXPECT_EQ(transaction, nullptr) << "the library would begin a transaction";
        const Boolean done = CalledOn(handle, "DpcDisableJtag", "", error);
        --fake->enabled;
        return done;
    }

    static Boolean PutTdiBits(Handle handle, int bits, uint8_t* tdi, Boolean tms, Boolean getTdo,
                              uint8_t* tdo, ErrorCode* error, void* transaction) {
        EXPECT_EQ(transaction, nullptr);
        const auto size = static_cast<size_t>(bits + 7) / 8;
        const Boolean done = CalledOn(handle, "DpcPutTdiBits",
                                      std::to_string(bits) + " tms " + std::to_string(tms) +
                                          (getTdo ? " tdo" : "") + Hex(tdi, size),
                                      error);
        GiveTdo(getTdo, bits, tdo);
        return done;
    }

    static Boolean PutTmsTdiBits(Handle handle, int pairs, uint8_t* bytes, Boolean getTdo,
                                 uint8_t* tdo, ErrorCode* error, void* transaction) {
        EXPECT_EQ(transaction, nullptr);
        const auto size = static_cast<size_t>(pairs + 3) / 4;
        const Boolean done =
            CalledOn(handle, "DpcPutTmsTdiBits",
                     std::to_string(pairs) + (getTdo ? " tdo" : "") + Hex(bytes, size), error);
        GiveTdo(getTdo, pairs, tdo);
        return done;
    }
};

} // namespace

FakeDigilent::FakeDigilent() {
    fake = this;
    libraries = {"dpcutil.dll"};
    exports = GetDigilentExports<Exported>();
}

FakeDigilent::~FakeDigilent() {
    EXPECT_EQ(enabled, 0) << "JTAG was left enabled";
    EXPECT_EQ(opened, 0) << "an interface was left open";
    EXPECT_EQ(initialized, 0) << "DpcInit and DpcTerm are not paired";
    EXPECT_EQ(loaded, 0) << "a library was not freed";
    fake = nullptr;
}

void FakeDigilent::Fail(const std::string& function, int successes) {
    failing_ = function;
    successes_ = successes;
}

bool FakeDigilent::Note(const std::string& function, const std::string& arguments) {
    calls.push_back(arguments.empty() ? function : function + " " + arguments);
    return function == failing_ && successes_-- <= 0;
}

std::vector<std::string> FakeDigilent::TakeCalls() {
    return std::exchange(calls, {});
}
