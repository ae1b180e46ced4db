// The program file: everything is in OmApp.
#include "app/App.h"

wxIMPLEMENT_APP(OmApp);
