// A scrolling, owner-drawn list that holds no rows: it keeps a count of lines and the index of the
// first visible one, and asks for the text of each line as it paints. Only visible lines are ever
// formatted.
#pragma once

#include <cstdint>
#include <wx/window.h>

class wxDC;

class OmVirtualListViewCtrl : public wxWindow {
  public:
    explicit OmVirtualListViewCtrl(wxWindow* parent);

    // The text of a line; called for lines below the line count only.
    virtual void OnGetLineText(unsigned line, wxString& text) const = 0;

    // Scrolls until `line` is on top, as far as the last page allows; true when the view moved.
    bool ScrollToLine(unsigned line);

    uint32_t GetLineCount() const { return lineCount_; }

    uint32_t GetFirstLine() const { return firstLine_; }

    // The window has been on the screen.
    bool HasPainted() const { return hasPainted_; }

    // Paints the lines of an area of `size` with the current first line on top.
    void Draw(wxDC& dc, const wxSize& size) const;

  protected:
    // A new content: starts at its top.
    void SetLineCount(uint32_t count);
    int GetLineHeight() const;

  private:
    using Mover = void (OmVirtualListViewCtrl::*)();

    void TakeSystemColours();
    void BindMoves();
    void UpdateScrollBar();
    uint32_t GetLastFirstLine() const;
    uint32_t GetPageLines() const;
    bool MoveTo(uint32_t firstLine);

    void LineUp();
    void LineDown();
    void PageUp();
    void PageDown();
    void Home();
    void End();

    void OnPaint(wxPaintEvent& event);
    void OnSize(wxSizeEvent& event);
    void OnKeyDown(wxKeyEvent& event);
    void OnThumbTrack(wxScrollWinEvent& event);
    void OnMouseWheel(wxMouseEvent& event);

    wxColour textColour_;
    uint32_t lineCount_ = 0;
    uint32_t firstLine_ = 0;
    int32_t wheelRest_ = 0; // rotation not yet turned into lines
    bool hasPainted_ = false;
};
