// The artwork of the program, compiled in; every bundle holds what is sharp at double scale too.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

// A 16 by 16 picture of a toolbar tool. A name that does not exist is a programming error.
wxBitmapBundle GetToolIcon(const char* name);

// A 32 by 32 picture inside a dialog.
wxBitmapBundle GetPicture(const char* name);

// The 360 by 120 picture of the About box.
wxBitmapBundle GetAboutPicture();

// The 130 by 460 picture at the side of a wizard.
wxBitmapBundle GetWizardPicture();

// The icon of the program's windows, in all sizes.
wxIconBundle GetAppIcon();
