// A stream whose text a test can look at.
#pragma once

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

class StreamText {
  public:
    StreamText() : stream(std::tmpfile()) { EXPECT_NE(stream, nullptr); }

    ~StreamText() { std::fclose(stream); }

    StreamText(const StreamText&) = delete;
    StreamText& operator=(const StreamText&) = delete;

    // What was written since the last call.
    std::string Take() {
        std::fflush(stream);
        std::fseek(stream, read_, SEEK_SET);
        std::string text;
        for (int character = std::fgetc(stream); character != EOF; character = std::fgetc(stream))
            text += static_cast<char>(character);
        read_ = std::ftell(stream);
        return text;
    }

    std::FILE* stream;

  private:
    long read_ = 0;
};
