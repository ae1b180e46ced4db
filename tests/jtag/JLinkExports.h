// What the J-Link's library exports, for doubles of it: `Exported` has the functions as static
// members.
#pragma once

#include "tests/jtag/FakeLibrary.h"

template <typename Exported>
FakeLoader::Exports GetJLinkExports() {
    return {
        {"JLINKARM_Open", Export(Exported::Open)},
        {"JLINKARM_Close", Export(Exported::Close)},
        {"JLINKARM_SelectUSB", Export(Exported::SelectUSB)},
        {"JLINKARM_SelectIP", Export(Exported::SelectIP)},
        {"JLINKARM_SetWarnOutHandler", Export(Exported::SetWarnOutHandler)},
        {"JLINKARM_SetErrorOutHandler", Export(Exported::SetErrorOutHandler)},
        {"JLINKARM_HasError", Export(Exported::HasError)},
        {"JLINKARM_ClrError", Export(Exported::ClrError)},
        {"JLINKARM_SetSpeed", Export(Exported::SetSpeed)},
        {"JLINKARM_JTAG_StoreGetRaw", Export(Exported::StoreGetRaw)},
        {"JLINKARM_JTAG_StoreRaw", Export(Exported::StoreRaw)},
    };
}
