// The port driver's three control codes over the system's parallel ports: addresses from the
// kernel's parport tables, registers through the ppdev devices. A port is opened and claimed at its
// first access, so that listing the ports disturbs nobody, and released with the driver.
#pragma once

#include "platform/PortDriver.h"

#include <memory>
#include <string>

// `tables` is the folder with parport0/base-addr, `devices` the one with parport0.
std::unique_ptr<OmPortDriver> OpenParport(const std::string& tables, const std::string& devices);
