// The list of FT2232 static-pin schemes, and the editor of one scheme.
#pragma once

#include "jtag/StaticPinsSchemes.h"
#include "widgets/DialogLayout.h"

#include <array>

class wxButton;
class wxChoice;
class wxListBox;

// "FT2232" cables have twelve static pins: DBUS4 to DBUS7 and CBUS0 to CBUS7.
inline constexpr size_t kStaticPinCount = 12;

class OmFtd2xxStaticPinsDlg : public wxDialog {
  public:
    explicit OmFtd2xxStaticPinsDlg(wxWindow* parent);

    OmStaticPinsSchemes schemes; // worked on
    int selected = -1;           // in and out

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    using Action = void (OmFtd2xxStaticPinsDlg::*)();

    wxSizer* BuildListRow();
    wxButton* AddButton(wxSizer* column, const wxString& label, Action action);
    void New();
    void Edit();
    void Delete();
    bool EditScheme(OmFtd2xxStaticPinsScheme& scheme);
    void Redraw(int selectedRow);
    void UpdateEnabled();

    wxListBox* list_ = nullptr;
    wxButton* edit_ = nullptr;
    wxButton* delete_ = nullptr;
};

class OmEditFtd2xxStaticPinsSchemeDlg : public wxDialog {
  public:
    explicit OmEditFtd2xxStaticPinsSchemeDlg(wxWindow* parent);

    OmFtd2xxStaticPinsScheme scheme; // worked on; a predefined one can only be looked at

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    wxSizer* BuildPins();

    wxTextCtrl* description_ = nullptr;
    std::array<wxChoice*, kStaticPinCount> pins_{};
    wxStaticText* note_ = nullptr;
};
