// What loading costs in memory, measured by the system in a process of its own.
#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

// The sanitizers keep freed memory, and their own beside every byte.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr size_t kSize = size_t{8} << 20;

long GetPeakKilobytes() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Runs in a process of its own, whose peak begins with what it uses when it begins.
template <typename Action>
void InChild(Action action) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        _exit(action() ? 0 : 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

bool WriteBoth(const std::string& srec, const std::string& hex) {
    OmDataImage image;
    image.SetBytes(0, std::vector<uint8_t>(kSize, 0x5A));
    return WriteSRecordFile(srec, image) && WriteIntelHexFile(hex, image);
}

bool LoadsWithinBudget(const std::string& path) {
    const long before = GetPeakKilobytes();
    OmDataImage image;
    std::string error;
    if (!ReadDataFile(path, image, error) || image.GetByteCount() != kSize)
        return false;
    return static_cast<double>(GetPeakKilobytes() - before) * 1024 < 2.5 * double{kSize};
}

TEST(LoadMemory, StaysBelowTwoAndAHalfTimesTheData) {
    const TemporaryFolder folder;
    const std::string srec = folder.Path("data.srec");
    const std::string hex = folder.Path("data.hex");
    InChild([&] { return WriteBoth(srec, hex); });
    for (const std::string& path : {srec, hex})
        InChild([&] { return LoadsWithinBudget(path); });
}

} // namespace

#endif
