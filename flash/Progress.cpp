#include "flash/Progress.h"

void OmUnitedProgressCallback::SetStep(uint32_t total, uint32_t done, uint32_t size) {
    if (total == 0)
        return;
    base = static_cast<uint32_t>(static_cast<double>(done) / total * 100);
    scale = static_cast<double>(size) / total;
}

bool OmUnitedProgressCallback::OnProgress(int percent, const wchar_t* message) {
    if (percent >= 0)
        percent = static_cast<int>(percent * scale) + static_cast<int>(base);
    return target->OnProgress(percent, message);
}

void OmUnitedProgressCallback::OnFinish() {
    target->OnFinish();
}
