#include "tests/flash/FakeTarget.h"

#include "jtag/Exception.h"

#include <algorithm>

namespace {

// Instructions of the flash device; BYPASS is all ones (IEEE 1149.1, clause 8.4.1).
constexpr char kExtest[] = "0000";
constexpr char kPreload[] = "0010";

// Boundary cells: CE, OE, WE, the address outputs, then for each data pin a BIDIR cell and its
// control cell.
constexpr size_t kCeCell = 0;
constexpr size_t kOeCell = 1;
constexpr size_t kWeCell = 2;
constexpr size_t kFirstAddressCell = 3;
constexpr uint8_t kDisable = 1;

constexpr size_t kIdcodeBits = 32;

class FakeCable : public OmCable, public OmJtagHAL {
  public:
    explicit FakeCable(FakeTarget& target) : target_(target) { ++target_.cablesOpen; }

    ~FakeCable() override { --target_.cablesOpen; }

    FakeCable(const FakeCable&) = delete;
    FakeCable& operator=(const FakeCable&) = delete;

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override { target_.ResetTap(); }

    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override {
        if (captured)
            captured->clear();
        for (const OmScanVector& vector : vectors) {
            OmBitVector out = target_.ScanDR(vector.bits);
            if (captured && vector.capture)
                captured->push_back(std::move(out));
        }
    }

    void ScanDR(const OmBitVector& in, OmBitVector* out, int, int) override {
        *out = target_.ScanDR(in);
    }

    void ScanIR(const OmBitVector& in, OmBitVector* out, int, int) override {
        *out = target_.ScanIR(in);
    }

    uint32_t GetFrequency() override { return target_.frequency; }

    void GetVectorsPerTransfer(uint32_t, float* reading, float* blind, float* status) override {
        for (float* answer : {reading, blind, status})
            if (answer)
                *answer = target_.vectorsPerTransfer;
    }

  private:
    FakeTarget& target_;
};

// What a register of `captured` bits gives and keeps when `in` is shifted through.
OmBitVector Shift(OmBitVector& content, const OmBitVector& in) {
    OmBitVector stream = content;
    AppendBits(stream, in);
    OmBitVector out(stream.begin(), stream.begin() + static_cast<ptrdiff_t>(in.size()));
    content.assign(stream.end() - static_cast<ptrdiff_t>(content.size()), stream.end());
    return out;
}

std::string VectorName(const char* port, size_t index) {
    return std::string(port) + "(" + std::to_string(index) + ")";
}

SignalPin Connect(const char* port, int index) {
    SignalPin pin;
    pin.Device = 0;
    pin.PortName = port;
    pin.PortIndex = index;
    return pin;
}

} // namespace

FakeTarget::FakeTarget(int chipCount, int wordSizeBytes, int addressPins)
    : chips(static_cast<size_t>(chipCount)), wordSize_(wordSizeBytes),
      addressPins_(static_cast<size_t>(addressPins)),
      dataPins_(static_cast<size_t>(chipCount * wordSizeBytes * 8)), latches_(BoundaryLength(), 1) {
    for (FakeFlashChip& chip : chips) {
        chip.mask = wordSize_ == 4 ? 0xFFFFFFFFU : (1U << (wordSize_ * 8)) - 1;
        chip.addressMask = (1U << addressPins_) - 1;
    }
}

std::unique_ptr<OmCable> FakeTarget::MakeCable() {
    return std::make_unique<FakeCable>(*this);
}

size_t FakeTarget::BoundaryLength() const {
    return kFirstAddressCell + addressPins_ + 2 * dataPins_;
}

