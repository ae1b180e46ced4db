#include "jtag/Exception.h"

#include <gtest/gtest.h>

TEST(Exception, CarriesItsMessage) {
    const OmException error(L"JTAG connection error");
    EXPECT_EQ(error.GetText(), L"JTAG connection error");
    EXPECT_EQ(error.message, L"JTAG connection error");
}

TEST(Exception, DropsTheSystemsErrorNumber) {
    const OmException error(L"Failed to write to parallel port.", 5);
    EXPECT_EQ(error.GetText(), L"Failed to write to parallel port.");
}

TEST(Exception, IsThrownByValueAndCaughtByReference) {
    try {
        throw OmException(L"gone");
    } catch (const OmException& error) {
        EXPECT_EQ(error.GetText(), L"gone");
        return;
    }
    FAIL() << "not caught";
}
