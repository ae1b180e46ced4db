// What the flash commands share.
#pragma once

#include "app/ProgressDlg.h"

class OmFlashJob;

// The progress dialog of one flash action, shown from its construction on.
class OmActionProgress : public OmProgressDlg {
  public:
    explicit OmActionProgress(wxWindow* parent);
};

// Checks the options of an open job, runs it under the progress dialog and tells its success; a
// failure the job has told itself. `parent` owns the boxes.
void RunJob(wxWindow* parent, OmFlashJob& job);