std::unique_ptr<OmBsdlData> FakeTarget::MakeBsdl() const {
    auto bsdl = std::make_unique<OmBsdlData>();
    bsdl->entity = "FAKE";
    const auto attribute = [&](const char* name, const std::string& value) {
        bsdl->AddAttribute(name, "FAKE", "entity", value);
    };
    attribute("INSTRUCTION_LENGTH", "4");
    attribute("BOUNDARY_LENGTH", std::to_string(BoundaryLength()));
    bsdl->AddInstructionCode("EXTEST", kExtest);
    bsdl->AddInstructionCode("PRELOAD", kPreload);
    size_t cell = 0;
    const auto add = [&](const std::string& port, const char* function, const char* safe,
                         const std::string& control) {
        bsdl->AddCell(std::to_string(cell++), "BC_1", port, function, safe, control,
                      control.empty() ? "" : "1", control.empty() ? "" : "Z");
    };
    for (const char* port : {"CE", "OE", "WE"})
        add(port, "OUTPUT2", "1", "");
    for (size_t i = 0; i < addressPins_; ++i)
        add(VectorName("A", i), "OUTPUT2", "X", "");
    for (size_t i = 0; i < dataPins_; ++i) {
        add(VectorName("D", i), "BIDIR", "X", std::to_string(cell + 1));
        add("*", "CONTROL", "1", "");
    }
    return bsdl;
}

OmDesignSetup FakeTarget::MakeSetup(int cmdSet) const {
    OmDesignSetup setup;
    setup.devices.resize(1);
    setup.devices[0].SetBsdl(MakeBsdl(), "fake.bsd");
    setup.ce = Connect("CE", -1);
    setup.oe = Connect("OE", -1);
    setup.we = Connect("WE", -1);
    for (size_t i = 0; i < addressPins_; ++i)
        setup.addressPins.push_back(Connect("A", static_cast<int>(i)));
    for (size_t i = 0; i < dataPins_; ++i)
        setup.dataPins.push_back(Connect("D", static_cast<int>(i)));
    setup.ChipCount = static_cast<int>(chips.size());
    setup.WordSize = wordSize_;
    setup.AddrCmdShift = 0;
    setup.CmdSet = cmdSet;
    const uint32_t words = 1U << addressPins_;
    setup.sectors.Insert(words / chips[0].sectorWords,
                         chips[0].sectorWords * static_cast<uint32_t>(wordSize_), -1);
    return setup;
}

std::vector<uint8_t> FakeTarget::Content(size_t count) const {
    std::vector<uint8_t> bytes;
    const size_t chipBytes = static_cast<size_t>(wordSize_);
    for (size_t i = 0; i < count; ++i) {
        const FakeFlashChip& chip = chips[i / chipBytes % chips.size()];
        const auto cell = chip.cells.find(static_cast<uint32_t>(i / (chipBytes * chips.size())));
        const uint32_t word = cell == chip.cells.end() ? chip.mask : cell->second;
        bytes.push_back(static_cast<uint8_t>(word >> (i % chipBytes * 8)));
    }
    return bytes;
}

void FakeTarget::CountCall() {
    if (callsUntilFailure == 0)
        throw OmException(failureText);
    if (callsUntilFailure > 0)
        --callsUntilFailure;
}

void FakeTarget::ResetTap() {
    CountCall();
    ++resets;
    register_ = Register::Idcode;
    driving_ = false;
    pins_ = Pins(); // pulled to their idle levels
}

OmBitVector FakeTarget::ScanIR(const OmBitVector& in) {
    CountCall();
    if (tdoStuckAt)
        return OmBitVector(in.size(), *tdoStuckAt);
    OmBitVector content;
    for (auto device = devices.rbegin(); device != devices.rend(); ++device) {
        AppendBits(content, {1, 0});
        AppendBits(content, device->irLength - 2, 0);
    }
    const OmBitVector out = Shift(content, in);
    size_t position = 0;
    for (size_t i = devices.size() - 1; i > flashDevice; --i)
        position += devices[i].irLength;
    const auto begin = content.begin() + static_cast<ptrdiff_t>(position);
    const OmBitVector opcode(begin, begin + 4);
    driving_ = opcode == BitsFromText(kExtest);
    const bool boundary = driving_ || opcode == BitsFromText(kPreload);
    register_ = boundary ? Register::Boundary : Register::Bypass;
    if (driving_)
        DrivePins();
    return out;
}

