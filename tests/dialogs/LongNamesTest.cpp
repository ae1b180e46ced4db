// Names of files, folders, devices and schemes may be far longer than a dialog is wide. They scroll
// or are shortened; the dialog keeps its size and its controls their places.
#include "bsdl/BsdlFinder.h"
#include "dialogs/BsdlFileDlg.h"
#include "dialogs/BsdlInfoDlg.h"
#include "dialogs/BsdlSearchDlg.h"
#include "jtag/ui/StaticPinsDlg.h"
#include "tests/dialogs/BsdlFixture.h"
#include "tests/dialogs/CableSettingsFixture.h"
#include "tests/jtag/FakeD2xx.h"

namespace {

class LongNamesTest : public BsdlDialogTest {
  protected:
    LongNamesTest() { longPath_.append(300, 'n'); }

    // The size in which the dialog comes up and which it keeps when the user pulls at it and lets
    // go again.
    wxSize ShowAndPull(wxDialog& dialog, const char* picture) {
        wxSize size;
        user_.Expect(dialog.GetTitle(), [&](wxDialog& shown) {
            size = shown.GetSize();
            ExpectGoodLayout(shown);
            shown.SetSize(size + wxSize(10, 10));
            shown.SetSize(size);
            SettleEvents();
            ExpectGoodLayout(shown);
            TakeScreenshot(shown, picture);
            EXPECT_EQ(shown.GetSize(), size);
            shown.Close();
        });
        dialog.ShowModal();
        return size;
    }

    // As the search does.
    static void Send(wxDialog& dialog, wxEventType type, const wxString& text) {
        wxCommandEvent event(type);
        event.SetString(text);
        dialog.ProcessWindowEvent(event);
    }

    std::string longPath_ = "/folder/";
};

class LongDeviceNamesTest : public CableSettingsDlgTest {};

} // namespace

TEST_F(LongNamesTest, BsdlFileDialogKeepsItsSize) {
    OmBsdlFileDlg usual(nullptr);
    const wxSize size = ShowAndPull(usual, "bsdl-file");
    wxConfigBase::Get()->Write("/BsdlDirs", wxString(longPath_));
    OmBsdlFileDlg dialog(nullptr);
    dialog.fileName = longPath_;
    EXPECT_EQ(ShowAndPull(dialog, "bsdl-file-long-names"), size);
}

TEST_F(LongNamesTest, BsdlInfoDialogKeepsItsSize) {
    OmBsdlInfoDlg usual(nullptr);
    const wxSize size = ShowAndPull(usual, "bsdl-info");
    OmBsdlData data;
    data.entity = longPath_;
    OmBsdlInfoDlg dialog(nullptr);
    dialog.SetDevice("Dev1 (" + longPath_ + ")", Idcode(), &data, longPath_);
    EXPECT_EQ(ShowAndPull(dialog, "bsdl-info-long-names"), size);
}

TEST_F(LongNamesTest, BsdlSearchDialogKeepsItsSize) {
    OmBsdlSearchDlg usual(nullptr, Idcode(), {});
    const wxSize size = ShowAndPull(usual, "bsdl-search");
    OmBsdlSearchDlg dialog(nullptr, Idcode(), {});
    Send(dialog, OM_EVT_BSDL_FILE, longPath_);
    Send(dialog, OM_EVT_BSDL_FOUND, longPath_ + ";" + longPath_ + ";A;0101");
    EXPECT_EQ(ShowAndPull(dialog, "bsdl-search-long-names"), size);
}

TEST_F(LongNamesTest, StaticPinsDialogKeepsItsSize) {
    OmFtd2xxStaticPinsDlg usual(nullptr);
    const wxSize size = ShowAndPull(usual, "static-pins");
    OmFtd2xxStaticPinsDlg dialog(nullptr);
    OmFtd2xxStaticPinsScheme scheme;
    scheme.description = std::wstring(300, L'w');
    dialog.schemes = {scheme};
    EXPECT_EQ(ShowAndPull(dialog, "static-pins-long-names"), size);
}

// The longest that the driver can give: 63 characters, and 15 of the serial number.
TEST_F(LongDeviceNamesTest, ConnectionDialogKeepsItsControlsInside) {
    FakeD2xx d2xx;
    d2xx.devices = {{std::string(63, 'W'), std::string(15, 'S'), 6}};
    settings_.cableType = OmCableType::Ftd2xx;
    settings_.ftd2xxDescription = d2xx.devices.front().description;
    settings_.ftd2xxSerial = d2xx.devices.front().serial;
    Show([](wxDialog& shown) {
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "connection-long-names");
        PressButton(shown, wxID_CANCEL);
    });
}
