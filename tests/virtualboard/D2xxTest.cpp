// The vendor library's side: device list, handles, queue, injected faults, statistics.

#include "tests/virtualboard/TestPod.h"
#include "virtualboard/BoardBuilder.h"
#include "virtualboard/CurrentBoard.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using vb_test::TestPod;
using Bytes = std::vector<uint8_t>;

namespace {

constexpr uint32_t kOk = 0;
constexpr uint32_t kInvalidHandle = 1;
constexpr uint32_t kNotFound = 2;
constexpr uint32_t kNotOpened = 3;
constexpr uint32_t kIoError = 4;
constexpr uint32_t kInvalidParameter = 6;
constexpr uint32_t kBySerial = 1;
constexpr uint32_t kByDescription = 2;

void Plug(const std::string& lines = "") {
    vb::BoardBuilder().Devices(1).Line(lines).Build().Install();
}

uint32_t Open(const char* text, uint32_t by = kByDescription) {
    void* handle = nullptr;
    return FT_OpenEx(text, by, &handle);
}

} // namespace

TEST(D2xx, NoBoardNoDevices) {
    vb::InstallBoard(nullptr);
    uint32_t count = 7;
    EXPECT_EQ(FT_CreateDeviceInfoList(&count), kOk);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(Open("Velmora Demo Board A"), kNotFound);
}

