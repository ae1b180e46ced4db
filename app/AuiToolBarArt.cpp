#include "app/AuiToolBarArt.h"

#include <wx/dc.h>

OmAuiToolBarArt::OmAuiToolBarArt(bool topLine, bool bottomLine)
    : topLine_(topLine), bottomLine_(bottomLine), pen_(wxColour(177, 174, 162)) {}

OmAuiToolBarArt::~OmAuiToolBarArt() = default;

wxAuiToolBarArt* OmAuiToolBarArt::Clone() {
    return new OmAuiToolBarArt(*this);
}

void OmAuiToolBarArt::DrawBackground(wxDC& dc, wxWindow* window, const wxRect& rect) {
    wxAuiDefaultToolBarArt::DrawBackground(dc, window, rect);
    // A line is drawn without its last point, so it ends one pixel outside.
    const int right = rect.GetRight() + 1;
    if (topLine_) {
        dc.SetPen(*wxWHITE_PEN);
        dc.DrawLine(rect.GetLeft(), rect.GetTop(), right, rect.GetTop());
    }
    if (bottomLine_) {
        dc.SetPen(pen_);
        dc.DrawLine(rect.GetLeft(), rect.GetBottom(), right, rect.GetBottom());
    }
}
