#include "flash/BoundaryScanBus.h"

#include "flash/TransferFit.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/Exception.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

constexpr int kMaxWaitScans = 10000;
constexpr double kWaitSeconds = 0.005;
constexpr double kBatchSeconds = 0.5;

// How many scans of `bits` bits take `seconds` at the frequency of the cable.
int ScansIn(double seconds, uint32_t frequency, size_t bits) {
    return static_cast<int>(seconds * frequency / static_cast<double>(std::max<size_t>(bits, 1)));
}

bool HasCode(const OmChainDevice& device, const char* instruction) {
    OmBitVector code;
    return device.GetInstructionCode(instruction, code);
}

void AddMessage(std::wstring& messages, const wchar_t* separator, const std::wstring& message) {
    if (!messages.empty())
        messages += separator;
    messages += message;
}

void CheckDeviceBsdl(const OmChainDevice& device, const std::wstring& name, std::wstring& errors) {
    constexpr wchar_t kBetween[] = L"\n\n";
    if (!device.bsdl) {
        AddMessage(errors, kBetween,
                   TranslatedFormat("BSDL file is required to be specified for %ls device.",
                                    name.c_str()));
        return;
    }
    if (!HasCode(device, "EXTEST"))
        AddMessage(
            errors, kBetween,
            TranslatedFormat("The BSDL file specified for %ls device contains errors: failed "
                             "to read EXTEST instruction code from the BSDL file.",
                             name.c_str()));
    if (!HasCode(device, "PRELOAD") && !HasCode(device, "SAMPLE"))
        AddMessage(
            errors, kBetween,
            TranslatedFormat("The BSDL file specified for %ls device contains errors: failed "
                             "to read PRELOAD and SAMPLE instructions codes from the BSDL "
                             "file.",
                             name.c_str()));
}

bool CheckUsedDevices(const std::vector<OmChainDevice>& chain, const std::vector<bool>& used,
                      std::wstring& errors) {
    for (size_t device = 0; device < chain.size(); ++device)
        if (used[device])
            CheckDeviceBsdl(chain[device], FormatDeviceName(chain, static_cast<int>(device)),
                            errors);
    return errors.empty();
}

// Looks up the cells of pin after pin and collects what is missing.
struct PinMapper {
    const std::vector<OmChainDevice>& chain;
    std::wstring& errors;
    bool allFound = true;

    // `signal` is the flash pin that the pin is wired to, empty for a static pin.
    void Map(const OmDevicePin& pin, OmPinCellList& cells, const std::wstring& signal) {
        cells = {};
        if (!pin.IsConnected() || FindPinCells(cells, pin, chain))
            return;
        allFound = false;
        AddMessage(errors, L"\n", DescribeMissing(FormatPinName(chain, pin), signal));
    }

    static std::wstring DescribeMissing(const std::wstring& pin, const std::wstring& signal) {
        if (signal.empty())
            return TranslatedFormat("%ls pin is not available for boundary-scan.", pin.c_str());
        return TranslatedFormat("%ls pin, connected to flash %ls pin, is not available for "
                                "boundary-scan.",
                                pin.c_str(), signal.c_str());
    }

    void MapBus(const std::vector<SignalPin>& pins, std::vector<OmPinCellList>& cells,
                const wchar_t* signal) {
        cells.assign(pins.size(), {});
        for (size_t i = 0; i < pins.size(); ++i)
            Map(pins[i], cells[i], signal + std::to_wstring(i));
    }
};

void DropUnconnectedTail(std::vector<SignalPin>& pins) {
    while (!pins.empty() && !pins.back().IsConnected())
        pins.pop_back();
}

} // namespace

bool OmBoundaryScanBus::BuildFromSetup(const OmFlashPins& setup,
                                       const std::vector<OmChainDevice>& chain,
                                       std::wstring& errors) {
    errors.clear();
    CopySetup(setup);
    NormalizePins();
    std::vector<bool> used = CollectUsedDevices(chain.size());
    if (!CheckUsedDevices(chain, used, errors))
        return false;
    layout = BuildChainLayout(chain, std::move(used));
    return MapPinsToCells(chain, errors);
}

void OmBoundaryScanBus::CopySetup(const OmFlashPins& setup) {
    ce = setup.ce;
    oe = setup.oe;
    we = setup.we;
    address = setup.addressPins;
    data = setup.dataPins;
    statics = setup.staticPins;
    chipCount = setup.ChipCount;
    wordSize = setup.WordSize;
    addrCmdShift = setup.AddrCmdShift;
}

void OmBoundaryScanBus::NormalizePins() {
    DropUnconnectedTail(address);
    DropUnconnectedTail(data);
    // -1 stands for a number not selected.
    data.resize(static_cast<size_t>(std::max(chipCount, 0)) * std::max(wordSize, 0) * 8);
}

std::vector<bool> OmBoundaryScanBus::CollectUsedDevices(size_t deviceCount) const {
    std::vector<bool> used(deviceCount, false);
    const auto mark = [&used](const OmDevicePin& pin) {
        if (pin.IsConnected() && static_cast<size_t>(pin.Device) < used.size())
            used[pin.Device] = true;
    };
    mark(ce);
    mark(oe);
    mark(we);
    std::for_each(address.begin(), address.end(), mark);
    std::for_each(data.begin(), data.end(), mark);
    std::for_each(statics.begin(), statics.end(), mark);
    return used;
}

