#include "dialogs/DesignSetupDlg.h"
#include "dialogs/IRLenDlg.h"
#include "dialogs/PinListCtrl.h"
#include "dialogs/PinMapDlg.h"
#include "tests/screens/Screens.h"
#include "tests/setup/PinDevice.h"

#include <wx/htmllbox.h>
#include <wx/notebook.h>

namespace {

const char* const kPageNames[] = {"chain", "flash-array", "signal-pins", "static-pins"};

OmBitVector MakeIdcode(uint32_t code) {
    OmBitVector bits;
    for (int bit = 0; bit < 32; ++bit)
        bits.push_back((code >> bit) & 1);
    return bits;
}

// Three devices: all known, none of it, length alone; a 16-bit flash on the first.
OmDesignSetup MakeSetup() {
    OmDesignSetup setup = MakePinSetup();
    setup.devices[0].Idcode = MakeIdcode(0x0940303F);
    setup.devices.resize(3);
    setup.devices[1].Idcode = MakeIdcode(0x020B10DD);
    setup.devices[2].IRLen = 5;
    setup.ce = SignalPin{{0, "SEL", -1}};
    for (int bit = 0; bit < 20; ++bit)
        setup.addressPins[static_cast<size_t>(bit)] = SignalPin{{0, "ADDR", bit}};
    for (int bit = 0; bit < 16; ++bit)
        setup.dataPins[static_cast<size_t>(bit)] = SignalPin{{0, "DATA", bit}};
    setup.staticPins = {StaticPin{{0, "ADDR", 23}, 1, L"reset of the flash, active low"},
                        StaticPin{{0, "ADDR", 22}, 'Z', L""}};
    setup.ChipCount = 1;
    setup.WordSize = 2;
    setup.AddrCmdShift = 0;
    setup.sectors.groups = {{8, 0x2000}, {127, 0x10000}};
    return setup;
}

class SetupScreens : public ScreensTest {
  protected:
    void ShowSetup(const OmDesignSetup& setup, const std::function<void(OmDesignSetupDlg&)>& step) {
        OmDesignSetupDlg dialog(frame_);
        dialog.setup = setup;
        Show(dialog, [&](wxDialog& shown) { step(dynamic_cast<OmDesignSetupDlg&>(shown)); });
    }

    static void OpenPage(wxWindow& dialog, size_t page) {
        FindByClass<wxNotebook>(dialog)->SetSelection(page);
    }

    static OmPinListCtrl& PinList(wxWindow& dialog) {
        return *FindByClass<OmPinListCtrl>(*FindByClass<wxNotebook>(dialog)->GetCurrentPage());
    }

    void PictureOfEachPage(wxDialog& shown, const std::string& prefix) {
        for (size_t page = 0; page < std::size(kPageNames); ++page) {
            OpenPage(shown, page);
            Picture(shown, prefix + kPageNames[page]);
        }
    }
};

} // namespace

TEST_F(SetupScreens, SetupEmpty) {
    ShowSetup({}, [this](OmDesignSetupDlg& shown) { PictureOfEachPage(shown, "setup-empty-"); });
}

TEST_F(SetupScreens, SetupFilled) {
    ShowSetup(MakeSetup(), [this](OmDesignSetupDlg& shown) {
        FindByClass<wxSimpleHtmlListBox>(shown)->SetSelection(1);
        PictureOfEachPage(shown, "setup-");
    });
}

TEST_F(SetupScreens, SetupWithConflicts) {
    OmDesignSetup setup = MakeSetup();
    setup.addressPins[1] = SignalPin{{0, "SEL", -1}};
    setup.oe = SignalPin{{0, "IN", -1}};
    setup.staticPins.push_back(StaticPin{{0, "DATA", 0}, 0, L"by mistake"});
    ShowSetup(setup, [this](OmDesignSetupDlg& shown) {
        OpenPage(shown, 2);
        PinList(shown).SelectOnly(1);
        Picture(shown, "setup-signal-pins-conflict");
        OpenPage(shown, 3);
        PinList(shown).SelectOnly(2);
        Picture(shown, "setup-static-pins-conflict");
    });
}

TEST_F(SetupScreens, SetupWithMarkedTabs) {
    ShowSetup(MakeSetup(), [this](OmDesignSetupDlg& shown) {
        user_.Expect(L"Changing the JTAG chain configuration will reset settings on the 'Signal "
                     L"pins' and 'Static pins' tabs.\nDo you wish to continue applying the new "
                     L"JTAG chain configuration?",
                     kLossQuestionBox, OmAnswer::Yes);
        shown.ApplyChain(std::vector<OmBitVector>(2), {});
        Picture(shown, "setup-marked");
    });
}

TEST_F(SetupScreens, SetupPinList) {
    ShowSetup(MakeSetup(), [this](OmDesignSetupDlg& shown) {
        OpenPage(shown, 2);
        PinList(shown).SelectOnly(40);
        Type(shown, "JTAG device pin:", "a");
        Picture(shown, "setup-pin-filter");
    });
}

TEST_F(SetupScreens, IrLengthAndPinMap) {
    OmIRLenDlg length(frame_);
    length.displayName = "Dev1";
    length.length = 5;
    Show(length, [this](wxDialog& shown) { Picture(shown, "ir-length"); });
    OmPinMapDlg map(frame_);
    map.displayName = "Dev1 (chip)";
    map.pinMaps = {"BGA", "QFP"};
    map.selected = 1;
    Show(map, [this](wxDialog& shown) { Picture(shown, "pin-map"); });
}
