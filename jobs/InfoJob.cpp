#include "jobs/InfoJob.h"

#include "flash/FlashProgrammer.h"

bool RunInfoJob(OmFlashProgrammer& programmer, OmFlashReport& report) {
    return programmer.Prepare(kPrepareFlashCommands) && programmer.GetFlashInfo(report);
}
