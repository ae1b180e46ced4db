// Makes a setup file from a chain of BSDL files and a table of pins.
//   make-demo-setup PIN_TABLE OUTPUT BSDL_FILE...
// The BSDL files stand in the order of the chain, the device nearest TDI first. The table is
// comma-separated: signal, device number from 1, port, index (empty for a scalar port), inverted
// (yes or no), level; a line with a level describes a static pin.
#include "bsdl/BsdlParser.h"
#include "platform/Text.h"
#include "setup/DesignSetup.h"
#include "setup/SetupFile.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

[[noreturn]] void Fail(const std::string& text) {
    std::fprintf(stderr, "make-demo-setup: %s\n", text.c_str());
    std::exit(1);
}

OmChainDevice ReadDevice(const std::string& path) {
    auto data = std::make_unique<OmBsdlData>();
    OmBsdlParserCallbackImpl messages;
    if (!ParseBsdlFile(path.c_str(), *data, &messages))
        Fail(path + " does not parse:\n" + messages.text);
    const std::vector<std::string> idcodes = data->GetIdcodes();
    OmChainDevice device;
    device.SetBsdl(std::move(data), path.substr(path.find_last_of('/') + 1));
    if (!idcodes.empty()) {
        device.Idcode = BitsFromText(idcodes.front());
        ResolveUnknowns(device.Idcode, 0);
    }
    return device;
}

std::vector<std::string> SplitRow(const std::string& line) {
    std::vector<std::string> fields;
    std::stringstream row(line + ",");
    for (std::string field; std::getline(row, field, ',');)
        fields.push_back(field);
    fields.resize(6);
    return fields;
}

// The record of a signal; address and data pins are made as they come.
SignalPin& FindSignal(OmDesignSetup& setup, const std::string& name) {
    if (name == "CE")
        return setup.ce;
    if (name == "OE")
        return setup.oe;
    if (name == "WE")
        return setup.we;
    std::vector<SignalPin>& pins = name[0] == 'A' ? setup.addressPins : setup.dataPins;
    const size_t index = std::stoul(name.substr(1));
    if (pins.size() <= index)
        pins.resize(index + 1);
    return pins[index];
}

void AddRow(OmDesignSetup& setup, const std::vector<std::string>& fields) {
    OmDevicePin pin;
    pin.Device = std::stoi(fields[1]) - 1;
    pin.PortName = fields[2];
    pin.PortIndex = fields[3].empty() ? -1 : std::stoi(fields[3]);
    if (fields[5].empty()) {
        FindSignal(setup, fields[0]) = {pin, fields[4] == "yes"};
        return;
    }
    StaticPin held{pin, static_cast<uint8_t>(fields[5] == "1"), FromLocal(fields[0])};
    setup.staticPins.push_back(held);
}

void ReadPins(OmDesignSetup& setup, const std::string& path) {
    std::ifstream table(path);
    if (!table)
        Fail("cannot read " + path);
    std::string line;
    while (std::getline(table, line)) {
        if (!line.empty() && line[0] != '#' && !line.starts_with("signal,"))
            AddRow(setup, SplitRow(line));
    }
}

// One 16-bit chip; it tells its command set and its sectors itself.
void DescribeFlash(OmDesignSetup& setup) {
    setup.ChipCount = 1;
    setup.WordSize = 2;
    setup.AddrCmdShift = 0;
    setup.CmdSet = kCmdSetAuto;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4)
        Fail("usage: make-demo-setup PIN_TABLE OUTPUT BSDL_FILE...");
    OmDesignSetup setup;
    for (int index = 3; index < argc; ++index)
        setup.devices.push_back(ReadDevice(argv[index]));
    ReadPins(setup, argv[1]);
    DescribeFlash(setup);
    if (!SaveSetupXml(setup, FromLocal(argv[2])))
        Fail(std::string("cannot write ") + argv[2]);
    return 0;
}
