// What nearly every window test needs; compiled once for each test program. Sources still include
// what they use.
#pragma once

#include "tests/support/Precompiled.h"
#include "widgets/Precompiled.h"
