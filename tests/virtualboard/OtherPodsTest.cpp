// USB-Blaster, J-Link, Digilent and the parallel-port pods: each reads the IDCODE of one device, in
// its own bytes written by hand.

#include "tests/virtualboard/D2xxFunctions.h"
#include "virtualboard/BoardBuilder.h"
#include "virtualboard/CurrentBoard.h"
#include "virtualboard/ParallelPort.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

extern "C" {
const char* JLINKARM_Open();
void JLINKARM_Close();
int JLINKARM_SelectUSB(int number);
int JLINKARM_SelectIP(const char* host, int port);
void JLINKARM_SetErrorOutHandler(void handler(const char*));
char JLINKARM_HasError();
void JLINKARM_ClrError();
void JLINKARM_SetSpeed(uint32_t kilohertz);
void JLINKARM_JTAG_StoreGetRaw(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms, uint32_t bits);
void JLINKARM_JTAG_StoreRaw(const uint8_t* tdi, const uint8_t* tms, uint32_t bits);
void JLINKARM_JTAG_SyncBits();
int DpcInit(int* error);
void DpcTerm();
int DvmgGetDevCount(int* error);
int DvmgGetDevName(int index, char* name, int* error);
int DpcOpenJtag(void** handle, const char* name, int* error, void*);
int DpcCloseJtag(void* handle, int* error);
int DpcEnableJtag(void* handle, int* error, void*);
int DpcDisableJtag(void* handle, int* error, void*);
int DpcPutTdiBits(void* handle, int count, const uint8_t* tdi, int tms, int returnTdo, uint8_t* tdo,
                  int* error, void*);
int DpcPutTmsTdiBits(void* handle, int count, const uint8_t* pairs, int returnTdo, uint8_t* tdo,
                     int* error, void*);
}

using Bytes = std::vector<uint8_t>;

namespace {

constexpr uint32_t kIdcode = 0x1A001F01;

vb::Board& Plug(const std::string& line) {
    return vb::BoardBuilder().Devices(1).Line(line).Build().Install();
}

uint32_t Word(const uint8_t* bytes) {
    return bytes[0] | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[3]} << 24;
}

std::string lastError;

void KeepError(const char* text) {
    lastError = text;
}

// To Shift-DR: five clocks with TMS high, then 0, 1, 0, 0. Bits of TMS, first in bit 0.
constexpr uint32_t kToShift = 0x5F; // nine cycles
constexpr unsigned kToShiftCycles = 9;

} // namespace

TEST(UsbBlaster, ReadsAnIdcodeByRunsAndByDirectBytes) {
    Plug("pod USB-Blaster description=USB-Blaster");
    FT_SetVIDPID(0x09FB, 0x6001); // the library lists no maker's identifiers but FTDI's by itself
    void* handle = nullptr;
    ASSERT_EQ(FT_OpenEx("USB-Blaster", 2, &handle), 0u);
    uint32_t id = 0;
    FT_GetDeviceInfo(handle, nullptr, &id, nullptr, nullptr, nullptr);
    EXPECT_EQ(id >> 16, 0x09FBu);
    Bytes program;
    for (unsigned i = 0; i < kToShiftCycles; ++i) {
        const uint8_t tms = kToShift >> i & 1 ? 0x02 : 0x00;
        program.push_back(0x3C | tms);
        program.push_back(0x3D | tms);
    }
    program.push_back(0x3C);
    program.insert(program.end(), {0xC3, 0xFF, 0xFF, 0xFF}); // a run of three bytes, read
    for (int i = 0; i < 8; ++i)
        program.insert(program.end(), {0x3C, 0x7D}); // eight direct clocks, read
    uint32_t count = 0;
    ASSERT_EQ(FT_Write(handle, program.data(), static_cast<uint32_t>(program.size()), &count), 0u);
    uint8_t answer[16] = {};
    ASSERT_EQ(FT_Read(handle, answer, sizeof answer, &count), 0u);
    ASSERT_EQ(count, 11u);
    for (unsigned i = 0; i < 8; ++i)
        EXPECT_EQ(answer[3 + i], kIdcode >> (24 + i) & 1);
    answer[3] = kIdcode >> 24;
    EXPECT_EQ(Word(answer), kIdcode);
}

TEST(UsbBlaster, ARunWithoutTheReadBitAnswersNothingAndTheCountIsHonoured) {
    vb::Board& board = Plug("pod USB-Blaster description=USB-Blaster");
    FT_SetVIDPID(0x09FB, 0x6001);
    void* handle = nullptr;
    ASSERT_EQ(FT_OpenEx("USB-Blaster", 2, &handle), 0u);
    const uint64_t before = board.Clock().Cycles();
    Bytes program = {0x2C, 0xBF};
    program.resize(2 + 63, 0xBF); // data that look like heads of runs
    program.insert(program.end(), {0x2D, 0x2C});
    uint32_t count = 0;
    ASSERT_EQ(FT_Write(handle, program.data(), static_cast<uint32_t>(program.size()), &count), 0u);
    EXPECT_EQ(board.Clock().Cycles() - before, 63u * 8 + 1);
    FT_GetQueueStatus(handle, &count);
    EXPECT_EQ(count, 0u);
}

