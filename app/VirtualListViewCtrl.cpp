#include "app/VirtualListViewCtrl.h"

#include <algorithm>
#include <utility>
#include <wx/dcclient.h>
#include <wx/settings.h>

namespace {

constexpr int kLeftMargin = 5;
constexpr double kDarkBelow = 0.5; // luminance of a background that needs light text
const wxColour kTextOnLight(48, 48, 48);
const wxColour kTextOnDark(207, 207, 207);

} // namespace

OmVirtualListViewCtrl::OmVirtualListViewCtrl(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxNO_BORDER,
           wxPanelNameStr);
    TakeSystemColours();
    Bind(wxEVT_PAINT, &OmVirtualListViewCtrl::OnPaint, this);
    Bind(wxEVT_SIZE, &OmVirtualListViewCtrl::OnSize, this);
    Bind(wxEVT_KEY_DOWN, &OmVirtualListViewCtrl::OnKeyDown, this);
    Bind(wxEVT_MOUSEWHEEL, &OmVirtualListViewCtrl::OnMouseWheel, this);
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        TakeSystemColours();
        event.Skip();
    });
    BindMoves();
    UpdateScrollBar();
}

void OmVirtualListViewCtrl::TakeSystemColours() {
    const wxColour background = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW);
    SetBackgroundColour(background);
    textColour_ = background.GetLuminance() < kDarkBelow ? kTextOnDark : kTextOnLight;
    Refresh(false);
}

void OmVirtualListViewCtrl::BindMoves() {
    const std::pair<wxEventTypeTag<wxScrollWinEvent>, Mover> moves[] = {
        {wxEVT_SCROLLWIN_LINEUP, &OmVirtualListViewCtrl::LineUp},
        {wxEVT_SCROLLWIN_LINEDOWN, &OmVirtualListViewCtrl::LineDown},
        {wxEVT_SCROLLWIN_PAGEUP, &OmVirtualListViewCtrl::PageUp},
        {wxEVT_SCROLLWIN_PAGEDOWN, &OmVirtualListViewCtrl::PageDown},
    };
    for (const auto& [type, mover] : moves)
        Bind(type, [this, move = mover](wxScrollWinEvent& event) {
            if (event.GetOrientation() != wxVERTICAL)
                return event.Skip();
            (this->*move)();
        });
    Bind(wxEVT_SCROLLWIN_THUMBTRACK, &OmVirtualListViewCtrl::OnThumbTrack, this);
}

bool OmVirtualListViewCtrl::ScrollToLine(unsigned line) {
    return MoveTo(line);
}

void OmVirtualListViewCtrl::SetLineCount(uint32_t count) {
    lineCount_ = count;
    firstLine_ = 0;
    UpdateScrollBar();
    Refresh(false);
}

int OmVirtualListViewCtrl::GetLineHeight() const {
    int height = 0;
    GetTextExtent("3F", nullptr, &height);
    return std::max(height, 1);
}

void OmVirtualListViewCtrl::UpdateScrollBar() {
    const int height = GetClientSize().GetHeight();
    if (lineCount_ == 0 || height <= 0) {
        SetScrollbar(wxVERTICAL, 0, 0, 0, true);
        return;
    }
    const uint32_t visible = std::max(height / GetLineHeight(), 1);
    firstLine_ = std::min(firstLine_, lineCount_ > visible ? lineCount_ - visible : 0);
    SetScrollbar(wxVERTICAL, static_cast<int>(firstLine_), static_cast<int>(visible),
                 static_cast<int>(lineCount_), true);
}

uint32_t OmVirtualListViewCtrl::GetPageLines() const {
    return static_cast<uint32_t>(std::max(GetScrollThumb(wxVERTICAL), 0));
}

// The first line that shows the last page; 0 if all lines are visible.
uint32_t OmVirtualListViewCtrl::GetLastFirstLine() const {
    const uint32_t page = GetPageLines();
    return lineCount_ > page ? lineCount_ - page : 0;
}

