#include "platform/posix/Parport.h"

#include "tests/support/TemporaryFolder.h"

#include <array>
#include <gtest/gtest.h>

namespace {

// The kernel's tables and device files as this test makes them; a plain file stands for a device
// that does not know the parallel-port requests.
class Machine {
  public:
    void AddPort(int port, const std::string& baseAddress) {
        const auto name = "parport" + std::to_string(port);
        std::filesystem::create_directories(folder_.path / "tables" / name);
        std::filesystem::create_directories(folder_.path / "devices");
        folder_.Write("tables/" + name + "/base-addr", baseAddress);
        folder_.Write("devices/" + name, "");
    }

    std::unique_ptr<OmPortDriver> Open() {
        return OpenParport(folder_.Path("tables"), folder_.Path("devices"));
    }

    std::array<uint8_t, 6> Enumerate() {
        std::array<uint8_t, 6> addresses{1, 1, 1, 1, 1, 1};
        size_t returned = 0;
        EXPECT_TRUE(Open()->Control(kPortEnumerate, {}, addresses, returned));
        EXPECT_EQ(returned, 6U);
        return addresses;
    }

  private:
    TemporaryFolder folder_;
};

} // namespace

TEST(Parport, ListsTheKernelsBaseAddressesLowByteFirst) {
    Machine machine;
    machine.AddPort(0, "888\t1912\n");
    machine.AddPort(2, "57532\t0\n");
    EXPECT_EQ(machine.Enumerate(), (std::array<uint8_t, 6>{0x78, 0x03, 0, 0, 0xBC, 0xE0}));
}

TEST(Parport, MachineWithoutPortsListsThreeAbsentOnes) {
    Machine machine;
    EXPECT_EQ(machine.Enumerate(), (std::array<uint8_t, 6>{}));
}

TEST(Parport, PortWithoutAnIoAddressCountsAsAbsent) {
    Machine machine;
    machine.AddPort(0, "0\t0\n");
    machine.AddPort(1, "4294967295\t0\n");
    machine.AddPort(2, "nonsense");
    EXPECT_EQ(machine.Enumerate(), (std::array<uint8_t, 6>{}));
}

TEST(Parport, RefusesAddressesThatBelongToNoPort) {
    Machine machine;
    machine.AddPort(0, "888\t1912\n");
    const auto driver = machine.Open();
    uint8_t value = 0;
    size_t returned = 9;
    const std::array<uint8_t, 2> below{0x77, 0x03};
    const std::array<uint8_t, 2> past{0x7B, 0x03};
    EXPECT_FALSE(driver->Control(kPortRead, below, {&value, 1}, returned));
    EXPECT_EQ(returned, 0U);
    EXPECT_FALSE(driver->Control(kPortRead, past, {&value, 1}, returned));
}

TEST(Parport, RefusesADeviceThatCannotBeClaimed) {
    Machine machine;
    machine.AddPort(0, "888\t1912\n");
    const auto driver = machine.Open();
    uint8_t value = 0;
    size_t returned = 9;
    const std::array<uint8_t, 2> status{0x79, 0x03};
    const std::array<uint8_t, 3> data{0x78, 0x03, 0xFF};
    EXPECT_FALSE(driver->Control(kPortRead, status, {&value, 1}, returned));
    EXPECT_FALSE(driver->Control(kPortWrite, data, {}, returned));
}

TEST(Parport, RefusesUnknownCodesAndRecordsOfAnotherSize) {
    Machine machine;
    machine.AddPort(0, "888\t1912\n");
    const auto driver = machine.Open();
    std::array<uint8_t, 6> out{};
    size_t returned = 9;
    const std::array<uint8_t, 3> record{0x78, 0x03, 0};
    EXPECT_FALSE(driver->Control(0x9C402010, {}, out, returned));
    EXPECT_FALSE(driver->Control(kPortEnumerate, {}, {out.data(), 5}, returned));
    EXPECT_FALSE(driver->Control(kPortRead, record, out, returned));
    EXPECT_FALSE(driver->Control(kPortRead, {record.data(), 2}, {}, returned));
    EXPECT_FALSE(driver->Control(kPortWrite, {record.data(), 2}, {}, returned));
}
