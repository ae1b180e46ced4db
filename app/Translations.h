// The catalogues of the user's language.
#pragma once

#include <wx/string.h>

// Loads the program's catalogue and the toolkit's own, for the language that the system says the
// user prefers or for the one named ("de"). A language that has no catalogue leaves the texts in
// English, without a word. Call before the first window and before any other thread starts.
void LoadTranslations(const wxString& language = wxString());
