#include "virtualboard/Board.h"

#include "virtualboard/MakeFlash.h"
#include "virtualboard/Numbers.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <stdexcept>

namespace vb {

namespace {

// "NAME(3)" taken apart; -1 for a scalar.
struct PortReference {
    std::string name;
    int index = -1;
};

PortReference ParsePort(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const size_t bracket = text.find('(');
    if (bracket == std::string::npos)
        return {text, -1};
    return {text.substr(0, bracket), std::stoi(text.substr(bracket + 1))};
}

struct FlashPinName {
    const char* name;
    FlashPin pin;
};

constexpr FlashPinName kFlashPins[] = {
    {"CE", FlashPin::ChipEnable}, {"OE", FlashPin::OutputEnable}, {"WE", FlashPin::WriteEnable},
    {"RESET", FlashPin::Reset},   {"WP", FlashPin::Wp},
};

Drive WhenDisabled(const CellEntry& entry) {
    if (entry.disableResult == DisableResult::WeakLow)
        return Drive::WeakLow;
    return entry.disableResult == DisableResult::WeakHigh ? Drive::WeakHigh : Drive::Released;
}

} // namespace

Board::Board() : chain_(clock_) {
    chain_.SetObserver(this);
}

Board::~Board() = default;

ChainDevice& Board::AddDevice(const std::string& name, const std::string& bsdlText) {
    auto device = std::make_unique<ChainDevice>(name, ReadBsdl(bsdlText));
    driversOfCell_.emplace_back(device->Description().cells.size());
    owners_.push_back(device->Owner());
    return chain_.AddDevice(std::move(device));
}

FlashSocket& Board::AddFlash(const std::string& name, const FlashParameters& parameters) {
    if (parameters.sectors.empty())
        throw std::runtime_error("flash " + name + " has no sectors");
    sockets_.push_back(std::make_unique<FlashSocket>(name, MakeFlash(parameters, clock_), wiring_,
                                                     checker_, scans_));
    return *sockets_.back();
}

FlashSocket* Board::FindFlash(const std::string& name) {
    for (const auto& socket : sockets_)
        if (socket->Name() == name)
            return socket.get();
    return nullptr;
}

ChainDevice* Board::FindDevice(const std::string& name) {
    for (size_t i = 0; i < chain_.DeviceCount(); ++i)
        if (chain_.Device(i).Name() == name)
            return &chain_.Device(i);
    return nullptr;
}

NetId Board::NetNamed(const std::string& net) {
    const int64_t found = wiring_.FindNet(net);
    return found >= 0 ? static_cast<NetId>(found) : wiring_.AddNet(net);
}

void Board::Connect(const std::string& net, const std::string& pin) {
    const bool inverted = pin.starts_with('!');
    const std::string plain = pin.substr(inverted ? 1 : 0);
    const size_t dot = plain.find('.');
    if (dot == std::string::npos)
        throw std::runtime_error("'" + pin + "' is not a pin such as U1.PA(3) or F1.A3");
    const std::string part = plain.substr(0, dot);
    const std::string name = plain.substr(dot + 1);
    if (FlashSocket* socket = FindFlash(part))
        return ConnectFlash(NetNamed(net), *socket, name, inverted);
    for (size_t i = 0; i < chain_.DeviceCount(); ++i)
        if (chain_.Device(i).Name() == part && !inverted)
            return ConnectDevice(NetNamed(net), i, name);
    throw std::runtime_error("nothing on the board can be '" + pin + "'");
}

void Board::ConnectFlash(NetId net, FlashSocket& socket, const std::string& pin, bool inverted) {
    for (const FlashPinName& row : kFlashPins)
        if (pin == row.name)
            return socket.Connect(row.pin, 0, net, inverted);
    const bool isBus = pin.size() > 1 && (pin[0] == 'A' || pin[0] == 'D');
    if (!isBus)
        throw std::runtime_error("a flash has no pin '" + pin + "'");
    const FlashPin bus = pin[0] == 'A' ? FlashPin::Address : FlashPin::Data;
    socket.Connect(bus, ParseNumber(pin.substr(1)), net, inverted);
}

void Board::ConnectDevice(NetId net, size_t device, const std::string& pin) {
    const ChainDevice& part = chain_.Device(device);
    const PortReference port = ParsePort(pin);
    const PortDescription* found = part.Description().FindPort(port.name);
    if (!found || !found->Holds(port.index))
        throw std::runtime_error(part.Name() + " has no port '" + pin + "'");
    const auto& cells = part.Description().cells;
    const std::string label = part.Name() + "." + pin;
    if (!wiredPins_.insert(label).second)
        throw std::runtime_error(label + " is on another net already");
    for (uint32_t cell = 0; cell < cells.size(); ++cell)
        for (const CellEntry& entry : cells[cell])
            if (entry.port == port.name && entry.index == port.index)
                ConnectCell(net, device, cell, entry, label);
}

void Board::ConnectCell(NetId net, size_t device, uint32_t cell, const CellEntry& entry,
                        const std::string& label) {
    ChainDevice& part = chain_.Device(device);
    if (entry.function == CellFunction::Input || entry.function == CellFunction::Bidirectional)
        wiring_.AddListener(net, {.device = &part, .cell = cell});
    if (entry.function != CellFunction::Output && entry.function != CellFunction::Bidirectional)
        return;
    const auto index = static_cast<uint32_t>(pinDrivers_.size());
    pinDrivers_.push_back({static_cast<uint32_t>(device), cell, entry.controlCell,
                           entry.disableValue, WhenDisabled(entry), wiring_.AddDriver(net, label)});
    driversOfCell_[device][cell].push_back(index);
    part.WatchCell(cell);
    if (entry.controlCell < 0)
        return;
    driversOfCell_[device][static_cast<size_t>(entry.controlCell)].push_back(index);
    part.WatchCell(static_cast<uint32_t>(entry.controlCell));
}

void Board::Pull(const std::string& net, bool high) {
    wiring_.SetPull(NetNamed(net), high);
}

void Board::Tie(const std::string& net, bool high) {
    const DriverId driver = wiring_.AddDriver(NetNamed(net), high ? "VCC" : "GND");
    wiring_.SetDrive(driver, high ? Drive::High : Drive::Low);
}

void Board::PowerUp() {
    for (size_t i = 0; i < chain_.DeviceCount(); ++i)
        DriveDevice(i);
    Propagate();
}

Drive Board::DriveOf(const PinDriver& pin) const {
    const ChainDevice& device = chain_.Device(pin.device);
    if (device.Owner() == PinOwner::Core)
        return Drive::Core;
    if (device.Owner() == PinOwner::Nobody)
        return Drive::Released;
    if (pin.controlCell >= 0 &&
        device.LatchOf(static_cast<uint32_t>(pin.controlCell)) == pin.disableValue)
        return pin.whenDisabled;
    return device.LatchOf(static_cast<uint32_t>(pin.dataCell)) ? Drive::High : Drive::Low;
}

void Board::DriveCell(size_t device, uint32_t cell) {
    for (uint32_t index : driversOfCell_[device][cell])
        wiring_.SetDrive(pinDrivers_[index].driver, DriveOf(pinDrivers_[index]));
}

void Board::DriveDevice(size_t device) {
    for (const PinDriver& pin : pinDrivers_)
        if (pin.device == device)
            wiring_.SetDrive(pin.driver, DriveOf(pin));
}

// Nets first, then the chips that saw a change, then the nets that the chips drive.
void Board::Propagate() {
    wiring_.Resolve();
    for (const auto& socket : sockets_)
        if (socket->Touched())
            socket->Evaluate();
    wiring_.Resolve();
    for (const auto& socket : sockets_)
        if (socket->Touched())
            socket->Commit();
    wiring_.ReportContention(checker_, scans_);
}

void Board::BeforeCapture() {
    for (const auto& socket : sockets_)
        socket->Refresh();
    wiring_.Resolve();
    for (const auto& socket : sockets_) {
        socket->CheckCapture();
        if (socket->Touched())
            socket->Commit();
    }
}

void Board::AfterDataUpdate(const std::vector<std::vector<uint32_t>>& changedCells) {
    ++scans_;
    for (size_t device = 0; device < changedCells.size(); ++device) {
        if (chain_.Device(device).Owner() != PinOwner::BoundaryRegister)
            continue;
        for (uint32_t cell : changedCells[device])
            DriveCell(device, cell);
    }
    Propagate();
}

void Board::AfterInstructionChange() {
    for (size_t i = 0; i < chain_.DeviceCount(); ++i) {
        const PinOwner owner = chain_.Device(i).Owner();
        if (owner == owners_[i])
            continue;
        if (owners_[i] == PinOwner::BoundaryRegister && owner == PinOwner::Core)
            for (const auto& socket : sockets_)
                socket->CheckCoreRelease(chain_.Device(i).Name());
        owners_[i] = owner;
        DriveDevice(i);
    }
    Propagate();
}

std::vector<uint8_t> Board::FlashContents() {
    std::vector<uint8_t> contents;
    if (sockets_.empty())
        return contents;
    for (const auto& socket : sockets_)
        socket->Model().Settle();
    const uint32_t lane = sockets_.front()->Model().Parameters().WordBytes();
    const size_t words = sockets_.front()->Model().Bytes().size() / lane;
    contents.reserve(words * lane * sockets_.size());
    for (size_t word = 0; word < words; ++word)
        for (const auto& socket : sockets_) {
            const auto from = socket->Model().Bytes().begin() + static_cast<int64_t>(word * lane);
            contents.insert(contents.end(), from, from + lane);
        }
    return contents;
}

NetLevel Board::LevelOf(const std::string& net) const {
    const int64_t found = wiring_.FindNet(net);
    if (found < 0)
        throw std::runtime_error("there is no net '" + net + "'");
    return wiring_.Level(static_cast<NetId>(found));
}

BusCycles Board::TotalBusCycles() const {
    BusCycles total;
    for (const auto& socket : sockets_) {
        total.reads += socket->Cycles().reads;
        total.writes += socket->Cycles().writes;
    }
    return total;
}

FlashModel& Board::ModelNamed(const std::string& flash) {
    FlashSocket* socket = FindFlash(flash);
    if (!socket)
        throw std::runtime_error("there is no flash '" + flash + "'");
    return socket->Model();
}

void Board::KeepContents(const std::string& flash, const std::string& path) {
    std::vector<uint8_t>& bytes = ModelNamed(flash).Bytes();
    keptContents_[flash] = path;
    std::ifstream file(path, std::ios::binary); // none yet: the chip is as it left the factory
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void Board::KeepState(const std::string& flash, const std::string& path) {
    FlashModel& model = ModelNamed(flash);
    keptStates_[flash] = path;
    std::ifstream file(path); // none: the power has just come
    std::string state;
    if (std::getline(file, state))
        model.Restore(state);
}

void Board::SaveContents() {
    for (const auto& [flash, path] : keptContents_) {
        FlashModel& model = ModelNamed(flash);
        model.Settle();
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(model.Bytes().data()),
                   static_cast<std::streamsize>(model.Bytes().size()));
    }
    for (const auto& [flash, path] : keptStates_)
        std::ofstream(path) << ModelNamed(flash).State() << "\n";
}

} // namespace vb
