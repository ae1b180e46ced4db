// A window manager for the life of a test program, so that windows have title bars and dialogs come
// up where a user would see them.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

class WindowManager : public testing::Environment {
  public:
    void SetUp() override; // fails the run if there is none
    void TearDown() override;

  private:
    pid_t process_ = -1;
};
