// What nearly every window test needs; compiled once for each test program. Sources still include what
// they use.
#pragma once

#include "app/Precompiled.h"
#include "tests/support/Precompiled.h"