TEST(JLink, ReadsAnIdcode) {
    vb::Board& board = Plug("pod J-Link serial=0 description=bench");
    EXPECT_EQ(JLINKARM_SelectUSB(0), 0);
    ASSERT_EQ(JLINKARM_Open(), nullptr);
    JLINKARM_SetSpeed(4000);
    EXPECT_EQ(board.Clock().Frequency(), 4'000'000u);
    const uint8_t tms[] = {0x5F, 0x00, 0x00, 0x00, 0x00, 0x01}; // nine, 32 with the last in Exit1
    const uint8_t tdi[6] = {};
    uint8_t tdo[6] = {};
    JLINKARM_JTAG_StoreGetRaw(tdi, tdo, tms, 41);
    EXPECT_EQ((tdo[1] >> 1 | tdo[2] << 7) & 0xFF, 0x01);
    EXPECT_EQ((tdo[4] >> 1 | tdo[5] << 7) & 0xFF, 0x1A);
    EXPECT_EQ(board.Chain().State(), vb::TapState::Exit1Dr);
    JLINKARM_JTAG_StoreRaw(tdi, tms + 5, 1);
    EXPECT_EQ(board.Chain().State(), vb::TapState::Exit1Dr); // stored, not sent
    JLINKARM_JTAG_SyncBits();
    EXPECT_EQ(board.Chain().State(), vb::TapState::UpdateDr);
    EXPECT_EQ(board.PodTraffic().writeCalls, 2u);
    EXPECT_EQ(board.PodTraffic().readCalls, 1u);
    JLINKARM_Close();
}

TEST(JLink, IsFoundByNumberOrByHostName) {
    Plug("pod J-Link serial=1 description=bench");
    EXPECT_EQ(JLINKARM_SelectUSB(0), 0);
    EXPECT_NE(JLINKARM_Open(), nullptr);
    EXPECT_EQ(JLINKARM_SelectUSB(1), 0);
    EXPECT_EQ(JLINKARM_Open(), nullptr);
    JLINKARM_Close();
    EXPECT_EQ(JLINKARM_SelectIP("elsewhere", 0), 0);
    EXPECT_NE(JLINKARM_Open(), nullptr);
    EXPECT_EQ(JLINKARM_SelectIP("bench", 19020), 0);
    EXPECT_EQ(JLINKARM_Open(), nullptr);
    JLINKARM_Close();
    EXPECT_NE(JLINKARM_SelectUSB(4), 0);
    EXPECT_NE(JLINKARM_SelectIP("", 0), 0);
}

TEST(JLink, ErrorsGoToTheHandlerAndStayUntilCleared) {
    Plug("pod J-Link serial=0\nfault call-fails JLINKARM_JTAG_StoreRaw 1");
    JLINKARM_SelectUSB(0);
    ASSERT_EQ(JLINKARM_Open(), nullptr);
    JLINKARM_SetErrorOutHandler(KeepError);
    const uint8_t bits[1] = {};
    EXPECT_EQ(JLINKARM_HasError(), 0);
    JLINKARM_JTAG_StoreRaw(bits, bits, 1);
    EXPECT_EQ(lastError, "Communication with the emulator failed.");
    EXPECT_NE(JLINKARM_HasError(), 0);
    JLINKARM_ClrError();
    JLINKARM_JTAG_StoreRaw(bits, bits, 1);
    EXPECT_EQ(JLINKARM_HasError(), 0);
    JLINKARM_SetErrorOutHandler(nullptr);
    JLINKARM_Close();
}

TEST(Digilent, ReadsAnIdcodeBehindTheFallingEdge) {
    Plug("pod Digilent description=Onboard\npod Digilent description=Spare");
    int error = -1;
    ASSERT_TRUE(DpcInit(&error));
    EXPECT_EQ(error, 0);
    EXPECT_EQ(DvmgGetDevCount(&error), 2);
    char name[64];
    EXPECT_TRUE(DvmgGetDevName(1, name, &error));
    EXPECT_STREQ(name, "Spare");
    EXPECT_FALSE(DvmgGetDevName(2, name, &error));
    void* handle = nullptr;
    EXPECT_FALSE(DpcOpenJtag(&handle, "Other", &error, nullptr));
    ASSERT_TRUE(DpcOpenJtag(&handle, "Onboard", &error, nullptr));
    uint8_t tdo[8] = {};
    const uint8_t zeros[5] = {};
    EXPECT_FALSE(DpcPutTdiBits(handle, 8, zeros, 0, 1, tdo, &error, nullptr)); // not enabled
    ASSERT_TRUE(DpcEnableJtag(handle, &error, nullptr));
    // TMS 1 five times, 0, 1, then to Capture-DR, as pairs with TDI high; the next clock enters
    // Shift-DR, and what TDO shows after it is the first bit.
    const uint8_t pairs[] = {0xFF, 0x77};
    ASSERT_TRUE(DpcPutTmsTdiBits(handle, 8, pairs, 0, nullptr, &error, nullptr));
    ASSERT_TRUE(DpcPutTdiBits(handle, 32, zeros, 0, 1, tdo, &error, nullptr));
    EXPECT_EQ(Word(tdo), kIdcode);
    EXPECT_TRUE(DpcDisableJtag(handle, &error, nullptr));
    EXPECT_TRUE(DpcCloseJtag(handle, &error));
    EXPECT_FALSE(DpcCloseJtag(handle, &error));
    DpcTerm();
}

