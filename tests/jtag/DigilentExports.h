// What Digilent's library exports, for doubles of it: `Exported` has the functions as static
// members.
#pragma once

#include "tests/jtag/FakeLibrary.h"

template <typename Exported>
FakeLoader::Exports GetDigilentExports() {
    return {
        {"DpcInit", Export(Exported::Init)},
        {"DpcTerm", Export(Exported::Term)},
        {"DvmgStartConfigureDevices", Export(Exported::StartConfigureDevices)},
        {"DvmgGetDevCount", Export(Exported::GetDevCount)},
        {"DvmgGetDevName", Export(Exported::GetDevName)},
        {"DpcOpenJtag", Export(Exported::OpenJtag)},
        {"DpcCloseJtag", Export(Exported::CloseJtag)},
        {"DpcEnableJtag", Export(Exported::EnableJtag)},
        {"DpcDisableJtag", Export(Exported::DisableJtag)},
        {"DpcPutTdiBits", Export(Exported::PutTdiBits)},
        {"DpcPutTmsTdiBits", Export(Exported::PutTmsTdiBits)},
    };
}
