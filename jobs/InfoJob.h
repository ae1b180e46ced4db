#pragma once

class OmFlashProgrammer;
struct OmFlashReport;

// What the flash says about itself; false: the user has been told why.
bool RunInfoJob(OmFlashProgrammer& programmer, OmFlashReport& report);
