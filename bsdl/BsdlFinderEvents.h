// What a search for BSDL files has to say, as events with a text each.
#pragma once

#include <wx/event.h>

wxDECLARE_EVENT(OM_EVT_BSDL_FILE, wxCommandEvent);  // path of the file now being parsed
wxDECLARE_EVENT(OM_EVT_BSDL_FOUND, wxCommandEvent); // "path;entity;pin mapping names;pattern"
wxDECLARE_EVENT(OM_EVT_BSDL_LOG, wxCommandEvent);   // a line or more for the log pane
wxDECLARE_EVENT(OM_EVT_BSDL_DONE, wxCommandEvent);  // "completed" or "canceled"; the last one
