#include "app/HexViewCtrl.h"

#include <wx/font.h>

OmHexViewCtrl::OmHexViewCtrl(wxWindow* parent) : OmVirtualListViewCtrl(parent) {
    SetFont(wxFontInfo(10).Family(wxFONTFAMILY_DEFAULT).FaceName("Courier New"));
}

void OmHexViewCtrl::SetDataImage(const OmDataImage* image) {
    lines_.Attach(image);
    SetLineCount(lines_.GetLineCount());
}

bool OmHexViewCtrl::FindLine(uint32_t address, uint32_t& line) const {
    return lines_.FindLine(address, line);
}

void OmHexViewCtrl::OnGetLineText(unsigned line, wxString& text) const {
    text = lines_.GetLineText(line);
}
