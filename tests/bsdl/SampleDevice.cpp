#include "tests/bsdl/SampleDevice.h"

OmBsdlData MakeSampleDevice() {
    OmBsdlData data;
    data.entity = "SAMPLE";
    data.SetDefaultPinMapping("QFP");
    data.AddPort("TCK", "in", -1, -1);
    data.AddPort("D", "inout", 1, 0);
    data.AddPinMapEntry("QFP", "TCK", -1, "12");
    data.AddPinMapEntry("QFP", "D", 0, "3");
    data.AddPinMapEntry("BGA", "TCK", -1, "A1");
    data.AddAttribute("INSTRUCTION_LENGTH", "SAMPLE", "entity", "3");
    data.AddInstructionCode("Extest", "000");
    data.AddInstructionCode("BYPASS", "111");
    data.AddInstructionCode("BYPASS", "011");
    data.AddIdcode("XXXX0001001000110100000000101111");
    data.AddAttribute("BOUNDARY_LENGTH", "SAMPLE", "entity", "3");
    data.AddCell("2", "bc_1", "*", "controlr", "1", "", "", "");
    data.AddCell("1", "bc_1", "D(0)", "output3", "X", "2", "1", "Z");
    data.AddCell("0", "bc_4", "D(0)", "input", "0", "", "", "");
    data.AddCell("0", "bc_2", "TCK", "clock", "X", "2", "", "");
    return data;
}