TEST(Digilent, PairsReadTdoToo) {
    Plug("pod Digilent description=Onboard");
    int error = 0;
    void* handle = nullptr;
    ASSERT_TRUE(DpcInit(&error));
    ASSERT_TRUE(DpcOpenJtag(&handle, "Onboard", &error, nullptr));
    ASSERT_TRUE(DpcEnableJtag(handle, &error, nullptr));
    const uint8_t pairs[10] = {0xFF, 0x77}; // and 32 cycles with TMS and TDI low
    uint8_t tdo[6] = {};
    ASSERT_TRUE(DpcPutTmsTdiBits(handle, 40, pairs, 1, tdo, &error, nullptr));
    EXPECT_EQ(Word(tdo + 1), kIdcode);
    DpcTerm();
}

TEST(ParallelPort, EachPodReadsAnIdcodeThroughItsRegisters) {
    struct Case {
        const char* pod;
        uint8_t always, tck, tms, tdi, tdo, control;
        bool inverted;
    };

    for (const Case& test : {Case{"xilinx", 0x10, 0x02, 0x04, 0x01, 0x10, 0x00, false},
                             Case{"byteblaster", 0x00, 0x01, 0x02, 0x40, 0x80, 0x02, true},
                             Case{"isp", 0x38, 0x02, 0x04, 0x01, 0x40, 0x00, false},
                             Case{"wiggler", 0x90, 0x04, 0x02, 0x08, 0x80, 0x01, true}}) {
        vb::Board& board = Plug("");
        vb::ParallelPort port(board, vb::FindParallelPod(test.pod));
        port.Write(2, test.control);
        const auto clock = [&](bool tms, bool tdi) {
            const auto pins =
                static_cast<uint8_t>(test.always | (tms ? test.tms : 0) | (tdi ? test.tdi : 0));
            port.Write(0, pins);
            const bool tdo = ((port.Read(1) & test.tdo) != 0) != test.inverted;
            port.Write(0, pins | test.tck);
            return tdo;
        };
        for (unsigned i = 0; i < kToShiftCycles; ++i)
            clock(kToShift >> i & 1, true);
        uint32_t idcode = 0;
        for (unsigned i = 0; i < 32; ++i)
            idcode |= uint32_t{clock(false, false)} << i;
        EXPECT_EQ(idcode, kIdcode) << test.pod;
        EXPECT_EQ(board.Clock().Cycles(), 41u) << test.pod;
    }
}

TEST(ParallelPort, APodThatIsNotEnabledClocksNothing) {
    struct Case {
        const char* pod;
        uint8_t data, control;
    };

    for (const Case& test :
         {Case{"xilinx", 0x18, 0x00}, Case{"byteblaster", 0x00, 0x00}, Case{"isp", 0x30, 0x00},
          Case{"wiggler", 0x10, 0x01}, Case{"wiggler", 0x90, 0x21}}) {
        vb::Board& board = Plug("");
        vb::ParallelPort port(board, vb::FindParallelPod(test.pod));
        port.Write(2, test.control);
        for (uint8_t pins : {0x07, 0x00, 0x07, 0x00})
            port.Write(0, test.data | pins);
        EXPECT_EQ(board.Clock().Cycles(), 0u) << test.pod;
    }
}

TEST(ParallelPort, AnswersTheDriversControlCodes) {
    vb::ParallelPort port(Plug(""), vb::FindParallelPod("isp"));
    Bytes out;
    ASSERT_TRUE(port.Control(0x9C40200C, {}, out));
    EXPECT_EQ(out, (Bytes{0x78, 0x03, 0, 0, 0, 0}));
    ASSERT_TRUE(port.Control(0x9C402008, Bytes{0x78, 0x03, 0x3B}, out));
    EXPECT_TRUE(out.empty());
    ASSERT_TRUE(port.Control(0x9C402004, Bytes{0x78, 0x03}, out));
    EXPECT_EQ(out, (Bytes{0x3B}));
    EXPECT_FALSE(port.Control(0x9C402004, Bytes{0x78}, out));
    EXPECT_FALSE(port.Control(0x9C402004, Bytes{0x7B, 0x03}, out));
    EXPECT_FALSE(port.Control(0x9C402010, Bytes{0x78, 0x03}, out));
    port.FailCallAfter(7);
    ASSERT_TRUE(port.Control(0x9C40200C, {}, out));
    EXPECT_FALSE(port.Control(0x9C40200C, {}, out));
    EXPECT_TRUE(port.Control(0x9C40200C, {}, out));
}
