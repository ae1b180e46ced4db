// A flag that is set for the time of a scope, and then is what it was before.
#pragma once

class ScopedFlag {
  public:
    explicit ScopedFlag(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }

    ~ScopedFlag() { flag_ = before_; }

    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

  private:
    bool& flag_;
    const bool before_;
};
