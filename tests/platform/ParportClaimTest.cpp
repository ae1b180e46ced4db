// The kernel's side of a parallel port in this process: which requests a device gets, in which
// order, and what becomes of a user who may not open it.
#include "platform/posix/Parport.h"

#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <gtest/gtest.h>
#include <linux/ioctl.h>
#include <linux/ppdev.h>
#include <set>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// While one is alive, the parallel-port requests of this process go to it.
class FakeKernel {
  public:
    FakeKernel() { installed = this; }

    ~FakeKernel() { installed = nullptr; }

    FakeKernel(const FakeKernel&) = delete;
    FakeKernel& operator=(const FakeKernel&) = delete;

    int Request(int descriptor, unsigned long request, void* argument) {
        switch (request) {
        case PPCLAIM:
            return Claim(descriptor);
        case PPRELEASE:
            return claimed.erase(descriptor) ? Note("release") : Fail(EINVAL);
        case PPDATADIR:
            return Access(descriptor, *static_cast<int*>(argument) ? "in" : "out");
        case PPWDATA:
            return Access(descriptor, "data");
        case PPWCONTROL:
            return Access(descriptor, "control");
        case PPRDATA:
        case PPRSTATUS:
        case PPRCONTROL:
            *static_cast<uint8_t*>(argument) = 0x2C;
            return Access(descriptor, request == PPRSTATUS ? "status?" : "control?");
        default:
            return Fail(ENOTTY);
        }
    }

    static FakeKernel* installed;

    bool busy = false;
    std::set<int> claimed;
    std::string requests; // in order

  private:
    int Claim(int descriptor) {
        if (busy)
            return Fail(EBUSY);
        claimed.insert(descriptor);
        return Note("claim");
    }

    int Access(int descriptor, const char* name) {
        return claimed.contains(descriptor) ? Note(name) : Fail(EINVAL);
    }

    int Note(const char* name) {
        requests += std::string(requests.empty() ? "" : " ") + name;
        return 0;
    }

    static int Fail(int error) {
        errno = error;
        return -1;
    }
};

FakeKernel* FakeKernel::installed = nullptr;

class ParportClaim : public ::testing::Test {
  protected:
    ParportClaim() {
        std::filesystem::create_directories(folder.path / "parport0");
        folder.Write("parport0/base-addr", "888\t1912\n");
        std::filesystem::create_directories(folder.path / "dev");
        device = folder.Write("dev/parport0", "");
    }

    std::unique_ptr<OmPortDriver> Open() const {
        return OpenParport(folder.path.string(), folder.Path("dev"));
    }

    static bool ReadControl(OmPortDriver& driver) {
        const std::array<uint8_t, 2> control{0x7A, 0x03};
        uint8_t value = 0;
        size_t returned = 0;
        return driver.Control(kPortRead, control, {&value, 1}, returned);
    }

    TemporaryFolder folder;
    std::string device;
};

// Another user for a moment, if the test runs as one whom no permission stops.
class Unprivileged {
  public:
    Unprivileged() : before_(geteuid()) {
        if (before_ == 0) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }

    ~Unprivileged() {
        if (before_ == 0) {
            EXPECT_EQ(seteuid(before_), 0);
        }
    }

    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

  private:
    uid_t before_;
};

std::wstring Wide(const std::string& text) {
    return {text.begin(), text.end()};
}

} // namespace

// Takes the place of the C library's in this program.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (FakeKernel::installed)
        return FakeKernel::installed->Request(descriptor, request, argument);
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}

TEST_F(ParportClaim, PortIsClaimedAtItsFirstAccessAndReleasedWithTheDriver) {
    FakeKernel kernel;
    {
        const auto driver = Open();
        std::array<uint8_t, 6> addresses{};
        size_t returned = 0;
        EXPECT_TRUE(driver->Control(kPortEnumerate, {}, addresses, returned));
        EXPECT_EQ(kernel.requests, "") << "listing the ports disturbs nobody";
        EXPECT_TRUE(ReadControl(*driver));
        const std::array<uint8_t, 3> outputs{0x7A, 0x03, 0x0C};
        const std::array<uint8_t, 3> inputs{0x7A, 0x03, 0x2C};
        const std::array<uint8_t, 3> data{0x78, 0x03, 0x55};
        const std::array<uint8_t, 2> status{0x79, 0x03};
        uint8_t value = 0;
        EXPECT_TRUE(driver->Control(kPortWrite, outputs, {}, returned));
        EXPECT_TRUE(driver->Control(kPortWrite, inputs, {}, returned));
        EXPECT_TRUE(driver->Control(kPortWrite, data, {}, returned));
        EXPECT_TRUE(driver->Control(kPortRead, status, {&value, 1}, returned));
        EXPECT_EQ(kernel.claimed.size(), 1U);
    }
    EXPECT_EQ(kernel.requests, "claim control? out control in control data status? release");
    EXPECT_TRUE(kernel.claimed.empty());
}

TEST_F(ParportClaim, PortThatAnotherHoldsIsToldOfAndTakenWhenFree) {
    FakeKernel kernel;
    kernel.busy = true;
    const auto driver = Open();
    EXPECT_FALSE(ReadControl(*driver));
    EXPECT_EQ(driver->RefusalReason(),
              L"cannot claim " + Wide(device) + L": Device or resource busy");
    kernel.busy = false;
    EXPECT_TRUE(ReadControl(*driver));
    EXPECT_EQ(driver->RefusalReason(), L"");
}

TEST_F(ParportClaim, UserWithoutPermissionIsToldWhatHelps) {
    std::filesystem::permissions(folder.path, std::filesystem::perms::all);
    ASSERT_EQ(chmod(device.c_str(), 0), 0);
    const auto driver = Open();
    const Unprivileged user;
    EXPECT_FALSE(ReadControl(*driver));
    EXPECT_EQ(driver->RefusalReason(), L"no permission to open " + Wide(device) +
                                           L": add the user to the group that owns it");
}

TEST_F(ParportClaim, MissingDeviceIsToldOf) {
    std::filesystem::remove(device);
    const auto driver = Open();
    EXPECT_FALSE(ReadControl(*driver));
    EXPECT_EQ(driver->RefusalReason(),
              L"cannot open " + Wide(device) + L": No such file or directory");
}

TEST_F(ParportClaim, RefusalThatNobodyCanHelpHasNoReason) {
    const auto driver = Open();
    const std::array<uint8_t, 2> nowhere{0x00, 0x01};
    uint8_t value = 0;
    size_t returned = 0;
    EXPECT_FALSE(driver->Control(kPortRead, nowhere, {&value, 1}, returned));
    EXPECT_EQ(driver->RefusalReason(), L"");
}
