// What nobody would type on purpose, in every text box that takes input: the dialog answers with
// its usual warning, or takes it, at once. Names that a shell would take for commands stay names.
#include "dialogs/BlankCheckDlg.h"
#include "dialogs/BsdlFileDlg.h"
#include "dialogs/EditSectorsDlg.h"
#include "dialogs/GoToOffsetDlg.h"
#include "dialogs/ReadDlg.h"
#include "dialogs/VerifyDlg.h"
#include "jtag/ui/CableSettingsDlg.h"
#include "jtag/ui/StaticPinsDlg.h"
#include "tests/dialogs/BsdlFixture.h"
#include "tests/dialogs/MadeDialogs.h"
#include "tests/jtag/FakeJLink.h"
#include "tests/jtag/FakePortDriver.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

constexpr char kNewStart[] = "&Ignore the data view contents address and instead use this as the "
                             "data starting address:";
constexpr char kVerifyStart[] = "&Ignore the data view contents address and instead read data "
                                "from the flash starting at address:";
constexpr char kProgramStart[] = "&Ignore the data view contents address and instead program data "
                                 "into the flash starting at address:";
constexpr wchar_t kBadAddress[] =
    L"Invalid starting address. Address must be an unsigned hex 8-bit offset.";

using Prepare = void (*)(wxDialog&);

void LeaveAlone(wxDialog&) {}

void FillSectorCount(wxDialog& dialog) {
    Type(dialog, "&Number of sectors in a group:", "1");
}

void FillFrom(wxDialog& dialog) {
    Type(dialog, "&From address:", "0");
}

void ChoosePiece(wxDialog& dialog) {
    ClickRadio(dialog, "S&pecify a piece of memory to blank check");
}

void ChoosePieceFromZero(wxDialog& dialog) {
    ChoosePiece(dialog);
    FillFrom(dialog);
}

template <const char* label>
void Tick(wxDialog& dialog) {
    if (!CheckBox(dialog, label).GetValue())
        ClickCheck(dialog, label);
}

std::unique_ptr<wxDialog> MakeConnection() {
    auto dialog = std::make_unique<OmCableSettingsDlg>(nullptr);
    dialog->settings.cableType = OmCableType::JLinkIp;
    return dialog;
}

// A box for numbers: what is no number in its range is refused with `warning`.
struct NumberBox {
    const char* name;
    std::unique_ptr<wxDialog> (*make)();
    Prepare prepare;
    const char* label; // in front of the box
    const char* button;
    const wchar_t* warning;
    bool takesLargest; // 4294967295
};

const NumberBox kNumberBoxes[] = {
    {"read from", Make<OmReadDlg>, LeaveAlone, "&From address:", "&Read", kBadAddress, false},
    {"read size", Make<OmReadDlg>, FillFrom, "&Size in bytes:", "&Read",
     L"Invalid size. Size must be a decimal number of bytes to read.", true},
    {"blank check from", Make<OmBlankCheckDlg>, ChoosePiece, "&From address:", "&Blank Check",
     kBadAddress, false},
    {"blank check size", Make<OmBlankCheckDlg>, ChoosePieceFromZero,
     "&Size in bytes:", "&Blank Check",
     L"Invalid size. Size must be a decimal number of bytes to check for blank.", true},
    {"blank check start", Make<OmBlankCheckDlg>, Tick<kNewStart>, kNewStart, "&Blank Check",
     kBadAddress, false},
    {"verify start", Make<OmVerifyDlg>, Tick<kVerifyStart>, kVerifyStart, "&Verify",
     L"Invalid starting address.\nAddress must be an unsigned hex 8-bit offset.", false},
    {"program start", MakeProgram, Tick<kProgramStart>, kProgramStart, "&Program", kBadAddress,
     false},
    {"port", MakeConnection, LeaveAlone, "Port:", "&OK",
     L"TCP/IP port must be in a range from 0 to 65535. The default port for Segger J-Link TCP/IP "
     L"server is 19020.",
     false},
    {"sector count", Make<OmEditSectorsDlg>, LeaveAlone, "&Number of sectors in a group:", "&Add",
     L"Number of sectors in a group must be >= 1.", true},
    {"sector size", Make<OmEditSectorsDlg>, FillSectorCount, "&Sector size in bytes:", "&Add",
     L"Sector size must be >= 1.", true},
    {"select from", MakeSelectSectors, LeaveAlone, "&From:", "&Select",
     L"Invalid 'from' address.\nAddress must be an unsigned hexadecimal integer.", false},
    {"select to", MakeSelectSectors, LeaveAlone, "&To:", "&Select",
     L"Invalid 'to' address.\nAddress must be an unsigned hexadecimal integer.", false},
};

