// What nearly every window needs; compiled once. Sources still include what they use.
#pragma once

#include <wx/aui/aui.h>
#include <wx/config.h>
#include <wx/html/htmlwin.h>
#include <wx/listctrl.h>
#include <wx/notebook.h>
#include <wx/spinctrl.h>
#include <wx/valtext.h>
#include <wx/wx.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>
