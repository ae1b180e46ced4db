#include "bsdl/BsdlReport.h"

#include "bsdl/BsdlData.h"
#include "tests/bsdl/SampleDevice.h"

#include <gtest/gtest.h>

TEST(BsdlReport, TellsAllAboutADevice) {
    EXPECT_EQ(FormatBsdlReport(MakeSampleDevice()),
              "Device name: SAMPLE\n"
              "\n"
              "Port signals:\n"
              "    TCK: in\n"
              "    D(1-0): inout\n"
              "\n"
              "Device package pin mappings: BGA, QFP\n"
              "\n"
              "BGA pin mapping:\n"
              "   A1 : TCK\n"
              "\n"
              "QFP pin mapping:\n"
              "   12 : TCK\n"
              "    3 : D(0)\n"
              "\n"
              "Instruction register length: 3 bits\n"
              "\n"
              "Instructions:\n"
              "    BYPASS (111, 011)\n"
              "    EXTEST (000)\n"
              "\n"
              "Device ID code: XXXX0001001000110100000000101111\n"
              "\n"
              "Boundary-scan register length: 3 bits\n"
              "\n"
              "Boundary-scan register cells:\n"
              "    0 (BC_4,   D(0),  input   , 0)\n"
              "    0 (BC_2,    TCK,  clock   , X,   2, )\n"
              "    1 (BC_1,   D(0),  output3 , X,   2, 1, Z)\n"
              "    2 (BC_1,      *,  controlr, 1)\n");
}

TEST(BsdlReport, SaysWhatIsMissing) {
    EXPECT_EQ(FormatBsdlReport({}), "Device name: \n"
                                    "\n"
                                    "Port signals:\n"
                                    "\n"
                                    "Device package pin mappings: n/a\n"
                                    "\n"
                                    "Instruction register length: unknown\n"
                                    "\n"
                                    "Instructions:\n"
                                    "\n"
                                    "Device ID codes: n/a\n"
                                    "\n"
                                    "Boundary-scan register length: 0 bits\n"
                                    "\n"
                                    "Boundary-scan register cells: n/a\n");
}

TEST(BsdlReport, HasAColumnForEveryFunctionDirectionAndIdcode) {
    OmBsdlData data;
    data.entity = "E";
    for (const char* direction : {"in", "out", "buffer", "inout", "linkage", "?"})
        data.AddPort("P", direction, -1, 3);
    data.AddPinMapEntry("ONLY", "LONG", 12, "PIN123");
    data.AddIdcode("01");
    data.AddIdcode("XX");
    data.AddAttribute("BOUNDARY_LENGTH", "E", "entity", "1");
    for (const char* function : {"input", "output2", "output3", "control", "controlr", "internal",
                                 "clock", "bidir", "observe_only"})
        data.AddCell("0", "C", "LONGPORT", function, "1", "0", "0", "WEAK1");
    EXPECT_EQ(FormatBsdlReport(data),
              "Device name: E\n\nPort signals:\n"
              "    P: in\n    P: out\n    P: buffer\n    P: inout\n    P: linkage\n"
              "    P: ***ERROR***\n\n"
              "Device package pin mapping: ONLY\n\nONLY pin mapping:\nPIN123 : LONG(12)\n\n"
              "Instruction register length: unknown\n\nInstructions:\n\n"
              "Device ID codes:\n    01\n    XX\n\n"
              "Boundary-scan register length: 1 bits\n\nBoundary-scan register cells:\n"
              "    0 (C, LONGPORT,  input   , 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  output2 , 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  output3 , 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  control , 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  controlr, 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  internal, 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  clock   , 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT,  bidir   , 1,   0, 0, WEAK1)\n"
              "    0 (C, LONGPORT, observe_only, 1,   0, 0, WEAK1)\n");
}
