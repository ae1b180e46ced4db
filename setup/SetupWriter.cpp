#include "bsdl/BsdlXml.h"
#include "bsdl/XmlElements.h"
#include "setup/DesignSetup.h"
#include "setup/SetupFile.h"
#include "setup/XmlFile.h"

namespace {

void SaveDevice(wxXmlNode& node, const OmChainDevice& device, size_t index) {
    SetXml(node, "PosInChain", static_cast<int64_t>(index + 1));
    SetXml(node, "BsdlFile", device.BsdlFile);
    SetXml(node, "IRLen", int64_t{device.IRLen});
    SetXml(node, "PinMapping", device.PinMapping);
    SetXml(node, "Idcode", BitsToText(device.Idcode));
    if (device.bsdl)
        SaveBsdlXml(OmXmlAppender(node).Add("BSDL"), *device.bsdl);
}

void SaveChain(wxXmlNode& node, const OmDesignSetup& setup) {
    SetXml(node, "IRCapture", BitsToText(setup.irCapture));
    OmXmlAppender devices(node);
    for (size_t index = 0; index < setup.devices.size(); ++index)
        SaveDevice(devices.Add("Device"), setup.devices[index], index);
}

void SavePin(wxXmlNode& node, const std::string& name, const OmDevicePin& pin) {
    SetXml(node, "Name", name);
    SetXml(node, "Device", int64_t{pin.Device});
    SetXml(node, "PortName", pin.PortName);
    SetXml(node, "PortIndex", int64_t{pin.PortIndex});
}

void SaveControlPin(OmXmlAppender& pins, const char* name, const SignalPin& pin) {
    if (!pin.IsConnected())
        return;
    wxXmlNode& node = pins.Add("SignalPin");
    SavePin(node, name, pin);
    SetXml(node, "Inverted", pin.Inverted);
}

void SaveBusPins(OmXmlAppender& pins, const char* letter, const std::vector<SignalPin>& bus) {
    for (size_t index = 0; index < bus.size(); ++index) {
        if (bus[index].IsConnected())
            SavePin(pins.Add("SignalPin"), letter + std::to_string(index), bus[index]);
    }
}

void SaveStaticPins(OmXmlAppender& pins, const std::vector<StaticPin>& staticPins) {
    for (size_t index = 0; index < staticPins.size(); ++index) {
        wxXmlNode& node = pins.Add("StaticPin");
        SavePin(node, "static_" + std::to_string(index), staticPins[index]);
        SetXml(node, "Value", BitsToText({staticPins[index].Value}));
        SetXml(node, "Note", staticPins[index].Note);
    }
}

void SavePins(wxXmlNode& node, const OmFlashPins& pins) {
    OmXmlAppender children(node);
    SaveControlPin(children, "CE", pins.ce);
    SaveControlPin(children, "OE", pins.oe);
    SaveControlPin(children, "WE", pins.we);
    SaveBusPins(children, "A", pins.addressPins);
    SaveBusPins(children, "D", pins.dataPins);
    SaveStaticPins(children, pins.staticPins);
}

void SaveFlash(wxXmlNode& node, const OmFlashPins& pins) {
    SetXml(node, "ChipCount", int64_t{pins.ChipCount});
    SetXml(node, "WordSize", int64_t{pins.WordSize});
    SetXml(node, "AddrCmdShift", int64_t{pins.AddrCmdShift});
}

void SaveAlgorithm(wxXmlNode& node, const OmDesignSetup& setup) {
    SetXml(node, "CmdSet", int64_t{setup.CmdSet});
    SetXml(node, "UseBufferedProg", setup.UseBufferedProg);
    SetXml(node, "DontCheckStatus", setup.DontCheckStatus);
}

void SaveSectors(wxXmlNode& node, const OmFlashSectorLayout& sectors) {
    OmXmlAppender children(node);
    for (size_t index = 0; index < sectors.groups.size(); ++index) {
        wxXmlNode& group = children.Add("Group");
        SetXml(group, "Pos", static_cast<int64_t>(index + 1));
        SetXml(group, "Count", int64_t{sectors.groups[index].Count});
        SetXml(group, "Size", int64_t{sectors.groups[index].Size});
    }
}

} // namespace

bool SaveSetupXml(const OmDesignSetup& setup, const std::wstring& path) {
    wxXmlDocument document;
    document.SetRoot(new wxXmlNode(wxXML_ELEMENT_NODE, "OmbrineFlash")); // owned by the document
    wxXmlNode& root = *document.GetRoot();
    SetXml(root, "Version", int64_t{1});
    OmXmlAppender children(root);
    SaveChain(children.Add("Chain"), setup);
    SavePins(children.Add("Pins"), setup);
    SaveFlash(children.Add("Flash"), setup);
    SaveAlgorithm(children.Add("Algorithm"), setup);
    SetXml(children.Add("AMD"), "UseUnlockBypass", setup.UseUnlockBypass);
    SaveSectors(children.Add("Sectors"), setup.sectors);
    return SaveXmlFile(document, path);
}
