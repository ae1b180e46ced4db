// How many items to lay into one batch, so that the cable's transfers go out full.
#pragma once

// Items of `scansPerItem` scans, `extraScans` closing scans, in a batch of at most `cap` scans and
// at most ten transfers of `perTransfer` scans (above 0). Among the candidates the one wins that
// fills its last transfer best; a tie goes to the longer batch. At least 1.
int FitItemsToTransfers(int cap, int scansPerItem, int extraScans, float perTransfer);
