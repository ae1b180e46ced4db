// Pictures of the whole screen, as the user sees it.
#pragma once

#include <wx/string.h>

// Paints what is pending and writes the screen to a PNG file. False if no picture could be taken.
bool TakeScreenshot(const wxString& path);