wxString LongPath() {
    wxString path;
    while (path.length() < 4000)
        path += "/long-folder-name";
    return path.Left(4000);
}

// No number in any box.
std::vector<wxString> AbsurdTexts() {
    return {
        wxString('7', 1 << 20), // a pasted megabyte
        LongPath(),
        "-1",
        "99999999999999999999999999999999999999",
        "'; touch shell-was-here; '",
        "$(touch shell-was-here)\"`touch shell-was-here`",
        wxString::FromUTF8("\xC3\xA4\xC3\xB6\xC3\xBC\xE6\xBC\xA2\xE5\xAD\x97"),
        "%s%n",
    };
}

// What a box keeps of a text: GTK's end after 65,534 characters.
wxString Kept(const wxString& text) {
    OmGoToOffsetDlg dialog(nullptr);
    auto* box = FindByClass<wxTextCtrl>(dialog);
    box->SetValue(text);
    EXPECT_GE(box->GetValue().length(), std::min<size_t>(text.length(), 65534));
    return box->GetValue();
}

class AbsurdInputTest : public BsdlDialogTest {
  protected:
    AbsurdInputTest() : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_.path);
    }

    ~AbsurdInputTest() override {
        EXPECT_FALSE(std::filesystem::exists("shell-was-here")) << "a name has reached a shell";
        std::filesystem::current_path(before_);
    }

    // One after the other in one dialog, as a user tries.
    void ExpectRefused(const NumberBox& box, const std::vector<wxString>& texts) {
        const std::unique_ptr<wxDialog> dialog = box.make();
        user_.Expect(dialog->GetTitle(), [&](wxDialog& shown) {
            box.prepare(shown);
            for (const wxString& text : texts)
                ExpectRefused(shown, box, text);
            PressButton(shown, wxID_CANCEL);
        });
        EXPECT_EQ(dialog->ShowModal(), wxID_CANCEL);
    }

    void ExpectRefused(wxDialog& shown, const NumberBox& box, const wxString& text) {
        SCOPED_TRACE(std::string(box.name) + ": " + text.Left(50).ToStdString(wxConvUTF8));
        boxes_.Expect(box.warning, kWarningBox);
        FindByLabel(shown, box.button)->SetFocus();
        Type(shown, box.label, text);
        PressButton(shown, box.button);
        EXPECT_TRUE(shown.IsModal());
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, box.label));
    }

    FakeJLink jlink_;
    FakePortDriver ports_;

  private:
    std::filesystem::path before_;
};

} // namespace

TEST_F(AbsurdInputTest, EveryBoxForNumbersRefusesWhatIsNone) {
    for (const NumberBox& box : kNumberBoxes)
        ExpectRefused(box, AbsurdTexts());
}

TEST_F(AbsurdInputTest, LargestSizeIsTakenAsASizeAndRefusedAsAnAddress) {
    for (const NumberBox& box : kNumberBoxes) {
        if (!box.takesLargest) {
            ExpectRefused(box, {"4294967295"});
            continue;
        }
        SCOPED_TRACE(box.name);
        const std::unique_ptr<wxDialog> dialog = box.make();
        user_.Expect(dialog->GetTitle(), [&](wxDialog& shown) {
            box.prepare(shown);
            Type(shown, box.label, "4294967295");
            if (box.make == Make<OmEditSectorsDlg>)
                return PressButton(shown, wxID_CANCEL); // its other box would be empty
            PressButton(shown, box.button);
        });
        dialog->ShowModal();
    }
}

TEST_F(AbsurdInputTest, OffsetToGoToIsQuotedInTheWarning) {
    for (const wxString& text : AbsurdTexts()) {
        SCOPED_TRACE(text.Left(50).ToStdString(wxConvUTF8));
        OmGoToOffsetDlg dialog(nullptr);
        boxes_.Expect(L"Invalid data entered: '" + Kept(text).ToStdWstring() +
                          L"'.\n\nPlease enter a hexadecimal offset to scroll the data view to.",
                      kWarningBox);
        user_.Expect("Go to Offset", [&](wxDialog& shown) {
            FindByClass<wxTextCtrl>(shown)->SetValue(text);
            PressButton(shown, wxID_OK);
            PressButton(shown, wxID_CANCEL);
        });
        EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
    }
}

