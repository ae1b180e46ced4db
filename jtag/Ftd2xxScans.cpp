// The scans of the FT2232 cable: what they cost in MPSSE bytes, and how the answers read.

#include "jtag/BitPacking.h"
#include "jtag/CableErrors.h"
#include "jtag/Ftd2xx.h"
#include "jtag/MpsseProgram.h"
#include "jtag/ScanLists.h"

#include <algorithm>

namespace {

// A run of a batch stays well inside the buffer.
constexpr size_t kRunBytes = 60000;

// Bytes of the MPSSE's commands: an operation code and a length, of two bytes where bytes are
// shifted and of one, with the data after it, where bits are.
constexpr size_t kShiftHead = 3;
constexpr size_t kBitCommand = 3;
// The walk to Shift-DR, the bit that leaves it and the walk back are a command each.
constexpr size_t kWalksAndLastBit = 3 * kBitCommand;

// Payload that one USB transfer is reckoned with when batches are sized.
constexpr float kTransferBytes = 1014.0F;

// One buffer for each kind of scan, process-wide: there is only ever one cable, and one scan at a
// time.
OmMpsseProgram drProgram;
OmMpsseProgram irProgram;
OmMpsseProgram batchProgram;

// The MPSSE shifts TDO into a byte from the top, so that a group of fewer than eight bits stands in
// its upper end.
void DecodeGroup(const uint8_t* answer, std::span<uint8_t> bits) {
    UnpackBits(answer, 8 - bits.size(), bits);
}

uint8_t DecodeLastBit(uint8_t answer) {
    return answer >> 7;
}

} // namespace

// How one vector of a batch divides: whole bytes, the bits after them, and the last bit, which
// goes out with TMS high.
struct OmFtd2xx::Layout {
    explicit Layout(size_t bits)
        : whole((bits - 1) / 8), rest((bits - 1) % 8), readBytes(whole + 1 + (rest ? 1 : 0)),
          perVector(kWalksAndLastBit + (whole ? kShiftHead + whole : 0) +
                    (rest ? kBitCommand : 0)) {}

    void Append(OmMpsseProgram& program, const OmBitVector& vector, bool capture) const {
        const std::span bits(vector);
        program.ClockTms(GetPathToShift(OmScanRegister::Data, kScanFromIdle), true);
        if (whole)
            program.ShiftBytes(bits.first(8 * whole), capture);
        if (rest)
            program.ShiftBits(bits.subspan(8 * whole, rest), capture);
        program.ShiftLastBit(bits.back(), capture);
        program.ClockTms(GetPathFromExit1(kScanToIdle), false);
    }

    void Decode(const uint8_t* answer, OmBitVector& vector) const {
        const std::span bits(vector);
        UnpackBits(answer, 0, bits.first(8 * whole));
        if (rest)
            DecodeGroup(answer + whole, bits.subspan(8 * whole, rest));
        bits.back() = DecodeLastBit(answer[readBytes - 1]);
    }

    size_t whole;
    size_t rest;
    size_t readBytes; // that a captured vector gives
    size_t perVector; // program bytes
};

// No command clocks more than eight times for each of its bytes.
uint64_t OmFtd2xx::MillisecondsOf(const OmMpsseProgram& program) const {
    return program.Bytes().size() * 8 * 1000 / frequency_;
}

void OmFtd2xx::ResetTap() {
    drProgram.Clear();
    drProgram.ClockTms(kTapResetPath, true);
    d2xx_.Write(drProgram.Bytes());
}

void OmFtd2xx::ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    Scan(drProgram, OmScanRegister::Data, in, *out, from, to);
}

void OmFtd2xx::ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    Scan(irProgram, OmScanRegister::Instruction, in, *out, from, to);
}

void OmFtd2xx::Scan(OmMpsseProgram& program, OmScanRegister which, const OmBitVector& in,
                    OmBitVector& out, int from, int to) {
    RequireBits(in);
    out.clear();
    d2xx_.CheckConnection();
    const auto body = std::span(in).first(in.size() - 1);
    program.Clear();
    program.ClockTms(GetPathToShift(which, from), true);
    for (size_t i = 0; i < body.size(); i += 8)
        program.ShiftBits(body.subspan(i, std::min<size_t>(8, body.size() - i)), true);
    program.ShiftLastBit(in.back(), true);
    program.ClockTms(GetPathFromExit1(to), false);
    program.SendImmediate();
    const uint64_t milliseconds = MillisecondsOf(program);
    d2xx_.Write(program.Bytes(), milliseconds);

    const auto answer = program.Answer(PackedSize(body.size()) + 1);
    d2xx_.FtdiRead(answer, milliseconds);
    out.resize(in.size());
    const auto captured = std::span(out).first(body.size());
    for (size_t i = 0; i < captured.size(); i += 8)
        DecodeGroup(&answer[i / 8], captured.subspan(i, std::min<size_t>(8, captured.size() - i)));
    out.back() = DecodeLastBit(answer.back());
}

void OmFtd2xx::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    if (captured)
        captured->clear();
    if (vectors.empty())
        return;
    const Layout layout(RequireEqualLengths(vectors));
    const size_t chunk = kRunBytes / layout.perVector;
    if (chunk == 0)
        ThrowScanTooLong();
    for (size_t start = 0; start < vectors.size(); start += chunk) {
        const size_t count = std::min(chunk, vectors.size() - start);
        ScanRun(std::span(vectors).subspan(start, count), layout, captured);
    }
}

// A run without captures is written and not read: the MPSSE goes on clocking by itself while the
// next one is prepared.
void OmFtd2xx::ScanRun(std::span<const OmScanVector> run, const Layout& layout,
                       OmCapturedList* captured) {
    d2xx_.CheckConnection();
    OmMpsseProgram& program = batchProgram;
    program.Clear();
    size_t readBytes = 0;
    for (const OmScanVector& vector : run) {
        const bool capture = captured && vector.capture;
        layout.Append(program, vector.bits, capture);
        readBytes += capture ? layout.readBytes : 0;
    }
    if (readBytes)
        program.SendImmediate();
    const uint64_t milliseconds = MillisecondsOf(program);
    d2xx_.Write(program.Bytes(), milliseconds);
    if (!readBytes)
        return;
    const auto answer = program.Answer(readBytes);
    d2xx_.FtdiRead(answer, milliseconds);
    const size_t bits = run.front().bits.size();
    for (size_t at = 0; at < readBytes; at += layout.readBytes)
        layout.Decode(&answer[at], captured->emplace_back(bits));
}

void OmFtd2xx::GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status) {
    const Layout layout(std::max<uint32_t>(bits, 1));
    for (float* result : {reading, blind, status}) {
        if (result)
            *result = kTransferBytes / static_cast<float>(layout.perVector);
    }
}
