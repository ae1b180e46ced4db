#include "dialogs/EditSectorsDlg.h"
#include "tests/dialogs/DesignSetupFixture.h"

#include <wx/wx.h>

namespace {

constexpr char kOrganisation[] = "&DATA bus organization:";
constexpr char kMaxWidth[] = "The &maximum data width a single chip is capable of:";
constexpr char kCommandSet[] = "Command &set:";
constexpr char kBuffered[] = "If supported, use &buffered programming instead of word-by-word";
constexpr char kNoStatus[] =
    "Do &not check status while programming (use only with small TCK frequency)";
constexpr char kUnlockBypass[] = "Use &Unlock Bypass mode for programming";
constexpr char kCfi[] = "&Flash is CFI-compliant -- no need to define sectors info";
constexpr char kDefine[] = "D&efine Sectors...";

using Labels = std::vector<std::string>;

std::string Summary(wxWindow& dialog) {
    return TextBehind(dialog, kDefine);
}

class FlashArrayPageTest : public DesignSetupTest {
  protected:
    void LookAtPage(const Step& step) {
        Look([&step](OmDesignSetupDlg& shown) {
            OpenPage(shown, kFlashArrayPage);
            step(shown);
        });
    }

    void EditPage(const Step& step) {
        Edit([&step](OmDesignSetupDlg& shown) {
            OpenPage(shown, kFlashArrayPage);
            step(shown);
        });
    }
};

} // namespace

TEST_F(FlashArrayPageTest, NothingIsChosenInANewSetup) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kOrganisation)).size(), 7u);
        EXPECT_EQ(ChoiceBehind(shown, kOrganisation).GetSelection(), wxNOT_FOUND);
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kMaxWidth)), Labels());
        EXPECT_EQ(ChoiceBehind(shown, kCommandSet).GetStringSelection(),
                  "Auto-Detect (Recommended)");
        EXPECT_TRUE(CheckBox(shown, kBuffered).GetValue());
        EXPECT_FALSE(CheckBox(shown, kNoStatus).GetValue());
        EXPECT_FALSE(CheckBox(shown, kUnlockBypass).GetValue());
        EXPECT_TRUE(CheckBox(shown, kCfi).GetValue());
        EXPECT_FALSE(IsEnabled(shown, kDefine));
        EXPECT_EQ(Summary(shown), "");
        EXPECT_NE(FindByLabel(shown, "Program and Erase algorithm"), nullptr);
        EXPECT_NE(FindByLabel(shown, "AMD specific"), nullptr);
        EXPECT_NE(FindByLabel(shown, "Sectors"), nullptr);
        EXPECT_NE(FindByLabel(shown,
                              "For Common Flash Interface (CFI) compliant devices the software "
                              "will\nautomatically read sector configuration from the CFI table. "
                              "You only have to define\nsectors for non-CFI devices."),
                  nullptr);
    });
}

TEST_F(FlashArrayPageTest, ShowsTheSetup) {
    setup_.ChipCount = 2;
    setup_.WordSize = 2;
    setup_.AddrCmdShift = 1;
    setup_.CmdSet = kCmdSetAmd;
    setup_.UseBufferedProg = false;
    setup_.DontCheckStatus = true;
    setup_.UseUnlockBypass = true;
    setup_.sectors.groups = {{8, 8192}, {127, 65536}};
    LookAtPage([](OmDesignSetupDlg& shown) {
        EXPECT_EQ(ChoiceBehind(shown, kOrganisation).GetStringSelection(),
                  "32-bit  (2 chips x 16-bit)");
        EXPECT_EQ(ChoiceBehind(shown, kMaxWidth).GetStringSelection(),
                  "32-bit capable operating in 16-bit mode (WORD# is low)");
        EXPECT_EQ(ChoiceBehind(shown, kCommandSet).GetStringSelection(),
                  "AMD (Word-by-Word Prog.)");
        EXPECT_FALSE(CheckBox(shown, kBuffered).GetValue());
        EXPECT_TRUE(CheckBox(shown, kNoStatus).GetValue());
        EXPECT_TRUE(CheckBox(shown, kUnlockBypass).GetValue());
        EXPECT_FALSE(CheckBox(shown, kCfi).GetValue());
        EXPECT_TRUE(IsEnabled(shown, kDefine));
        EXPECT_EQ(Summary(shown), "8 x 8192, 127 x 65536.");
    });
}

TEST_F(FlashArrayPageTest, OrganisationDecidesTheWidths) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        const struct {
            const char* organisation;
            size_t widths;
            bool enabled;
        } cases[] = {{"8-bit  (1 chip x 8-bit)", 3, true},
                     {"16-bit  (1 chip x 16-bit)", 2, true},
                     {"24-bit  (3 chips x 8-bit)", 3, true},
                     {"32-bit  (1 chip x 32-bit)", 1, false},
                     {"32-bit  (4 chips x 8-bit)", 3, true}};
        for (const auto& c : cases) {
            Choose(shown, kOrganisation, c.organisation);
            wxChoice& width = ChoiceBehind(shown, kMaxWidth);
            EXPECT_EQ(width.GetCount(), c.widths) << c.organisation;
            EXPECT_EQ(width.IsEnabled(), c.enabled) << c.organisation;
            EXPECT_EQ(width.GetStringSelection(), c.enabled ? "" : "32-bit") << c.organisation;
        }
    });
}

