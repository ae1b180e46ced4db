#include "tests/jtag/FakeJLink.h"

#include "tests/jtag/JLinkExports.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <utility>

namespace {

FakeJLink* fake = nullptr; // the library's functions carry no context

std::string Hex(const uint8_t* bytes, uint32_t bits) {
    std::string text;
    for (uint32_t i = 0; i < (bits + 7) / 8; ++i) {
        // What stands above the last bit has no meaning.
        const unsigned left = bits - 8 * i;
        const unsigned mask = left >= 8 ? 0xFF : (1U << left) - 1;
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", bytes[i] & mask);
        text += digits;
    }
    return text;
}

// Reports what the test asked for.
void Report() {
    if (const char* text = std::exchange(fake->rawWarning, nullptr))
        fake->onWarning(text);
    if (const char* text = std::exchange(fake->rawError, nullptr)) {
        fake->pendingError = true;
        fake->onError(text);
    }
}

struct Exported {
    static const char* Open() {
        fake->calls.push_back("Open");
        fake->isOpen = fake->openFailure == nullptr;
        return fake->openFailure;
    }

    static void Close() {
        EXPECT_TRUE(fake->isOpen);
        EXPECT_FALSE(fake->pendingError) << "closed with an error pending";
        fake->calls.push_back("Close");
        fake->isOpen = false;
    }

    static char SelectUSB(int number) {
        fake->calls.push_back("SelectUSB " + std::to_string(number));
        return static_cast<char>(fake->selectResult);
    }

    static char SelectIP(const char* host, int port) {
        fake->calls.push_back(std::string("SelectIP '") + host + "' " + std::to_string(port));
        return static_cast<char>(fake->selectResult);
    }

    static void SetWarnOutHandler(void (*handler)(const char*)) {
        fake->calls.push_back("SetWarnOutHandler");
        fake->onWarning = handler;
    }

    static void SetErrorOutHandler(void (*handler)(const char*)) {
        fake->calls.push_back("SetErrorOutHandler");
        fake->onError = handler;
    }

    static char HasError() {
        fake->calls.push_back("HasError");
        return fake->pendingError ? 1 : 0;
    }

    static void ClrError() {
        fake->calls.push_back("ClrError");
        fake->pendingError = false;
    }

    static void SetSpeed(uint32_t kilohertz) {
        fake->calls.push_back("SetSpeed " + std::to_string(kilohertz));
    }

    static void StoreGetRaw(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms, uint32_t bits) {
        EXPECT_TRUE(fake->isOpen);
        fake->calls.push_back("StoreGetRaw " + std::to_string(bits) + " tms" + Hex(tms, bits) +
                              " tdi" + Hex(tdi, bits));
        std::fill_n(tdo, (bits + 7) / 8, uint8_t{0});
        if (!fake->tdo.empty()) {
            EXPECT_LE(fake->tdo.front().size(), (bits + 7) / 8);
            std::copy(fake->tdo.front().begin(), fake->tdo.front().end(), tdo);
            fake->tdo.pop_front();
        }
        Report();
    }

    static void StoreRaw(const uint8_t* tdi, const uint8_t* tms, uint32_t bits) {
        EXPECT_TRUE(fake->isOpen);
        fake->calls.push_back("StoreRaw " + std::to_string(bits) + " tms" + Hex(tms, bits) +
                              " tdi" + Hex(tdi, bits));
        Report();
    }

    static void SyncBits() {
        fake->calls.push_back("SyncBits");
        if (const char* text = std::exchange(fake->syncError, nullptr)) {
            fake->pendingError = true;
            fake->onError(text);
        }
    }
};

} // namespace

FakeJLink::FakeJLink() {
    fake = this;
    libraries = {"JLinkARM.dll"};
    exports = GetJLinkExports<Exported>();
}

FakeJLink::~FakeJLink() {
    EXPECT_FALSE(isOpen) << "the connection was left open";
    EXPECT_EQ(loaded, 0) << "a library was not freed";
    fake = nullptr;
}

void FakeJLink::ExportSyncBits() {
    exports["JLINKARM_JTAG_SyncBits"] = Export(Exported::SyncBits);
}

std::vector<std::string> FakeJLink::TakeCalls() {
    return std::exchange(calls, {});
}