bool OmVirtualListViewCtrl::MoveTo(uint32_t firstLine) {
    const uint32_t target = std::min(firstLine, GetLastFirstLine());
    if (target == firstLine_)
        return false;
    firstLine_ = target;
    SetScrollPos(wxVERTICAL, static_cast<int>(firstLine_), true);
    Refresh(false);
    return true;
}

void OmVirtualListViewCtrl::LineUp() {
    if (firstLine_ > 0)
        MoveTo(firstLine_ - 1);
}

void OmVirtualListViewCtrl::LineDown() {
    MoveTo(firstLine_ + 1);
}

// Both page moves keep one line of the old page in sight.
void OmVirtualListViewCtrl::PageUp() {
    const uint32_t page = GetPageLines();
    const uint32_t step = page < 2 ? 1 : page - 1;
    MoveTo(firstLine_ > step ? firstLine_ - step : 0);
}

void OmVirtualListViewCtrl::PageDown() {
    const uint32_t page = GetPageLines();
    MoveTo(firstLine_ + (page > 1 ? page - 1 : page));
}

void OmVirtualListViewCtrl::Home() {
    MoveTo(0);
}

void OmVirtualListViewCtrl::End() {
    MoveTo(GetLastFirstLine());
}

void OmVirtualListViewCtrl::OnThumbTrack(wxScrollWinEvent& event) {
    if (event.GetOrientation() != wxVERTICAL)
        return event.Skip();
    MoveTo(static_cast<uint32_t>(std::max(event.GetPosition(), 0)));
}

void OmVirtualListViewCtrl::OnKeyDown(wxKeyEvent& event) {
    static const std::pair<int, Mover> kMoves[] = {
        {WXK_UP, &OmVirtualListViewCtrl::LineUp},
        {WXK_DOWN, &OmVirtualListViewCtrl::LineDown},
        {WXK_PAGEUP, &OmVirtualListViewCtrl::PageUp},
        {WXK_PAGEDOWN, &OmVirtualListViewCtrl::PageDown},
        {WXK_HOME, &OmVirtualListViewCtrl::Home},
        {WXK_END, &OmVirtualListViewCtrl::End},
    };
    for (const auto& [key, mover] : kMoves)
        if (event.GetKeyCode() == key)
            return (this->*mover)();
    event.Skip();
}

void OmVirtualListViewCtrl::OnMouseWheel(wxMouseEvent& event) {
    if (event.GetWheelAxis() != wxMOUSE_WHEEL_VERTICAL)
        return event.Skip();
    const int delta = event.GetWheelDelta();
    wheelRest_ += event.GetWheelRotation();
    const int notches = delta > 0 ? wheelRest_ / delta : 0;
    if (notches == 0)
        return;
    wheelRest_ -= notches * delta;
    const int64_t target = int64_t{firstLine_} - int64_t{notches} * event.GetLinesPerAction();
    MoveTo(static_cast<uint32_t>(std::clamp<int64_t>(target, 0, GetLastFirstLine())));
}

void OmVirtualListViewCtrl::OnSize(wxSizeEvent& event) {
    event.Skip();
    const uint32_t before = firstLine_;
    UpdateScrollBar();
    if (firstLine_ != before)
        Refresh(false);
}

void OmVirtualListViewCtrl::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    dc.SetBackground(wxBrush(GetBackgroundColour()));
    Draw(dc, GetClientSize());
    hasPainted_ = true;
}

// One DrawText a line: laying out the text is what painting costs.
void OmVirtualListViewCtrl::Draw(wxDC& dc, const wxSize& size) const {
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(dc.GetBackground());
    dc.SetTextForeground(textColour_);
    dc.SetFont(GetFont());
    const int height = std::max(dc.GetTextExtent("3F").GetHeight(), 1);
    wxString text;
    uint32_t line = firstLine_;
    for (int y = 0; y < size.GetHeight(); y += height, ++line) {
        dc.DrawRectangle(0, y, size.GetWidth(), height);
        if (line >= lineCount_)
            continue;
        OnGetLineText(line, text);
        if (!text.empty())
            dc.DrawText(text, kLeftMargin, y);
    }
}
