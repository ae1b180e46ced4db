// The menus and toolbars of the main window as tables. Labels are English and go through the
// translation lookup when they are used.
#pragma once

#include <span>

// An id of wxID_SEPARATOR makes a separator; a row with `isSubmenu` opens `submenu`, which may be
// empty for the lists that are filled at run time.
struct OmMenuRow {
    int id;
    const char* label = "";
    bool isSubmenu = false;
    std::span<const OmMenuRow> submenu = {};
};

struct OmMenu {
    const char* title;
    std::span<const OmMenuRow> rows;
};

// An id of wxID_SEPARATOR makes a separator.
struct OmToolRow {
    int id;
    const char* icon = "";
    const char* label = "";
    const char* tooltip = "";
};

std::span<const OmMenu> GetMenuTable();
std::span<const OmToolRow> GetActionTools(); // the upper bar
std::span<const OmToolRow> GetDataTools();   // the lower bar, after the data caption