OmBitVector FakeTarget::CaptureDr() {
    OmBitVector content;
    for (size_t i = devices.size(); i-- > 0;) {
        const FakeChainDevice& device = devices[i];
        if (register_ == Register::Boundary && i == flashDevice) {
            AppendBits(content, CaptureBoundary());
        } else if (register_ == Register::Idcode && device.idcode) {
            for (unsigned bit = 0; bit < kIdcodeBits; ++bit)
                content.push_back((*device.idcode >> bit) & 1);
        } else {
            content.push_back(0);
        }
    }
    return content;
}

// What comes in at TDI, and the devices on the way, never pass the faulty device.
void FakeTarget::MaskBehindFault(OmBitVector& out) const {
    size_t passed = 0;
    for (auto device = devices.rbegin(); device != devices.rend(); ++device) {
        passed += device->idcode ? kIdcodeBits : 1;
        if (device->idcodeMasksTdi && passed < out.size())
            std::fill(out.begin() + static_cast<ptrdiff_t>(passed), out.end(), uint8_t{1});
    }
}

size_t FakeTarget::FirstDataCell() const {
    return kFirstAddressCell + addressPins_;
}

OmBitVector FakeTarget::CaptureBoundary() {
    OmBitVector content = latches_;
    const uint32_t data = driving_ && !pins_.ce && !pins_.oe ? ReadChips() : 0xFFFFFFFF;
    for (size_t i = 0; i < dataPins_; ++i) {
        const size_t cell = FirstDataCell() + 2 * i;
        if (latches_[cell + 1] == kDisable)
            content[cell] = (data >> i) & 1;
    }
    return content;
}

uint32_t FakeTarget::ReadChips() {
    uint32_t data = 0;
    for (size_t i = 0; i < chips.size(); ++i)
        data |= chips[i].Read(pins_.address) << (i * static_cast<size_t>(wordSize_) * 8);
    return data;
}

void FakeTarget::WriteChips(uint32_t address, uint32_t data) {
    for (size_t i = 0; i < chips.size(); ++i)
        chips[i].Write(address, data >> (i * static_cast<size_t>(wordSize_) * 8));
}

FakeTarget::Pins FakeTarget::DecodePins() const {
    Pins pins;
    pins.ce = latches_[kCeCell];
    pins.oe = latches_[kOeCell];
    pins.we = latches_[kWeCell];
    for (size_t i = 0; i < addressPins_; ++i)
        pins.address |= uint32_t{latches_[kFirstAddressCell + i]} << i;
    for (size_t i = 0; i < dataPins_; ++i)
        pins.data |= uint32_t{latches_[FirstDataCell() + 2 * i]} << i;
    return pins;
}

// The flash takes the address at the falling edge of WE and the data at the rising one.
void FakeTarget::DrivePins() {
    const Pins before = pins_;
    pins_ = DecodePins();
    if (before.we && !pins_.we)
        latchedAddress_ = pins_.address;
    if (!before.we && pins_.we && !before.ce)
        WriteChips(latchedAddress_, before.data);
}

OmBitVector FakeTarget::ScanDR(const OmBitVector& in) {
    CountCall();
    if (register_ == Register::Boundary) {
        ++boundaryScans;
        if (onScan)
            onScan();
    }
    if (tdoStuckAt)
        return OmBitVector(in.size(), *tdoStuckAt);
    OmBitVector content = CaptureDr();
    OmBitVector out = Shift(content, in);
    if (register_ == Register::Idcode)
        MaskBehindFault(out);
    if (register_ != Register::Boundary)
        return out;
    const size_t after = devices.size() - 1 - flashDevice; // in BYPASS, one bit each
    const auto begin = content.begin() + static_cast<ptrdiff_t>(after);
    latches_.assign(begin, begin + static_cast<ptrdiff_t>(BoundaryLength()));
    if (driving_)
        DrivePins();
    return out;
}
