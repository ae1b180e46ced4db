// A small device with one of everything, for tests of what is done with parsed data.
#pragma once

#include "bsdl/BsdlData.h"

OmBsdlData MakeSampleDevice();
