#include "bsdl/Idcode.h"

#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace {

class Idcode : public testing::Test {
  protected:
    void TearDown() override { SetManufacturerTablePath(""); }

    void UseTable(std::string_view text) {
        SetManufacturerTablePath(folder.Write("names.dat", text));
    }

    static std::wstring Name(uint8_t id) {
        std::wstring name;
        return LookupManufacturer(id, name) ? name : L"-";
    }

    // By the 11 manufacturer bits, as they stand in an IDCODE.
    static std::wstring NameOfField(const std::string& field) {
        std::wstring name;
        const OmBitVector idcode = BitsFromText("00000000000000000000" + field + "1");
        return LookupManufacturer(idcode, name) ? name : L"-";
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(Idcode, IsTakenApart) {
    UseTable("00000010 Second\n[Bank 5]\n00111011 ARM  \n");
    const OmIdcodeFields expected = {L"01001011101000000000010001110111",
                                     L"4BA00477",
                                     L"ARM",
                                     L"01000111011",
                                     L"1011101000000000",
                                     L"0100"};
    EXPECT_EQ(DecodeIdcode(BitsFromText("01001011101000000000010001110111")), expected);
}

TEST_F(Idcode, WithUnknownBitsHasNoHexadecimalForm) {
    const OmIdcodeFields fields = DecodeIdcode(BitsFromText("X1001011101000000000010001110111"));
    EXPECT_EQ(fields.whole, L"X1001011101000000000010001110111");
    EXPECT_EQ(fields.hexadecimal, L"ERROR");
    EXPECT_EQ(fields.manufacturerName, L"(Unknown)");
    EXPECT_EQ(fields.version, L"X100");
}

TEST_F(Idcode, OfAnotherLengthIsNone) {
    EXPECT_EQ(DecodeIdcode(BitsFromText("10101010")), OmIdcodeFields());
    EXPECT_EQ(DecodeIdcode({}), OmIdcodeFields());
    EXPECT_EQ(DecodeIdcode(OmBitVector(33, 0)), OmIdcodeFields());
    std::wstring name;
    EXPECT_FALSE(LookupManufacturer(OmBitVector(8, 1), name));
}

TEST_F(Idcode, ManufacturerIsFoundByBankAndCode) {
    UseTable("10001001 Intel\n[Bank 2]\n10001001 Nchip\n[Bank 16]\n10001001 Last\n");
    EXPECT_EQ(NameOfField("00000001001"), L"Intel");
    EXPECT_EQ(NameOfField("00010001001"), L"Nchip");
    EXPECT_EQ(NameOfField("11110001001"), L"Last");
    EXPECT_EQ(NameOfField("00100001001"), L"-");
    EXPECT_EQ(NameOfField("0000000100X"), L"-");
}

TEST_F(Idcode, FlashIdentifierIsLookedUpInBankOneWithoutItsParity) {
    UseTable("[Bank 2]\n00000001 Cirrus\n[Bank 1]\n00000001 AMD\n10001001 Intel\n");
    EXPECT_EQ(Name(0x01), L"AMD");
    EXPECT_EQ(Name(0x81), L"AMD");
    EXPECT_EQ(Name(0x89), L"Intel");
    EXPECT_EQ(Name(0x09), L"Intel");
    EXPECT_EQ(Name(0x02), L"-");
}

TEST_F(Idcode, MissingTableKnowsNobody) {
    SetManufacturerTablePath(folder.Path("none.dat"));
    EXPECT_EQ(Name(0x01), L"-");
    EXPECT_EQ(NameOfField("00000000001"), L"-");
    SetManufacturerTablePath(folder.path.string());
    EXPECT_EQ(Name(0x01), L"-");
}

TEST_F(Idcode, FoundNameIsRememberedAndAMissIsNot) {
    const std::string path = folder.Write("names.dat", "00000001 AMD\n");
    SetManufacturerTablePath(path);
    EXPECT_EQ(Name(0x01), L"AMD");
    EXPECT_EQ(Name(0x02), L"-");
    folder.Write("names.dat", "00000001 Changed\n00000010 AMI\n");
    EXPECT_EQ(Name(0x01), L"AMD");
    EXPECT_EQ(Name(0x02), L"AMI");
    EXPECT_EQ(NameOfField("00000000001"), L"Changed");
    SetManufacturerTablePath(path);
    EXPECT_EQ(Name(0x01), L"Changed");
}

TEST_F(Idcode, CacheIsEmptiedWhenItHasGrownLarge) {
    std::string table;
    for (int bank = 1; bank <= 16; ++bank) {
        table += "[Bank " + std::to_string(bank) + "]\n";
        for (int code = 0; code < 128; ++code) {
            table += '0';
            for (int bit = 6; bit >= 0; --bit)
                table += ((code >> bit) & 1) != 0 ? '1' : '0';
            table += " name\n";
        }
    }
    UseTable(table);
    OmBitVector idcode(32, 0);
    std::wstring name;
    for (int number = 0; number < 1002; ++number) {
        for (int bit = 0; bit < 11; ++bit)
            idcode[1 + static_cast<size_t>(bit)] = static_cast<uint8_t>((number >> bit) & 1);
        ASSERT_TRUE(LookupManufacturer(idcode, name)) << number;
    }
    // The 1,002nd name emptied the cache of 1,001, so all before it are read from the file again.
    folder.Write("names.dat", "");
    EXPECT_EQ(NameOfField("01111101001"), L"name"); // number 1001
    EXPECT_EQ(NameOfField("01111101000"), L"-");
    EXPECT_EQ(NameOfField("00000000000"), L"-");
}
