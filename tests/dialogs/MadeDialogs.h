// Dialogs as tests over many of them show each: over four sectors of 4 KiB and no data.
#pragma once

#include "data/DataImage.h"
#include "dialogs/ProgramDlg.h"
#include "dialogs/SelectSectorsDlg.h"

#include <memory>

inline const OmFlashSectorLayout kMap{{{4, 4096}}};
inline const OmDataImage kNoData;

template <typename Dialog>
std::unique_ptr<wxDialog> Make() {
    return std::make_unique<Dialog>(nullptr);
}

inline std::unique_ptr<wxDialog> MakeProgram() {
    auto dialog = std::make_unique<OmProgramDlg>(nullptr);
    dialog->sectorMap = &kMap;
    dialog->dataImage = &kNoData;
    return dialog;
}

inline std::unique_ptr<wxDialog> MakeSelectSectors() {
    auto dialog = std::make_unique<OmSelectSectorsDlg>(nullptr);
    dialog->sectorMap = &kMap;
    return dialog;
}