bool OmBoundaryScanBus::MapPinsToCells(const std::vector<OmChainDevice>& chain,
                                       std::wstring& errors) {
    PinMapper mapper{chain, errors};
    mapper.Map(ce, ceCells, L"CE");
    mapper.Map(oe, oeCells, L"OE");
    mapper.Map(we, weCells, L"WE");
    mapper.MapBus(address, addressCells, L"A");
    mapper.MapBus(data, dataCells, L"D");
    staticCells.assign(statics.size(), {});
    for (size_t i = 0; i < statics.size(); ++i)
        mapper.Map(statics[i], staticCells[i], L"");
    return mapper.allFound;
}

void OmBoundaryScanBus::ApplyControl(const OmPinCellList& cells, const SignalPin& pin,
                                     uint8_t level, OmBitVector& image) const {
    if (cells.cells.empty())
        return;
    if (pin.Inverted && level <= 1)
        level ^= 1;
    SetPinValue(cells, level, image, Base(pin));
}

void OmBoundaryScanBus::ApplyPinState(const OmBusPinState& state, OmBitVector& image,
                                      unsigned mask) const {
    if (mask & PinStateCE)
        ApplyControl(ceCells, ce, state.ceLevel, image);
    if (mask & PinStateOE)
        ApplyControl(oeCells, oe, state.oeLevel, image);
    if (mask & PinStateWE)
        ApplyControl(weCells, we, state.weLevel, image);
    if (mask & PinStateAddress)
        for (size_t i = 0; i < state.addressBits.size(); ++i)
            if (!addressCells[i].cells.empty())
                SetPinValue(addressCells[i], state.addressBits[i], image, Base(address[i]));
    if (mask & PinStateData)
        for (size_t i = 0; i < state.dataBits.size(); ++i)
            if (!dataCells[i].cells.empty())
                SetPinValue(dataCells[i], state.dataBits[i], image, Base(data[i]));
    if (mask & PinStateStatic)
        for (size_t i = 0; i < statics.size(); ++i)
            if (!staticCells[i].cells.empty())
                SetPinValue(staticCells[i], statics[i].Value, image, Base(statics[i]));
}

uint8_t OmBoundaryScanBus::SenseDataBit(size_t bit, const OmBitVector& image) const {
    if (dataCells[bit].cells.empty())
        return 0;
    const uint8_t value = GetPinValue(dataCells[bit], image, Base(data[bit]));
    if (value == kBitUnknown)
        throw OmException(Translated(kInvalidBitSequence));
    return value;
}

void OmBoundaryScanBus::DecodeDataPins(const OmBitVector& image, OmBusPinState& state) const {
    for (size_t i = 0; i < state.dataBits.size(); ++i)
        state.dataBits[i] = SenseDataBit(i, image);
}

uint32_t OmBoundaryScanBus::DecodeDataWord(const OmBitVector& image) const {
    uint64_t word = 0;
    for (size_t i = 0; i < dataCells.size(); ++i)
        word |= i < 32 ? uint64_t{SenseDataBit(i, image)} << i : 0;
    return static_cast<uint32_t>(word);
}

unsigned OmBoundaryScanBus::BusWordBytes() const {
    return static_cast<unsigned>((data.size() + 7) / 8);
}

uint32_t OmBoundaryScanBus::ChipLaneValue(int chip, uint32_t value) const {
    const int shift = wordSize * chip * 8;
    return shift < 32 ? ChipLane(0, value) << shift : 0;
}

uint32_t OmBoundaryScanBus::EveryLaneValue(uint32_t value) const {
    uint32_t word = 0;
    for (int chip = 0; chip < chipCount; ++chip)
        word |= ChipLaneValue(chip, value);
    return word;
}

uint32_t OmBoundaryScanBus::ChipLane(int chip, uint32_t word) const {
    const int shift = wordSize * chip * 8;
    const uint32_t lane = shift < 32 ? word >> shift : 0;
    return wordSize == 1 ? lane & 0xFF : wordSize == 2 ? lane & 0xFFFF : lane;
}

uint8_t OmBoundaryScanBus::ChipLaneByte(int chip, uint32_t word) const {
    return static_cast<uint8_t>(ChipLane(chip, word));
}

uint32_t OmBoundaryScanBus::ChipOffsetToWord(uint32_t chipOffset) const {
    return chipOffset / static_cast<uint32_t>(std::max(wordSize, 1));
}

int OmBoundaryScanBus::MaxWaitScans() const {
    const int scans =
        1 + ScansIn(kWaitSeconds, analyzer->GetFrequency(), layout.defaultImage.size());
    return std::min(scans, kMaxWaitScans);
}

// Two scans of the read pulse are part of the wait.
int OmBoundaryScanBus::WaitScansFor(uint32_t microseconds) const {
    constexpr int kPulse = 2;
    constexpr double kMicrosecond = 1e-6;
    const int scans =
        ScansIn(microseconds * kMicrosecond, analyzer->GetFrequency(), layout.defaultImage.size());
    return std::clamp(scans - kPulse, 0, kMaxWaitScans);
}

int OmBoundaryScanBus::ItemsPerTransfer(int scansPerItem, int extraScans,
                                        OmTransferKind kind) const {
    const size_t bits = layout.defaultImage.size();
    float perTransfer = -1.0f;
    float* figures[3] = {};
    figures[static_cast<int>(kind)] = &perTransfer;
    analyzer->GetVectorsPerTransfer(static_cast<uint32_t>(bits), figures[0], figures[1],
                                    figures[2]);
    if (!(perTransfer > 0))
        return 1;
    const int cap = ScansIn(kBatchSeconds, analyzer->GetFrequency(), bits);
    return FitItemsToTransfers(cap, scansPerItem, extraScans, perTransfer);
}
