// The commands of the main window. Menu items and toolbar tools of the same command share its id.
#pragma once

// Commands that have a standard id of the toolkit use that instead: wxID_NEW, wxID_OPEN, wxID_SAVE,
// wxID_SAVEAS, wxID_EXIT, wxID_HELP and wxID_ABOUT.
enum OmCommandId : int {
    kIdLoadData = 10000,
    kIdSaveDataAs = 10001,
    kIdRecentSetups = 10002, // submenu
    kIdRecentData = 10003,   // submenu
    kIdFirstRecentSetup = 10004,
    kIdLastRecentSetup = 10012,
    kIdFirstRecentData = 10013,
    kIdLastRecentData = 10021,
    kIdGoToOffset = 10022,
    kIdConnection = 10023,
    kIdSetup = 10024,
    kIdInfo = 10025,
    kIdRead = 10026,
    kIdErase = 10027,
    kIdBlankCheck = 10028,
    kIdProgram = 10029,
    kIdVerify = 10030,
    kIdIntelSpecific = 10031, // submenu
    kIdLockSectors = 10032,
    kIdUnlockSectors = 10033,
    kIdJtagReset = 10034,
    kIdWebsite = 10036,
};

inline constexpr int kMaxRecentFiles = 9;
