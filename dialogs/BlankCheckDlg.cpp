#include "dialogs/BlankCheckDlg.h"

#include <wx/hyperlink.h>
#include <wx/radiobut.h>

OmBlankCheckDlg::OmBlankCheckDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Blank Check")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, "");
    BuildDataControls(box, rows);
    BuildPieceControls(box, rows);
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&Blank Check")));
    for (wxRadioButton* radio : {dataRadio_, pieceRadio_})
        radio->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { UpdateEnabled(); });
}

void OmBlankCheckDlg::BuildDataControls(wxWindow* parent, wxSizer* column) {
    dataRadio_ = new wxRadioButton(parent, wxID_ANY,
                                   _("Blank c&heck only the addresses required to program current "
                                     "data view contents"),
                                   wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    column->Add(dataRadio_, RowFlags());
    auto* indented = new wxBoxSizer(wxVERTICAL);
    newStartControls_.emplace(
        parent, indented,
        OmNewStartControls::Texts{_("&Ignore the data view contents address and instead use this "
                                    "as the data starting address:"),
                                  _("(hex 8-bit offset)"), EmptyNewStartWarning(),
                                  InvalidAddressWarning()});
    AddIndented(column, indented);
}

void OmBlankCheckDlg::BuildPieceControls(wxWindow* parent, wxSizer* column) {
    pieceRadio_ =
        new wxRadioButton(parent, wxID_ANY, _("S&pecify a piece of memory to blank check"));
    column->Add(pieceRadio_, RowFlags());
    auto* indented = new wxBoxSizer(wxVERTICAL);
    piece_.emplace(parent, indented);
    const auto chooseEntireFlash = [this] {
        ChoosePiece(true);
        piece_->ShowEntireFlash(entireSize);
    };
    indented->Add(MakeLink(parent, _("Blank check the entire flash"), chooseEntireFlash),
                  wxSizerFlags().Border(wxTOP));
    AddIndented(column, indented);
}

void OmBlankCheckDlg::ChoosePiece(bool piece) {
    (piece ? pieceRadio_ : dataRadio_)->SetValue(true);
    UpdateEnabled();
}

void OmBlankCheckDlg::UpdateEnabled() {
    newStartControls_->EnableAll(dataRadio_->GetValue());
    piece_->Enable(pieceRadio_->GetValue());
}

bool OmBlankCheckDlg::TransferDataToWindow() {
    dataRadio_->Enable(!noData);
    pieceOfMemory |= noData;
    newStartControls_->Show(ignoreAddress, newStart);
    ChoosePiece(pieceOfMemory);
    (pieceOfMemory ? pieceRadio_ : dataRadio_)->SetFocus();
    return wxDialog::TransferDataToWindow();
}

bool OmBlankCheckDlg::TransferDataFromWindow() {
    pieceOfMemory = pieceRadio_->GetValue();
    if (pieceOfMemory)
        return piece_->Read(
            from, size,
            _("Invalid size. Size must be a decimal number of bytes to check for blank."));
    return newStartControls_->Read(ignoreAddress, newStart);
}
