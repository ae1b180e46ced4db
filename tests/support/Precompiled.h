// What nearly every test needs; compiled once for each test program. Sources still include what
// they use.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>
