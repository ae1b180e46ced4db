#include "jtag/LptPorts.h"

#include "tests/jtag/FakePortDriver.h"

#include <gtest/gtest.h>

TEST(LptPorts, GivesTheThreeAddressesLowByteFirst) {
    FakePortDriver driver;
    driver->addresses = {0x0378, 0, 0xE0BC};
    uint16_t lpt1 = 1;
    uint16_t lpt2 = 2;
    uint16_t lpt3 = 3;
    EXPECT_TRUE(GetLptAddresses(&lpt1, &lpt2, &lpt3));
    EXPECT_EQ(lpt1, 0x0378);
    EXPECT_EQ(lpt2, 0);
    EXPECT_EQ(lpt3, 0xE0BC);
    EXPECT_EQ(driver->opened, (std::vector<std::string>{"ompio2"}));
}

TEST(LptPorts, TakesNullForAnyAddress) {
    FakePortDriver driver;
    driver->addresses = {1, 2, 3};
    uint16_t lpt2 = 0;
    EXPECT_TRUE(GetLptAddresses(nullptr, &lpt2, nullptr));
    EXPECT_EQ(lpt2, 2);
    EXPECT_TRUE(GetLptAddresses(nullptr, nullptr, nullptr));
}

TEST(LptPorts, FailsWithoutADriver) {
    FakePortDriver driver;
    driver->absent = true;
    uint16_t lpt1 = 7;
    EXPECT_FALSE(GetLptAddresses(&lpt1, nullptr, nullptr));
    EXPECT_EQ(lpt1, 7);
}

TEST(LptPorts, EachSuccessCostsAHandle) {
    FakePortDriver driver;
    EXPECT_TRUE(GetLptAddresses(nullptr, nullptr, nullptr));
    EXPECT_TRUE(GetLptAddresses(nullptr, nullptr, nullptr));
    EXPECT_EQ(driver->openHandles, 2);
}

TEST(LptPorts, ARefusedCallClosesItsHandle) {
    FakePortDriver driver;
    driver->failAtCall = 0;
    uint16_t lpt1 = 7;
    EXPECT_FALSE(GetLptAddresses(&lpt1, nullptr, nullptr));
    EXPECT_EQ(lpt1, 7);
    EXPECT_EQ(driver->openHandles, 0);
}

TEST(LptPorts, ExactlySixBytesMustComeBack) {
    for (const size_t size : {0U, 5U, 7U}) {
        FakePortDriver driver;
        driver->enumerationSize = size;
        EXPECT_FALSE(GetLptAddresses(nullptr, nullptr, nullptr)) << size;
        EXPECT_EQ(driver->openHandles, 0);
    }
}
