#include "flash/InstructionTable.h"

#include "jtag/ChainAnalyzer.h"

namespace {

OmBitVector GetCode(const OmChainDevice& device, const char* name) {
    OmBitVector code;
    if (device.GetInstructionCode(name, code))
        ResolveUnknowns(code, 1);
    return code;
}

OmChainDeviceIr MakeDeviceIr(const OmChainDevice& device) {
    OmChainDeviceIr ir;
    if (const int length = device.GetIRLength(); length >= 0)
        ir.irLength = static_cast<uint32_t>(length);
    OmBitVector& preload = ir.codes[kInstructionPreload - 1];
    preload = GetCode(device, "PRELOAD");
    if (preload.empty())
        preload = GetCode(device, "SAMPLE");
    ir.codes[kInstructionExtest - 1] = GetCode(device, "EXTEST");
    return ir;
}

} // namespace

void FillInstructionTable(const std::vector<OmChainDevice>& devices, OmChainAnalyzer& analyzer) {
    analyzer.devices.clear();
    for (const OmChainDevice& device : devices)
        analyzer.devices.push_back(MakeDeviceIr(device));
}
