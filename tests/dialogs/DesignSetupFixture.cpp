#include "tests/dialogs/DesignSetupFixture.h"

int DesignSetupTest::Show(const Step& step) {
    OmDesignSetupDlg dialog(nullptr);
    dialog.setup = setup_;
    user_.Expect("Setup",
                 [&step](wxDialog& shown) { step(dynamic_cast<OmDesignSetupDlg&>(shown)); });
    const int button = dialog.ShowModal();
    setup_ = dialog.setup;
    return button;
}

void DesignSetupTest::Look(const Step& step) {
    EXPECT_EQ(Show([&step](OmDesignSetupDlg& shown) {
                  step(shown);
                  PressButton(shown, wxID_CANCEL);
              }),
              wxID_CANCEL);
}

int DesignSetupTest::Edit(const Step& step) {
    return Show([&step](OmDesignSetupDlg& shown) {
        step(shown);
        PressButton(shown, wxID_OK);
    });
}

wxNotebook& DesignSetupTest::Notebook(wxWindow& dialog) {
    return *FindByClass<wxNotebook>(dialog);
}

void DesignSetupTest::OpenPage(wxWindow& dialog, SetupPage page) {
    Notebook(dialog).SetSelection(page);
}

OmPinListCtrl& DesignSetupTest::PinList(wxWindow& dialog) {
    return *FindByClass<OmPinListCtrl>(*Notebook(dialog).GetCurrentPage());
}

wxWindow& DesignSetupTest::Page(wxWindow& dialog) {
    return *Notebook(dialog).GetCurrentPage();
}

std::string DesignSetupTest::Line(wxWindow& dialog, unsigned index) {
    std::vector<wxTextCtrl*> lines;
    ForEachDescendant(Page(dialog), [&](wxWindow& window) {
        auto* line = dynamic_cast<wxTextCtrl*>(&window);
        if (line && !line->IsEditable())
            lines.push_back(line);
    });
    return lines.at(index)->GetValue().utf8_string();
}

std::string DesignSetupTest::RowText(wxWindow& dialog, int row) {
    std::string text;
    for (int column = 0; column < 4; ++column)
        text += (column ? "|" : "") + PinList(dialog).GetItemText(row, column).ToStdString();
    return text;
}

void DesignSetupTest::Key(wxWindow& focus, int key, int modifiers) {
    focus.SetFocus();
    wxKeyEvent event(wxEVT_CHAR_HOOK);
    event.m_keyCode = key;
    event.SetControlDown(modifiers & wxMOD_CONTROL);
    event.SetEventObject(&focus);
    focus.GetEventHandler()->ProcessEvent(event);
}
