#include "jtag/JLink.h"

#include "jtag/BitPacking.h"
#include "jtag/CableErrors.h"
#include "jtag/Exception.h"
#include "jtag/JtagBitWriter.h"
#include "jtag/Log.h"
#include "jtag/ScanLists.h"
#include "platform/Translation.h"

#include <algorithm>
#include <cstring>
#include <vector>

// Bit arrays of one kind of scan.
struct OmJLink::Arrays {
    // Room for `count` scans of `bits` bits with their walks, which are seven clocks at most. Grows
    // only, so that nothing is cleared again and again.
    void Reserve(size_t bits, size_t count) {
        const size_t bytes = (bits / 8 + 3) * count;
        if (bytes <= tms.size())
            return;
        for (std::vector<uint8_t>* array : {&tms, &tdi, &tdo})
            array->resize(bytes);
    }

    std::vector<uint8_t> tms;
    std::vector<uint8_t> tdi;
    std::vector<uint8_t> tdo;
};

namespace {

constexpr const char* kLibraryNames[] = {"JLinkARM.dll"};
constexpr OmLibraryRow kLibrary{.names = kLibraryNames};

// Process-wide, since the library's callbacks carry no context.
bool errorFlag = false;
std::wstring errorText;

// The library's texts are outside data, and may be missing.
std::wstring Widen(const char* text) {
    if (!text)
        return {};
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    return {bytes, bytes + std::strlen(text)};
}

void OnWarning(const char* text) {
    OmLog(L"*** J-Link WARNING: %ls\n", Widen(text).c_str());
}

void OnError(const char* text) {
    errorFlag = true;
    errorText = Widen(text);
    OmLog(L"*** J-Link ERROR: %ls\n", errorText.c_str());
}

// The library's only sign of failure is a call of the error handler.
void ThrowReportedError() {
    if (errorFlag)
        throw OmException(TranslatedFormat("JTAG connection error:\n%ls", errorText.c_str()));
}

uint32_t LibraryCount(size_t bits) {
    if (bits > UINT32_MAX)
        ThrowScanTooLong();
    return static_cast<uint32_t>(bits);
}

} // namespace

OmJLink::OmJLink() {
    OmLog(L"Creating OmJLink\n");
}

OmJLink::~OmJLink() {
    OmLog(L"Destroying OmJLink\n");
    Close();
}

bool OmJLink::Load() {
    const OmEntryPoint table[] = {
        MakeEntryPoint("JLINKARM_Open", functions_.Open),
        MakeEntryPoint("JLINKARM_Close", functions_.Close),
        MakeEntryPoint("JLINKARM_SelectUSB", functions_.SelectUSB),
        MakeEntryPoint("JLINKARM_SelectIP", functions_.SelectIP),
        MakeEntryPoint("JLINKARM_SetWarnOutHandler", functions_.SetWarnOutHandler),
        MakeEntryPoint("JLINKARM_SetErrorOutHandler", functions_.SetErrorOutHandler),
        MakeEntryPoint("JLINKARM_HasError", functions_.HasError),
        MakeEntryPoint("JLINKARM_ClrError", functions_.ClrError),
        MakeEntryPoint("JLINKARM_SetSpeed", functions_.SetSpeed),
        MakeEntryPoint("JLINKARM_JTAG_StoreGetRaw", functions_.StoreGetRaw),
        MakeEntryPoint("JLINKARM_JTAG_StoreRaw", functions_.StoreRaw),
        MakeOptionalEntryPoint("JLINKARM_JTAG_SyncBits", functions_.SyncBits),
    };
    return library_.LoadAndLog(kLibrary, table);
}

