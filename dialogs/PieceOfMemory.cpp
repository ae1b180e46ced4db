#include "dialogs/PieceOfMemory.h"

#include "dialogs/NewStartControls.h"
#include "widgets/NumberParsing.h"

#include <wx/textctrl.h>

OmPieceOfMemoryRows::OmPieceOfMemoryRows(wxWindow* parent, wxSizer* column) {
    wxFlexGridSizer* rows = MakeTextRows();
    from_ = AddTextRow(parent, rows, _("&From address:"), _("(hex 8-bit offset)"));
    size_ = AddTextRow(parent, rows, _("&Size in bytes:"), _("(decimal)"));
    column->Add(rows, wxSizerFlags().Expand());
}

void OmPieceOfMemoryRows::Enable(bool enable) const {
    from_.Enable(enable);
    size_.Enable(enable);
}

void OmPieceOfMemoryRows::SetFocus() const {
    from_.box->SetFocus();
}

void OmPieceOfMemoryRows::ShowEntireFlash(uint32_t size) const {
    from_.box->SetValue("0");
    size_.box->SetValue(wxString::Format("%u", size));
}

bool OmPieceOfMemoryRows::Read(uint32_t& start, uint32_t& size, const wxString& sizeWarning) const {
    const std::optional<uint32_t> address = ParsePlainHex(from_.GetText());
    if (!address)
        return RefuseInput(*from_.box, InvalidAddressWarning());
    const std::optional<uint32_t> bytes = ParseDecimal(size_.GetText(), 1);
    if (!bytes)
        return RefuseInput(*size_.box, sizeWarning);
    start = *address;
    size = *bytes;
    return true;
}