TEST_F(AbsurdInputTest, NameOfAStaticPinsSchemeMayBeAnything) {
    for (const wxString& text : AbsurdTexts()) {
        SCOPED_TRACE(text.Left(50).ToStdString(wxConvUTF8));
        OmEditFtd2xxStaticPinsSchemeDlg dialog(nullptr);
        user_.Expect("DBUS/CBUS Pins States", [&](wxDialog& shown) {
            Type(shown, "Scheme description (e.g. JTAG pod or pods this scheme is for):", text);
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(dialog.ShowModal(), wxID_OK);
        EXPECT_EQ(dialog.scheme.description, Kept(text).ToStdWstring());
    }
}

TEST_F(AbsurdInputTest, BsdlFileThatCannotBeIsNotFound) {
    for (const wxString& text : AbsurdTexts()) {
        SCOPED_TRACE(text.Left(50).ToStdString(wxConvUTF8));
        OmBsdlFileDlg dialog(nullptr);
        for (int presses = 0; presses < 2; ++presses)
            boxes_.Expect(L"Cannot find the '" + Kept(text).ToStdWstring() + L"' file.", kErrorBox);
        user_.Expect("BSDL File", [&](wxDialog& shown) {
            FindByClass<wxTextCtrl>(shown)->SetValue(text);
            PressButton(shown, "&Verify...");
            PressButton(shown, "View &File...");
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(dialog.ShowModal(), wxID_OK);
        EXPECT_EQ(dialog.fileName, Kept(text));
    }
}

TEST_F(AbsurdInputTest, HostMayBeAnythingThatIsNotEmpty) {
    for (const wxString& text : AbsurdTexts()) {
        SCOPED_TRACE(text.Left(50).ToStdString(wxConvUTF8));
        OmCableSettingsDlg dialog(nullptr);
        dialog.settings.cableType = OmCableType::JLinkIp;
        user_.Expect("JTAG Connection", [&](wxDialog& shown) {
            Type(shown, "Host:", text);
            PressButton(shown, wxID_OK);
        });
        EXPECT_EQ(dialog.ShowModal(), wxID_OK);
        EXPECT_EQ(dialog.settings.jlinkIpHost, Kept(text).ToStdString(wxConvUTF8));
    }
}

// The editor gets the name as one argument, whatever is in it.
TEST_F(AbsurdInputTest, FileIsViewedUnderAnyName) {
    const char* const names[] = {
        "a b.bsd",
        "quote\"and'quote.bsd",
        "x;touch shell-was-here;.bsd",
        "$(touch shell-was-here).bsd",
        "`touch shell-was-here`.bsd",
        "a|b&c>d<e*?.bsd",
        "back\\slash.bsd",
        "\xC3\xA4\xC3\xB6\xC3\xBC \xE6\xBC\xA2\xE5\xAD\x97.bsd",
        "-rf.bsd",
    };
    for (const char* name : names) {
        SCOPED_TRACE(name);
        const std::string path = folder_.Write(name, "entity");
        std::filesystem::remove(folder_.Path("viewed"));
        OmBsdlFileDlg dialog(nullptr);
        user_.Expect("BSDL File", [&](wxDialog& shown) {
            FindByClass<wxTextCtrl>(shown)->SetValue(wxString::FromUTF8(path));
            PressButton(shown, "View &File...");
            EXPECT_EQ(GetViewedFile(), path);
            PressButton(shown, wxID_CANCEL);
        });
        EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
    }
}

TEST_F(AbsurdInputTest, RelativeNameWithADashIsNoOptionOfTheEditor) {
    folder_.Write("-rf.bsd", "entity");
    const std::filesystem::path previous = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path);
    OmBsdlFileDlg dialog(nullptr);
    user_.Expect("BSDL File", [&](wxDialog& shown) {
        FindByClass<wxTextCtrl>(shown)->SetValue("-rf.bsd");
        PressButton(shown, "View &File...");
        EXPECT_EQ(GetViewedFile(), "./-rf.bsd");
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
    std::filesystem::current_path(previous);
}