TEST(D2xx, ListsTheDevicesOfTheBoardFile) {
    Plug("pod FT2232C description=\"Pod A\" serial=S1\n"
         "pod FT232R description=Uart serial=S2\n"
         "pod FT2232H description=Fast serial=S3 open=yes");
    uint32_t count = 0;
    ASSERT_EQ(FT_CreateDeviceInfoList(&count), kOk);
    ASSERT_EQ(count, 3u);

    struct Row {
        uint32_t flags, type;
        const char *serial, *description;
    };

    const Row kRows[] = {{0, 4, "S1", "Pod A"}, {0, 5, "S2", "Uart"}, {3, 6, "S3", "Fast"}};
    for (uint32_t i = 0; i < 3; ++i) {
        uint32_t flags = 0, type = 0, id = 0, location = 0;
        char serial[16], description[64];
        void* handle = nullptr;
        ASSERT_EQ(
            FT_GetDeviceInfoDetail(i, &flags, &type, &id, &location, serial, description, &handle),
            kOk);
        EXPECT_EQ(flags, kRows[i].flags);
        EXPECT_EQ(type, kRows[i].type);
        EXPECT_STREQ(serial, kRows[i].serial);
        EXPECT_STREQ(description, kRows[i].description);
    }
    EXPECT_EQ(
        FT_GetDeviceInfoDetail(3, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
        kNotFound);
}

TEST(D2xx, OpensByDescriptionAndBySerialOnce) {
    Plug("pod FT2232H description=One serial=S1\npod FT2232H description=Two serial=S2 open=yes");
    EXPECT_EQ(Open("None"), kNotFound);
    EXPECT_EQ(Open("Two"), kNotOpened);
    EXPECT_EQ(Open("S1", 4), kInvalidParameter);
    void* handle = nullptr;
    ASSERT_EQ(FT_OpenEx("S1", kBySerial, &handle), kOk);
    EXPECT_EQ(Open("One"), kNotOpened);
    uint32_t type = 0, id = 0;
    char serial[16], description[64];
    EXPECT_EQ(FT_GetDeviceInfo(handle, &type, &id, serial, description, nullptr), kOk);
    EXPECT_EQ(type, 6u);
    EXPECT_STREQ(description, "One");
    EXPECT_EQ(FT_Close(handle), kOk);
    EXPECT_EQ(FT_Close(handle), kInvalidHandle);
    EXPECT_EQ(Open("One"), kOk);
}

TEST(D2xx, OnlyPartsWithAnMpsseTakeItsMode) {
    Plug("pod FT232R description=Uart");
    void* handle = nullptr;
    ASSERT_EQ(FT_OpenEx("Uart", kByDescription, &handle), kOk);
    EXPECT_EQ(FT_SetBitMode(handle, 0, 0), kOk);
    EXPECT_EQ(FT_SetBitMode(handle, 0, 2), kInvalidParameter);
}

TEST(D2xx, PurgeAndResetForgetWhatWaits) {
    Plug();
    TestPod pod;
    uint32_t waiting = 0;
    pod.Send({0x81, 0x83, 0x87});
    EXPECT_EQ(FT_GetQueueStatus(pod.Handle(), &waiting), kOk);
    EXPECT_EQ(waiting, 2u);
    EXPECT_EQ(FT_Purge(pod.Handle(), 2), kOk); // the other direction
    FT_GetQueueStatus(pod.Handle(), &waiting);
    EXPECT_EQ(waiting, 2u);
    EXPECT_EQ(FT_Purge(pod.Handle(), 3), kOk);
    FT_GetQueueStatus(pod.Handle(), &waiting);
    EXPECT_EQ(waiting, 0u);
    pod.Send({0x81, 0x87});
    EXPECT_EQ(FT_ResetDevice(pod.Handle()), kOk);
    pod.Send({0x81, 0x87}); // no longer in MPSSE mode
    FT_GetQueueStatus(pod.Handle(), &waiting);
    EXPECT_EQ(waiting, 0u);
}

TEST(D2xx, AnswersThatNobodyFlushesWaitForTheLatencyTimer) {
    Plug();
    TestPod pod;
    EXPECT_EQ(pod.Exchange({0x81, 0x87}, 1).size(), 1u);
    EXPECT_EQ(vb::CurrentBoard()->PodTraffic().latencyWaits, 0u);
    EXPECT_EQ(pod.Exchange({0x81}, 1).size(), 1u);
    EXPECT_EQ(vb::CurrentBoard()->PodTraffic().latencyWaits, 1u);
}

TEST(D2xx, EveryCallCanBeMadeToFailOnce) {
    using Call = std::function<uint32_t(void*)>;
    uint32_t count = 0;
    uint8_t byte = 0x87;
    void* other = nullptr;
    const std::pair<const char*, Call> kCalls[] = {
        {"FT_CreateDeviceInfoList", [&](void*) { return FT_CreateDeviceInfoList(&count); }},
        {"FT_GetDeviceInfoDetail",
         [&](void*) {
             return FT_GetDeviceInfoDetail(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                           nullptr);
         }},
        {"FT_GetDeviceInfo",
         [&](void* h) { return FT_GetDeviceInfo(h, &count, &count, nullptr, nullptr, nullptr); }},
        {"FT_OpenEx", [&](void*) { return FT_OpenEx("Spare", kByDescription, &other); }},
        {"FT_Close", [&](void* h) { return FT_Close(h); }},
        {"FT_ResetDevice", [&](void* h) { return FT_ResetDevice(h); }},
        {"FT_SetUSBParameters", [&](void* h) { return FT_SetUSBParameters(h, 0x4000, 0); }},
        {"FT_Purge", [&](void* h) { return FT_Purge(h, 3); }},
        {"FT_SetLatencyTimer", [&](void* h) { return FT_SetLatencyTimer(h, 16); }},
        {"FT_SetBitMode", [&](void* h) { return FT_SetBitMode(h, 0, 2); }},
        {"FT_GetQueueStatus", [&](void* h) { return FT_GetQueueStatus(h, &count); }},
        {"FT_Write", [&](void* h) { return FT_Write(h, &byte, 1, &count); }},
        {"FT_Read", [&](void* h) { return FT_Read(h, &byte, 1, &count); }},
    };
    for (const auto& [name, call] : kCalls) {
        Plug("pod FT2232H description=Pod\npod FT2232H description=Spare\nfault call-fails " +
             std::string(name) + " 1");
        void* handle = nullptr;
        if (std::string(name) == "FT_OpenEx") {
            EXPECT_EQ(call(handle), kIoError) << name;
            EXPECT_EQ(call(handle), kOk) << name;
            continue;
        }
        ASSERT_EQ(FT_OpenEx("Pod", kByDescription, &handle), kOk);
        EXPECT_EQ(call(handle), kIoError) << name;
        const bool closed = std::string(name) == "FT_Close"; // even if it failed
        EXPECT_EQ(call(handle), closed ? kInvalidHandle : kOk) << name;
    }
}

TEST(D2xx, UnpluggedAfterSoManyCalls) {
    Plug("fault unplugged-after 6"); // the constructor below makes four calls
    TestPod pod;
    EXPECT_EQ(pod.Exchange({0x81, 0x87}, 1).size(), 1u);
    uint32_t count = 1;
    uint8_t byte = 0x87;
    EXPECT_EQ(FT_Write(pod.Handle(), &byte, 1, &count), kIoError);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(FT_GetQueueStatus(pod.Handle(), &count), kIoError);
    EXPECT_EQ(FT_Read(pod.Handle(), &byte, 1, &count), kIoError);
    EXPECT_EQ(FT_CreateDeviceInfoList(&count), kOk);
    EXPECT_EQ(count, 0u);
}

TEST(D2xx, ShortReadsAndReadsThatNeverComplete) {
    Plug("fault short-reads 2");
    {
        TestPod pod;
        EXPECT_EQ(pod.Exchange({0x81, 0x81, 0x81, 0x87}, 3).size(), 2u);
        EXPECT_EQ(pod.Receive(1).size(), 1u);
    }
    Plug("fault reads-never-complete");
    TestPod pod;
    EXPECT_EQ(pod.Exchange({0x81, 0x87}, 1).size(), 0u);
}

TEST(D2xx, TransfersAreCounted) {
    Plug();
    TestPod pod;
    vb::CurrentBoard()->ClearStatistics();
    pod.Exchange({0x81, 0x83, 0x87}, 2);
    pod.Send({0x85});
    const vb::Traffic& traffic = vb::CurrentBoard()->PodTraffic();
    EXPECT_EQ(traffic.writeCalls, 2u);
    EXPECT_EQ(traffic.bytesWritten, 4u);
    EXPECT_EQ(traffic.readCalls, 1u);
    EXPECT_EQ(traffic.bytesRead, 2u);
}

TEST(D2xx, PodWithoutABoardSeesNoChain) {
    Plug("pod FT2232H connected=no");
    TestPod pod;
    pod.ResetTap();
    EXPECT_EQ(pod.ScanDr("0000"), "1111");
}
