#include "jobs/FlashJob.h"

#include "platform/Translation.h"

bool OmFlashJob::Open() {
    return programmer_.Prepare(flags_);
}

std::wstring OmFlashJob::DescribeSuccess() const {
    return success_ ? Translated(success_) : std::wstring();
}
