#include "jobs/ReadJob.h"

bool OmReadJob::Check() {
    return FindFlashPart(programmer_, part, range_);
}

bool OmReadJob::Run(OmProgressCallback& progress) {
    progress.Begin(range_.size);
    return programmer_.ReadFlash(progress, range_.start, range_.size, *image);
}
