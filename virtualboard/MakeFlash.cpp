#include "virtualboard/MakeFlash.h"

#include "virtualboard/AmdFlash.h"
#include "virtualboard/IntelFlash.h"

namespace vb {

std::unique_ptr<FlashModel> MakeFlash(const FlashParameters& parameters, const BoardClock& clock) {
    if (parameters.commandSet == CommandSet::Intel)
        return std::make_unique<IntelFlash>(parameters, clock);
    return std::make_unique<AmdFlash>(parameters, clock);
}

} // namespace vb
