// Where the main window stands between runs.
#pragma once

#include <wx/gdicmn.h>

inline const wxRect kDefaultGeometry(-1, -1, 670, 680); // the host chooses the position

// From the current settings store; a missing value has its default.
wxRect LoadWindowGeometry();

// To the current settings store. A maximized window is stored with the default geometry, at which
// it then comes back.
void StoreWindowGeometry(const wxRect& geometry, bool maximized);

// `geometry`, or the default as a whole if the window would be too small or out of reach on a
// screen of this size.
wxRect ValidateWindowGeometry(const wxRect& geometry, const wxSize& screen);
