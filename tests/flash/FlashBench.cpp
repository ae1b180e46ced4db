#include "tests/flash/FlashBench.h"

#include "platform/Text.h"
#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

namespace {

OmChainDevice MakeBenchDevice(const BenchShape& shape) {
    const int dataBits = shape.chips * shape.wordSize * 8;
    const int length = kBenchAddress + shape.addressPins + 2 * dataBits;
    std::vector<std::string> names; // lives as long as the rows point into it
    names.reserve(static_cast<size_t>(length));
    std::vector<CellRow> cells{{kBenchCe, "CE", "OUTPUT2", "1"},
                               {kBenchOe, "OE", "OUTPUT2", "1"},
                               {kBenchWe, "WE", "OUTPUT2", "1"},
                               {kBenchControl, "*", "CONTROL", "0"}};
    const auto add = [&](char port, int index, const char* function, const char* control) {
        const int number = static_cast<int>(cells.size());
        names.push_back(OmFormat("%c(%d)", port, index));
        cells.push_back(
            {number, names.back().c_str(), function, "X", control, *control ? "0" : ""});
    };
    for (int i = 0; i < shape.addressPins; ++i)
        add('A', i, "OUTPUT2", "");
    for (int i = 0; i < dataBits; ++i)
        add('D', i, "OUTPUT3", "3");
    for (int i = 0; i < dataBits; ++i)
        add('D', i, "INPUT", "");
    return MakeDevice("bench", length, cells);
}

OmDesignSetup MakeSetup(const BenchShape& shape) {
    OmDesignSetup setup;
    setup.devices.push_back(MakeBenchDevice(shape));
    setup.ce = MakePin(0, "CE");
    setup.oe = MakePin(0, "OE");
    setup.we = MakePin(0, "WE");
    for (int i = 0; i < shape.addressPins; ++i)
        setup.addressPins.push_back(MakePin(0, "A", i));
    for (int i = 0; i < shape.chips * shape.wordSize * 8; ++i)
        setup.dataPins.push_back(MakePin(0, "D", i));
    setup.ChipCount = shape.chips;
    setup.WordSize = shape.wordSize;
    setup.AddrCmdShift = shape.shift;
    return setup;
}

uint32_t Number(const OmBitVector& bits, int first, int count) {
    uint32_t value = 0;
    for (int i = 0; i < count && i < 32; ++i)
        value |= uint32_t{bits[first + i]} << i;
    return value;
}

} // namespace

BenchPins BenchCable::Decode(const OmBitVector& bits) const {
    BenchPins decoded;
    decoded.ce = bits[kBenchCe];
    decoded.oe = bits[kBenchOe];
    decoded.we = bits[kBenchWe];
    decoded.driven = bits[kBenchControl];
    decoded.address = Number(bits, kBenchAddress, shape.addressPins);
    decoded.data = Number(bits, kBenchAddress + shape.addressPins, DataBits());
    return decoded;
}

std::string BenchCable::Render(const OmScanVector& scan) const {
    const BenchPins shown = Decode(scan.bits);
    const int dataDigits = DataBits() / 4;
    std::string row = OmFormat("  %0*X ", (shape.addressPins + 3) / 4, shown.address);
    row += shown.driven ? OmFormat("%0*X", dataDigits, shown.data) : std::string(dataDigits, 'Z');
    row += OmFormat(" %d %d %d", shown.ce, shown.oe, shown.we);
    return row + (scan.capture ? " r" : "");
}

// The input cells sample at Capture-DR, before this scan's update.
OmBitVector BenchCable::Capture(const OmBitVector& bits) {
    ++captureCount;
    uint32_t word = 0;
    if (flash) {
        word = flash(pins);
    } else if (!answers.empty()) {
        word = answers.front();
        answers.pop_front();
    }
    OmBitVector captured = bits;
    const int inputs = kBenchAddress + shape.addressPins + DataBits();
    for (int i = 0; i < DataBits(); ++i)
        captured[inputs + i] = i < 32 ? (word >> i) & 1 : 0;
    return captured;
}

void BenchCable::Update(const BenchPins& next) {
    ++scanCount;
    ++scansSinceWrite;
    const bool writeEnds = !pins.ce && !pins.we && next.we;
    if (writeEnds) {
        scansSinceWrite = 0;
        if (onWrite)
            onWrite(pins.address, pins.data);
    }
    pins = next;
}

void BenchCable::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    runSizes.push_back(vectors.size());
    Log(captured ? "write and read" : "write");
    if (captured)
        captured->clear();
    for (const OmScanVector& scan : vectors) {
        Log(Render(scan));
        if (captured && scan.capture)
            captured->push_back(Capture(scan.bits));
        Update(Decode(scan.bits));
    }
}

void BenchCable::ScanDR(const OmBitVector&, OmBitVector*, int, int) {
    ADD_FAILURE() << "the bus works in batches alone";
}

void BenchCable::ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    EXPECT_EQ(kScanFromIdle, from);
    EXPECT_EQ(kScanToIdle, to);
    Log("IR " + BitsToText(in));
    *out = in;
}

void BenchCable::GetVectorsPerTransfer(uint32_t bits, float* read, float* write, float* both) {
    askedBits = bits;
    if (read)
        *read = reading;
    if (write)
        *write = blind;
    if (both)
        *both = status;
}

void BenchCable::SleepMilliseconds(unsigned milliseconds) {
    VirtualClock::SleepMilliseconds(milliseconds);
    Log(OmFormat("sleep %u", milliseconds));
}

FlashBench::FlashBench(const BenchShape& shape)
    : cable(shape), setup(MakeSetup(shape)), analyzer(&cable) {
    std::wstring errors;
    EXPECT_TRUE(bus.BuildFromSetup(setup, setup.devices, errors)) << ToLocal(errors);
    bus.analyzer = &analyzer;
}

std::string FlashBench::TakeLog() {
    std::string taken = "\n" + cable.log; // so that a raw string can start on a line of its own
    cable.log.clear();
    return taken;
}

OmDataImage ImageOfWords(uint32_t busWord, std::initializer_list<uint16_t> words) {
    OmDataImage image;
    uint32_t address = busWord * 2;
    for (const uint16_t word : words) {
        image.SetByte(address++, static_cast<uint8_t>(word));
        image.SetByte(address++, static_cast<uint8_t>(word >> 8));
    }
    return image;
}
