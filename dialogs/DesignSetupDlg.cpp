#include "dialogs/DesignSetupDlg.h"

#include "dialogs/FlashArrayPage.h"
#include "dialogs/SetupChainPage.h"
#include "dialogs/SignalPinsPage.h"
#include "dialogs/StaticPinsPage.h"
#include "setup/ClosingChecks.h"
#include "setup/SignalRows.h"
#include "widgets/Help.h"
#include "widgets/Icons.h"

#include <wx/notebook.h>

namespace {

constexpr int kWarningMark = 0; // in the notebook's list of images

} // namespace

OmDesignSetupDlg::OmDesignSetupDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Setup"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      session_(setup) {
    BuildPages();
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(notebook_, RowFlags(1));
    LayOutDialog(this, column, MakeOkCancelHelpRow(this, [] { ShowHelpTopic("welcome.htm"); }));
    session_.onPinsChanged = [this] { ShowChangedPins(); };
    session_.onChainChanged = [this](const OmDroppedPins& dropped) { ShowChangedChain(dropped); };
    Bind(wxEVT_CHAR_HOOK, &OmDesignSetupDlg::OnKey, this);
}

void OmDesignSetupDlg::BuildPages() {
    notebook_ = new wxNotebook(this, wxID_ANY);
    wxVector<wxBitmapBundle> images;
    images.push_back(GetToolIcon("warning"));
    notebook_->SetImages(images);
    chain_ = new OmSetupChainPage(notebook_, session_);
    flashArray_ = new OmFlashArrayPage(notebook_, session_);
    signals_ = new OmSignalPinsPage(notebook_, session_);
    statics_ = new OmStaticPinsPage(notebook_, session_);
    notebook_->AddPage(chain_, _("JTAG chain"));
    notebook_->AddPage(flashArray_, _("Flash array"));
    notebook_->AddPage(signals_, _("Signal pins"));
    notebook_->AddPage(statics_, _("Static pins"));
    notebook_->Bind(wxEVT_NOTEBOOK_PAGE_CHANGED, [this](wxBookCtrlEvent& event) {
        if (event.GetSelection() != wxNOT_FOUND)
            notebook_->SetPageImage(static_cast<size_t>(event.GetSelection()),
                                    wxNotebook::NO_IMAGE);
        event.Skip();
    });
}

// What the chain cannot resolve goes without a question: a loaded file is taken as it is.
bool OmDesignSetupDlg::TransferDataToWindow() {
    session_.Start();
    chain_->ShowChain();
    flashArray_->ShowSetup();
    signals_->ShowChain(true);
    statics_->ShowChain(true);
    return wxDialog::TransferDataToWindow();
}

void OmDesignSetupDlg::ApplyChain(const std::vector<OmBitVector>& devices,
                                  const OmBitVector& irBits) {
    chain_->ApplyChain(devices, irBits);
}

void OmDesignSetupDlg::ShowChangedChain(const OmDroppedPins& dropped) {
    chain_->ShowChain();
    flashArray_->ShowSetup();
    signals_->ShowChain(dropped.signals);
    statics_->ShowChain(dropped.statics);
    if (dropped.signals)
        MarkPage(signals_);
    if (dropped.statics)
        MarkPage(statics_);
}

void OmDesignSetupDlg::ShowChangedPins() {
    flashArray_->ShowSetup();
    signals_->ShowPins();
    statics_->ShowPins();
}

void OmDesignSetupDlg::MarkPage(wxWindow* page) {
    const int index = notebook_->FindPage(page);
    if (index != notebook_->GetSelection())
        notebook_->SetPageImage(static_cast<size_t>(index), kWarningMark);
}

void OmDesignSetupDlg::OnKey(wxKeyEvent& event) {
    if (event.GetModifiers() == wxMOD_CONTROL && event.GetKeyCode() == 'Z')
        session_.Undo();
    else
        event.Skip();
}

bool OmDesignSetupDlg::TransferDataFromWindow() {
    if (!wxDialog::TransferDataFromWindow())
        return false;
    flashArray_->StoreControls();
    if (!ConfirmWhatIsOdd())
        return false;
    if (session_.sectorsFromFlash)
        setup.sectors.groups.clear();
    StripBusPins(setup);
    return true;
}

bool OmDesignSetupDlg::ConfirmWhatIsOdd() {
    const std::optional<OmClosingProblem> problem = FindClosingProblem(setup);
    if (!problem)
        return true;
    if (problem->field != OmClosingField::None) {
        notebook_->SetSelection(static_cast<size_t>(notebook_->FindPage(flashArray_)));
        flashArray_->FocusField(problem->field);
    }
    return ConfirmClosing(*problem);
}
