// Toolbar backgrounds with a line along an edge, so that one grey and one white line run where the
// two bars meet.
#pragma once

#include <wx/aui/auibar.h>
#include <wx/pen.h>

class OmAuiToolBarArt : public wxAuiDefaultToolBarArt {
  public:
    OmAuiToolBarArt(bool topLine, bool bottomLine);
    ~OmAuiToolBarArt() override;

    wxAuiToolBarArt* Clone() override;
    void DrawBackground(wxDC& dc, wxWindow* window, const wxRect& rect) override;

  private:
    bool topLine_;    // white
    bool bottomLine_; // in the colour of the pen
    wxPen pen_;
};