bool OmJLink::Initialize(int usbNumber, const std::string& host, int port, uint32_t frequency) {
    if (!Load())
        return false;
    Close();
    if (!Select(usbNumber, host, port))
        return false;
    functions_.SetWarnOutHandler(OnWarning);
    if (const char* failure = functions_.Open()) {
        OmLog(L"*** FAILED *** (JLINK_Open() failed: %ls)\n", Widen(failure).c_str());
        return false;
    }
    isOpen_ = true;
    functions_.SetErrorOutHandler(OnError);
    ClearPendingError();
    functions_.SetSpeed(frequency / 1000);
    frequency_ = frequency;
    ClearPendingError();
    return true;
}

bool OmJLink::Select(int usbNumber, const std::string& host, int port) {
    const Result failed = usbNumber == kOverIp ? functions_.SelectIP(host.c_str(), port)
                                               : functions_.SelectUSB(usbNumber);
    return failed == 0;
}

void OmJLink::Close() {
    if (!isOpen_)
        return;
    ClearPendingError();
    functions_.Close();
    isOpen_ = false;
}

// An error from earlier would make the library refuse every further call.
void OmJLink::ClearPendingError() {
    if (functions_.HasError())
        functions_.ClrError();
}

void OmJLink::Exchange(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms, size_t bits) {
    errorFlag = false;
    functions_.StoreGetRaw(tdi, tdo, tms, LibraryCount(bits));
    Sync();
    ThrowReportedError();
}

void OmJLink::Send(const uint8_t* tdi, const uint8_t* tms, size_t bits) {
    errorFlag = false;
    functions_.StoreRaw(tdi, tms, LibraryCount(bits));
    Sync();
    ThrowReportedError();
}

// The library keeps what it is given until something asks for it. Errors belong to the action that
// caused them, and a flash that was told to erase has to begin now.
void OmJLink::Sync() {
    if (functions_.SyncBits && !errorFlag)
        functions_.SyncBits();
}

void OmJLink::ResetTap() {
    constexpr uint8_t kTms[] = {0xFF, 0xFF, 0xFF, 0x7F}; // 31 clocks high, one low
    constexpr uint8_t kTdi[] = {0xFF, 0x00, 0x00, 0x00};
    uint8_t tdo[4];
    ClearPendingError();
    Exchange(kTdi, tdo, kTms, 32);
}

void OmJLink::ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    static Arrays arrays;
    Scan(arrays, OmScanRegister::Data, in, *out, from, to);
}

void OmJLink::ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    static Arrays arrays;
    Scan(arrays, OmScanRegister::Instruction, in, *out, from, to);
}

void OmJLink::Scan(Arrays& arrays, OmScanRegister which, const OmBitVector& in, OmBitVector& out,
                   int from, int to) {
    RequireBits(in);
    out.clear();
    ClearPendingError();
    arrays.Reserve(in.size(), 1);
    OmJtagBitWriter writer(arrays.tms.data(), arrays.tdi.data());
    const size_t start = writer.PutScan(which, in, from, to);
    Exchange(arrays.tdi.data(), arrays.tdo.data(), arrays.tms.data(), writer.GetPosition());
    out.resize(in.size());
    UnpackBits(arrays.tdo.data(), start, out);
}

void OmJLink::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    ScanHeadAndRest(vectors, captured, [&](auto part) { ScanBatch(part, captured); });
}

void OmJLink::ScanBatch(std::span<const OmScanVector> vectors, OmCapturedList* captured) {
    static Arrays arrays;
    const size_t bits = vectors.front().bits.size();
    ClearPendingError();
    arrays.Reserve(bits, vectors.size());
    OmJtagBitWriter writer(arrays.tms.data(), arrays.tdi.data());
    const std::vector<size_t> positions = writer.PutScans(vectors, captured != nullptr);
    if (positions.empty())
        return Send(arrays.tdi.data(), arrays.tms.data(), writer.GetPosition());
    Exchange(arrays.tdi.data(), arrays.tdo.data(), arrays.tms.data(), writer.GetPosition());
    UnpackScans(arrays.tdo.data(), positions, 0, bits, *captured);
}

void OmJLink::GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status) {
    GetPairVectorsPerTransfer(bits, reading, blind, status);
}
