// FTDI's D2XX library with a pod behind it that may answer anything.
#pragma once

#include "fuzz/Pod.h"

class HostileD2xx : public Pod {
  public:
    HostileD2xx(const uint8_t* data, size_t size);
    ~HostileD2xx() override;
    HostileD2xx(const HostileD2xx&) = delete;
    HostileD2xx& operator=(const HostileD2xx&) = delete;

    bool isOpen = false;
};
