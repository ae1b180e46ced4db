#include "dialogs/ReadDlg.h"

#include <wx/hyperlink.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

OmReadDlg::OmReadDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Read")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    wxStaticBoxSizer* group = AddGroup(this, column, "");
    wxStaticBox* box = group->GetStaticBox();
    group->Add(
        new wxStaticText(box, wxID_ANY,
                         _("Please specify the starting address and number of bytes to read:")),
        RowFlags());
    auto* rows = new wxBoxSizer(wxVERTICAL);
    piece_.emplace(box, rows);
    group->Add(rows, RowFlags());
    group->Add(MakeLink(box, _("Read the entire flash contents"),
                        [this] { piece_->ShowEntireFlash(entireSize); }),
               RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&Read")));
    piece_->SetFocus();
}

bool OmReadDlg::TransferDataFromWindow() {
    return piece_->Read(start, size,
                        _("Invalid size. Size must be a decimal number of bytes to read."));
}
