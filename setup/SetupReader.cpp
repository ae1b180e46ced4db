#include "bsdl/BsdlXml.h"
#include "bsdl/NumberText.h"
#include "bsdl/XmlElements.h"
#include "setup/DesignSetup.h"
#include "setup/SetupFile.h"
#include "setup/XmlFile.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

namespace {

constexpr size_t kMaxBusPins = 32;

// The longest IRs of real devices have some hundred bits; a scan is made of every bit.
constexpr int32_t kMaxIRLength = 1 << 16;

// No longer chain can be examined; working out IR lengths takes time for every bit and device.
constexpr size_t kMaxCaptureLength = 4096;

constexpr int32_t kMaxInt = std::numeric_limits<int32_t>::max();

int32_t GetInt(const wxXmlNode& node, const char* name, int32_t lowest, int32_t highest,
               int32_t fallback) {
    return static_cast<int32_t>(GetXmlNumber(node, name, lowest, highest).value_or(fallback));
}

bool GetBool(const wxXmlNode& node, const char* name, bool fallback) {
    return GetXmlNumber(node, name, 0, 1).value_or(fallback) != 0;
}

// Elements with a number from 1 up each. Nothing if a number is bad, comes twice, or if they do not
// run from 1 without a gap.
using Numbered = std::map<int64_t, const wxXmlNode*>;

std::optional<Numbered> CollectNumbered(const wxXmlNode& parent, const char* element,
                                        const char* attribute) {
    Numbered numbered;
    bool good = true;
    ForEachXmlChild(parent, element, [&](const wxXmlNode& node) {
        const auto number = GetXmlNumber(node, attribute, 1, kMaxInt);
        good = good && number && numbered.emplace(*number, &node).second;
    });
    good = good && !numbered.empty() &&
           numbered.rbegin()->first == static_cast<int64_t>(numbered.size());
    return good ? std::optional(std::move(numbered)) : std::nullopt;
}

using BsdlByPosition = std::map<int64_t, std::unique_ptr<OmBsdlData>>;

bool LoadAllBsdl(const Numbered& devices, BsdlByPosition& allData) {
    for (const auto& [position, node] : devices) {
        const wxXmlNode* child = FindXmlChild(*node, "BSDL");
        if (!child)
            continue;
        auto data = std::make_unique<OmBsdlData>();
        if (!LoadBsdlXml(*child, *data))
            return false;
        allData[position] = std::move(data);
    }
    return true;
}

void LoadDevice(const wxXmlNode& node, std::unique_ptr<OmBsdlData> data, OmChainDevice& device) {
    if (data) {
        device.SetBsdl(std::move(data), GetXmlText(node, "BsdlFile"));
        const std::string mapping = GetXmlText(node, "PinMapping");
        if (!mapping.empty() && device.bsdl->FindPinMapping(mapping))
            device.PinMapping = mapping;
    } else {
        device.IRLen = GetInt(node, "IRLen", 2, kMaxIRLength, -1);
    }
    device.Idcode = BitsFromText(GetXmlWide(node, "Idcode"));
}

void LoadChain(const wxXmlNode& chain, const Numbered& nodes, BsdlByPosition& allData,
               OmDesignSetup& setup) {
    OmBitVector capture = BitsFromText(GetXmlWide(chain, "IRCapture"));
    if (capture.size() > kMaxCaptureLength)
        capture.clear();
    setup.SetChainDevices(std::vector<OmBitVector>(nodes.size()), capture);
    for (const auto& [position, node] : nodes)
        LoadDevice(*node, std::move(allData[position]),
                   setup.devices[static_cast<size_t>(position - 1)]);
    setup.ResolveIRLengths({});
}

OmDevicePin LoadPin(const wxXmlNode& node) {
    return {GetInt(node, "Device", 0, kMaxInt, -1), GetXmlText(node, "PortName"),
            GetInt(node, "PortIndex", -1, kMaxInt, -1)};
}

// The element of a bus that a name such as "A12" means; null if it means none.
SignalPin* FindBusPin(const std::string& name, char letter, std::vector<SignalPin>& bus) {
    if (name.size() < 2 || name[0] != letter)
        return nullptr;
    const auto number = ReadLeadingNumber<int32_t>(std::string_view(name).substr(1));
    return number && *number >= 0 && static_cast<size_t>(*number) < bus.size()
               ? &bus[static_cast<size_t>(*number)]
               : nullptr;
}

SignalPin* FindSignalPin(const std::string& name, OmFlashPins& pins) {
    if (name == "CE")
        return &pins.ce;
    if (name == "OE")
        return &pins.oe;
    if (name == "WE")
        return &pins.we;
    SignalPin* pin = FindBusPin(name, 'A', pins.addressPins);
    return pin ? pin : FindBusPin(name, 'D', pins.dataPins);
}

void LoadSignalPin(const wxXmlNode& node, OmFlashPins& pins) {
    if (SignalPin* pin = FindSignalPin(GetXmlText(node, "Name"), pins))
        *pin = SignalPin{LoadPin(node), node.GetAttribute("Inverted") == "1"};
}

void LoadStaticPin(const wxXmlNode& node, OmFlashPins& pins) {
    const std::wstring value = GetXmlWide(node, "Value");
    if (value == L"0" || value == L"1" || value == L"Z")
        pins.staticPins.push_back(
            StaticPin{LoadPin(node), BitsFromText(value).front(), GetXmlWide(node, "Note")});
}

void TrimUnconnected(std::vector<SignalPin>& bus) {
    while (!bus.empty() && !bus.back().IsConnected())
        bus.pop_back();
}

void LoadPins(const wxXmlNode& node, OmFlashPins& pins) {
    pins.addressPins.resize(kMaxBusPins);
    pins.dataPins.resize(kMaxBusPins);
    ForEachXmlChild(node, "SignalPin", [&](const wxXmlNode& pin) { LoadSignalPin(pin, pins); });
    ForEachXmlChild(node, "StaticPin", [&](const wxXmlNode& pin) { LoadStaticPin(pin, pins); });
    TrimUnconnected(pins.addressPins);
    TrimUnconnected(pins.dataPins);
}

void LoadFlash(const wxXmlNode& node, OmFlashPins& pins) {
    pins.ChipCount = GetInt(node, "ChipCount", 1, 4, -1);
    const int32_t wordSize = GetInt(node, "WordSize", 1, 4, -1);
    pins.WordSize = wordSize == 3 ? -1 : wordSize;
    pins.AddrCmdShift = GetInt(node, "AddrCmdShift", 0, 2, -1);
}

void LoadAlgorithm(const wxXmlNode& root, OmDesignSetup& setup) {
    if (const wxXmlNode* node = FindXmlChild(root, "Algorithm")) {
        setup.CmdSet = GetInt(*node, "CmdSet", kCmdSetAuto, kCmdSetAmd, setup.CmdSet);
        setup.UseBufferedProg = GetBool(*node, "UseBufferedProg", setup.UseBufferedProg);
        setup.DontCheckStatus = GetBool(*node, "DontCheckStatus", setup.DontCheckStatus);
    }
    if (const wxXmlNode* node = FindXmlChild(root, "AMD"))
        setup.UseUnlockBypass = GetBool(*node, "UseUnlockBypass", setup.UseUnlockBypass);
}

// All of the layout or nothing: half a sector map would erase the wrong sectors.
OmFlashSectorLayout LoadSectors(const wxXmlNode& root) {
    const wxXmlNode* node = FindXmlChild(root, "Sectors");
    const auto nodes = node ? CollectNumbered(*node, "Group", "Pos") : std::nullopt;
    if (!nodes)
        return {};
    OmFlashSectorLayout sectors;
    for (const auto& [position, group] : *nodes) {
        const auto count = GetXmlNumber(*group, "Count", 1, std::numeric_limits<uint32_t>::max());
        const auto size = GetXmlNumber(*group, "Size", 1, std::numeric_limits<uint32_t>::max());
        if (!count || !size)
            return {};
        sectors.groups.push_back({static_cast<uint32_t>(*count), static_cast<uint32_t>(*size)});
    }
    return sectors.FitsAChip() ? sectors : OmFlashSectorLayout();
}

} // namespace

// Only a damaged chain rejects a file: without it the pins mean nothing. Everything that can fail
// comes before the setup is touched.
bool LoadSetupXml(OmDesignSetup& setup, const std::wstring& path) {
    wxXmlDocument document;
    if (!LoadXmlFile(document, path) || document.GetRoot()->GetName() != "OmbrineFlash")
        return false;
    const wxXmlNode& root = *document.GetRoot();
    const wxXmlNode* chain = FindXmlChild(root, "Chain");
    const wxXmlNode* pins = FindXmlChild(root, "Pins");
    const wxXmlNode* flash = FindXmlChild(root, "Flash");
    if (!chain || !pins || !flash)
        return false;
    const auto devices = CollectNumbered(*chain, "Device", "PosInChain");
    BsdlByPosition allData;
    if (!devices || !LoadAllBsdl(*devices, allData))
        return false;

    setup = {};
    LoadChain(*chain, *devices, allData, setup);
    LoadPins(*pins, setup);
    LoadFlash(*flash, setup);
    LoadAlgorithm(root, setup);
    setup.sectors = LoadSectors(root);
    return true;
}
