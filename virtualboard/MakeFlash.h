// The model of a flash chip by its command set.
#pragma once

#include "virtualboard/FlashModel.h"

#include <memory>

namespace vb {

std::unique_ptr<FlashModel> MakeFlash(const FlashParameters& parameters, const BoardClock& clock);

} // namespace vb
