#include "app/AuiToolBarArt.h"

#include <wx/dc.h>
#include <wx/settings.h>

namespace {

const wxColour kShade(177, 174, 162);
// A white line would glare on a dark bar.
const wxColour kShadeOnDark(30, 30, 30);
const wxColour kLightOnDark(84, 84, 84);

bool IsDark() {
    return wxSystemSettings::GetAppearance().IsUsingDarkBackground();
}

} // namespace

OmAuiToolBarArt::OmAuiToolBarArt(bool topLine, bool bottomLine)
    : topLine_(topLine), bottomLine_(bottomLine), pen_(IsDark() ? kShadeOnDark : kShade) {}

OmAuiToolBarArt::~OmAuiToolBarArt() = default;

wxAuiToolBarArt* OmAuiToolBarArt::Clone() {
    return new OmAuiToolBarArt(*this);
}

void OmAuiToolBarArt::DrawBackground(wxDC& dc, wxWindow* window, const wxRect& rect) {
    wxAuiDefaultToolBarArt::DrawBackground(dc, window, rect);
    // A line is drawn without its last point, so it ends one pixel outside.
    const int right = rect.GetRight() + 1;
    if (topLine_) {
        dc.SetPen(IsDark() ? wxPen(kLightOnDark) : *wxWHITE_PEN);
        dc.DrawLine(rect.GetLeft(), rect.GetTop(), right, rect.GetTop());
    }
    if (bottomLine_) {
        dc.SetPen(pen_);
        dc.DrawLine(rect.GetLeft(), rect.GetBottom(), right, rect.GetBottom());
    }
}
