#include "app/MainMenus.h"

#include "app/CommandIds.h"

#include <wx/defs.h>
#include <wx/translation.h>

namespace {

constexpr OmMenuRow kSeparator{wxID_SEPARATOR};

constexpr OmMenuRow kFileRows[] = {
    {wxID_NEW, wxTRANSLATE("&New Setup")},
    {wxID_OPEN, wxTRANSLATE("&Load Setup...")},
    {wxID_SAVE, wxTRANSLATE("Save Se&tup")},
    {wxID_SAVEAS, wxTRANSLATE("Save Setup &As...")},
    kSeparator,
    {kIdLoadData, wxTRANSLATE("L&oad Data File...\tCtrl+O")},
    {kIdSaveDataAs, wxTRANSLATE("&Save Data As...\tCtrl+S")},
    kSeparator,
    {kIdRecentSetups, wxTRANSLATE("&Recent Setup Files"), true},
    {kIdRecentData, wxTRANSLATE("Recent &Data Files"), true},
    kSeparator,
    {wxID_EXIT, wxTRANSLATE("E&xit")},
};

constexpr OmMenuRow kViewRows[] = {
    {kIdGoToOffset, wxTRANSLATE("&Go to Offset...\tCtrl+G")},
};

constexpr OmMenuRow kSetupRows[] = {
    {kIdConnection, wxTRANSLATE("JTAG &Connection...\tF2")},
    kSeparator,
    {kIdSetup, wxTRANSLATE("&Setup...")},
};

constexpr OmMenuRow kIntelRows[] = {
    {kIdLockSectors, wxTRANSLATE("&Lock Sectors...")},
    {kIdUnlockSectors, wxTRANSLATE("&Unlock Sectors...")},
};

constexpr OmMenuRow kActionRows[] = {
    {kIdInfo, wxTRANSLATE("&Info...\tF5")},
    {kIdRead, wxTRANSLATE("&Read...\tCtrl+R")},
    {kIdErase, wxTRANSLATE("&Erase...\tCtrl+E")},
    {kIdBlankCheck, wxTRANSLATE("&Blank Check...")},
    {kIdProgram, wxTRANSLATE("&Program...\tCtrl+P")},
    {kIdVerify, wxTRANSLATE("&Verify...")},
    kSeparator,
    {kIdIntelSpecific, wxTRANSLATE("Intel &Specific"), true, kIntelRows},
    kSeparator,
    {kIdJtagReset, wxTRANSLATE("JTAG Rese&t\tF9")},
};

constexpr OmMenuRow kHelpRows[] = {
    {wxID_HELP, wxTRANSLATE("&Help\tF1")},
    {kIdWebsite, wxTRANSLATE("Velmora &Website")},
    kSeparator,
    {wxID_ABOUT, wxTRANSLATE("&About Velmora Flash Programmer")},
};

constexpr OmMenu kMenus[] = {
    {wxTRANSLATE("&File"), kFileRows},   {wxTRANSLATE("&View"), kViewRows},
    {wxTRANSLATE("&Setup"), kSetupRows}, {wxTRANSLATE("&Actions"), kActionRows},
    {wxTRANSLATE("&Help"), kHelpRows},
};

constexpr OmToolRow kToolSeparator{wxID_SEPARATOR};

constexpr OmToolRow kActionTools[] = {
    {wxID_OPEN, "open-setup", "", wxTRANSLATE("Load Setup...")},
    {wxID_SAVE, "save-setup", "", wxTRANSLATE("Save Setup")},
    kToolSeparator,
    {kIdSetup, "setup", wxTRANSLATE("Setup"), wxTRANSLATE("Show Setup Dialog...")},
    kToolSeparator,
    {kIdInfo, "info", wxTRANSLATE("Info"), wxTRANSLATE("Get Flash Information")},
    {kIdRead, "read", wxTRANSLATE("Read"), wxTRANSLATE("Read Flash Contents...")},
    {kIdErase, "erase", wxTRANSLATE("Erase"), wxTRANSLATE("Erase Flash...")},
    {kIdProgram, "program", wxTRANSLATE("Program"), wxTRANSLATE("Program Flash...")},
    {kIdVerify, "verify", wxTRANSLATE("Verify"), wxTRANSLATE("Verify Programmed Data...")},
    kToolSeparator,
    {kIdJtagReset, "jtag-reset", wxTRANSLATE("JTAG Reset"),
     wxTRANSLATE("Enable Normal Device Operation")},
};

constexpr OmToolRow kDataTools[] = {
    {kIdLoadData, "load-data", "", wxTRANSLATE("Load Data File...")},
    {kIdSaveDataAs, "save-data", "", wxTRANSLATE("Save Data as...")},
};

} // namespace

std::span<const OmMenu> GetMenuTable() {
    return kMenus;
}

std::span<const OmToolRow> GetActionTools() {
    return kActionTools;
}

std::span<const OmToolRow> GetDataTools() {
    return kDataTools;
}
