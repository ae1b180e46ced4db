#include "tests/dialogs/DesignSetupFixture.h"

#include <wx/htmllbox.h>

namespace {

std::vector<std::string> PageNames(wxNotebook& notebook) {
    std::vector<std::string> names;
    for (size_t page = 0; page < notebook.GetPageCount(); ++page)
        names.push_back(notebook.GetPageText(page).ToStdString());
    return names;
}

} // namespace

TEST_F(DesignSetupTest, HasFourPagesAndItsButtons) {
    Look([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(shown.GetTitle(), "Setup");
        EXPECT_EQ(
            PageNames(Notebook(shown)),
            (std::vector<std::string>{"JTAG chain", "Flash array", "Signal pins", "Static pins"}));
        EXPECT_EQ(Notebook(shown).GetSelection(), kChainPage);
        for (const char* label : {"&OK", "&Cancel", "&Help"})
            EXPECT_NE(FindByLabel(shown, label), nullptr) << label;
    });
}

TEST_F(DesignSetupTest, EveryPageIsLaidOutWell) {
    Look([](OmDesignSetupDlg& shown) {
        for (const SetupPage page :
             {kChainPage, kFlashArrayPage, kSignalPinsPage, kStaticPinsPage}) {
            SCOPED_TRACE(page);
            OpenPage(shown, page);
            ExpectGoodLayout(shown);
            TakeScreenshot(shown, "design_setup_" + std::to_string(page));
        }
    });
}

TEST_F(DesignSetupTest, NoChangeGivesTheSetupBack) {
    setup_.addressPins.clear(); // as a setup that is not being edited
    setup_.dataPins.clear();
    const OmDesignSetup before = setup_;
    EXPECT_EQ(Edit([](OmDesignSetupDlg&) {}), wxID_OK);
    EXPECT_EQ(setup_, before);
}

TEST_F(DesignSetupTest, EmptyChainClosesWithoutAQuestion) {
    setup_ = OmDesignSetup();
    EXPECT_EQ(Edit([](OmDesignSetupDlg&) {}), wxID_OK);
    EXPECT_EQ(setup_, OmDesignSetup());
}

TEST_F(DesignSetupTest, PinsThatTheChainCannotResolveGoWithoutAQuestion) {
    setup_.ce = SignalPin{{4, "SEL", -1}};
    Look([](OmDesignSetupDlg& shown) {
        OpenPage(shown, kSignalPinsPage);
        EXPECT_EQ(RowText(shown, 0), "CE|||");
        EXPECT_EQ(Notebook(shown).GetPageImage(kSignalPinsPage), -1);
    });
}

TEST_F(DesignSetupTest, ListsStartWithTheirFirstRowSelected) {
    setup_.staticPins = {StaticPin{{0, "SEL", -1}, 1, L"x"}};
    Look([](OmDesignSetupDlg& shown) {
        OpenPage(shown, kSignalPinsPage);
        EXPECT_EQ(PinList(shown).GetSelectedRow(), 0);
        OpenPage(shown, kStaticPinsPage);
        EXPECT_EQ(PinList(shown).GetSelectedRow(), 0);
    });
}
