// A file or folder with other permissions for a while. They do not bind root, so root becomes
// nobody meanwhile.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>
#include <utility>

class WithPermissions {
  public:
    WithPermissions(std::filesystem::path path, std::filesystem::perms permissions)
        : path_(std::move(path)), before_(std::filesystem::status(path_).permissions()) {
        std::filesystem::permissions(path_, permissions);
        if (getuid() == 0) {
            EXPECT_EQ(seteuid(kNobody), 0);
        }
    }

    ~WithPermissions() {
        if (getuid() == 0) {
            EXPECT_EQ(seteuid(0), 0);
        }
        std::filesystem::permissions(path_, before_);
    }

    WithPermissions(const WithPermissions&) = delete;
    WithPermissions& operator=(const WithPermissions&) = delete;

  private:
    static constexpr uid_t kNobody = 65534;
    std::filesystem::path path_;
    std::filesystem::perms before_;
};
