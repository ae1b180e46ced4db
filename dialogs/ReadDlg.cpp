#include "dialogs/ReadDlg.h"

#include <wx/hyperlink.h>

OmReadDlg::OmReadDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Read")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(
        this, column, _("Please specify the starting address and number of bytes to read:"));
    auto* piece = new wxBoxSizer(wxVERTICAL);
    piece_.emplace(box, piece);
    rows->Add(piece, RowFlags());
    rows->Add(MakeLink(box, _("Read the entire flash contents"),
                       [this] { piece_->ShowEntireFlash(entireSize); }),
              RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&Read")));
    piece_->SetFocus();
}

bool OmReadDlg::TransferDataFromWindow() {
    return piece_->Read(start, size,
                        _("Invalid size. Size must be a decimal number of bytes to read."));
}