TEST_F(FlashArrayPageTest, ChoicesAreStored) {
    EditPage([](OmDesignSetupDlg& shown) {
        Choose(shown, kOrganisation, "24-bit  (3 chips x 8-bit)");
        Choose(shown, kMaxWidth, "32-bit capable operating in 8-bit mode (BYTE# is low)");
        Choose(shown, kCommandSet, "AMD (Word-by-Word Prog.)");
        ClickCheck(shown, kNoStatus);
        ClickCheck(shown, kUnlockBypass);
    });
    EXPECT_EQ(setup_.ChipCount, 3);
    EXPECT_EQ(setup_.WordSize, 1);
    EXPECT_EQ(setup_.AddrCmdShift, 2);
    EXPECT_EQ(setup_.CmdSet, kCmdSetAmd);
    EXPECT_TRUE(setup_.UseBufferedProg);
    EXPECT_TRUE(setup_.DontCheckStatus);
    EXPECT_TRUE(setup_.UseUnlockBypass);
}

TEST_F(FlashArrayPageTest, OrganisationThatIsNotOfferedIsStoredAsNone) {
    setup_.ChipCount = 4;
    setup_.WordSize = 2;
    setup_.AddrCmdShift = 1;
    EditPage([](OmDesignSetupDlg&) {});
    EXPECT_EQ(setup_.ChipCount, -1);
    EXPECT_EQ(setup_.WordSize, -1);
    EXPECT_EQ(setup_.AddrCmdShift, -1);
}

TEST_F(FlashArrayPageTest, CommandSetDecidesWhatItAllows) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        const struct {
            const char* set;
            bool buffered;
            bool bypass;
        } cases[] = {{"Intel Std (Word-by-Word Prog.)", false, false},
                     {"AMD (Word-by-Word Prog.)", false, true},
                     {"Auto-Detect (Recommended)", true, true}};
        for (const auto& c : cases) {
            Choose(shown, kCommandSet, c.set);
            EXPECT_EQ(IsEnabled(shown, kBuffered), c.buffered) << c.set;
            EXPECT_EQ(IsEnabled(shown, kUnlockBypass), c.bypass) << c.set;
        }
    });
}

TEST_F(FlashArrayPageTest, SectorsAreDefinedForFlashWithoutCfi) {
    EditPage([this](OmDesignSetupDlg& shown) {
        ClickCheck(shown, kCfi);
        EXPECT_TRUE(IsEnabled(shown, kDefine));
        EXPECT_EQ(Summary(shown), "(no sectors defined)");
        user_.Expect("Sectors", [](wxDialog& sectors) {
            dynamic_cast<OmEditSectorsDlg&>(sectors).layout.groups = {{16, 4096}};
            PressButton(sectors, wxID_OK);
        });
        PressButton(shown, kDefine);
        EXPECT_EQ(Summary(shown), "16 x 4096.");
    });
    EXPECT_EQ(setup_.sectors.groups, (std::vector<OmSectorGroup>{{16, 4096}}));
}

TEST_F(FlashArrayPageTest, CancelledSectorsStayAsTheyWere) {
    setup_.sectors.groups = {{8, 8192}};
    EditPage([this](OmDesignSetupDlg& shown) {
        user_.Expect("Sectors", [](wxDialog& sectors) {
            auto& edited = dynamic_cast<OmEditSectorsDlg&>(sectors);
            EXPECT_EQ(edited.layout.groups, (std::vector<OmSectorGroup>{{8, 8192}}));
            edited.layout.groups.clear();
            PressButton(sectors, wxID_CANCEL);
        });
        PressButton(shown, kDefine);
    });
    EXPECT_EQ(setup_.sectors.groups, (std::vector<OmSectorGroup>{{8, 8192}}));
}

TEST_F(FlashArrayPageTest, CfiEmptiesTheSectorsAtTheEnd) {
    setup_.sectors.groups = {{8, 8192}};
    EditPage([](OmDesignSetupDlg& shown) {
        ClickCheck(shown, kCfi);
        EXPECT_EQ(Summary(shown), "");
        EXPECT_FALSE(IsEnabled(shown, kDefine));
        ClickCheck(shown, kCfi); // by mistake
        EXPECT_EQ(Summary(shown), "8 x 8192.");
        ClickCheck(shown, kCfi);
    });
    EXPECT_TRUE(setup_.sectors.IsEmpty());
}

TEST_F(FlashArrayPageTest, ChangesAreTakenBackOneByOne) {
    LookAtPage([](OmDesignSetupDlg& shown) {
        wxWindow& page = *Notebook(shown).GetCurrentPage();
        Choose(shown, kOrganisation, "16-bit  (1 chip x 16-bit)");
        Choose(shown, kMaxWidth, "16-bit maximum capable");
        ClickCheck(shown, kCfi);
        Key(page, 'Z', wxMOD_CONTROL);
        EXPECT_TRUE(CheckBox(shown, kCfi).GetValue());
        Key(page, 'Z', wxMOD_CONTROL);
        EXPECT_EQ(ChoiceBehind(shown, kMaxWidth).GetSelection(), wxNOT_FOUND);
        Key(page, 'Z', wxMOD_CONTROL);
        EXPECT_EQ(ChoiceBehind(shown, kOrganisation).GetSelection(), wxNOT_FOUND);
        EXPECT_EQ(shown.setup.ChipCount, -1);
    });
}
