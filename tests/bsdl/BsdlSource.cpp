#include "tests/bsdl/BsdlSource.h"

#include <gtest/gtest.h>

std::string SampleSource() {
    return R"BSDL(entity Chip is
generic (PHYSICAL_PIN_MAP : string := " QFP" & "_8	");
port (TCK, TDI : in bit; -- the "TAP"
      D : inout bit_vector(1 downto 0);
      VCC : linkage bit);
use STD_1149_1_1994.all;
attribute PIN_MAP of CHIP : entity is PHYSICAL_PIN_MAP;
constant QFP_8 : PIN_MAP_STRING := "TCK : 1, TDI : TWO, " &
    "D : (3, A4)," & -- two pins
    "VCC:5";
attribute TAP_SCAN_IN of TDI : signal is true;
attribute TAP_SCAN_CLOCK of TCK : signal is (10.0e6, BOTH);
attribute INSTRUCTION_LENGTH of CHIP : entity is 4;
attribute INSTRUCTION_OPCODE of CHIP : entity is
    "Extest (0000), Bypass (1111, 10XX, XXXX), SAMPLE (0101)";
attribute INSTRUCTION_CAPTURE of CHIP : entity is "XX01";
attribute IDCODE_REGISTER of CHIP : entity is
    "XXXX" & "0001001000110100" & "00000010111" & "1";
attribute BOUNDARY_LENGTH of CHIP : entity is 3;
attribute BOUNDARY_REGISTER of CHIP : entity is
    "2 (bc_1, *, CONTROL, 1)," &
    "1 (BC_1, D(0), output3, X, 2, 1, Z)," &
    "0 (BC_4, D(0), input, 0), 0 (BC_2, TDI, observe_only, X)";
end Chip;
)BSDL";
}

std::string ChangedSource(const std::string& from, const std::string& to) {
    std::string source = SampleSource();
    const size_t place = source.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    EXPECT_EQ(source.find(from, place + 1), std::string::npos) << from << " is not unique";
    return place == std::string::npos ? source : source.replace(place, from.size(), to);
}
