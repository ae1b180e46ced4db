// The chain wizard over chains of all kinds, and the dialog for a chain that is not connected.
#include "bsdl/Idcode.h"
#include "dialogs/ChainExamWizard.h"
#include "dialogs/ChainSizeDlg.h"
#include "flash/FlashProgrammer.h"
#include "platform/Paths.h"
#include "platform/Text.h"
#include "tests/flash/FakeTarget.h"
#include "tests/jtag/FakeD2xx.h"
#include "tests/screens/Screens.h"
#include "tests/support/GermanLocale.h"
#include "tests/windows/support/Languages.h"

#include <wx/spinctrl.h>

namespace {

class ChainScreens : public ScreensTest {
  protected:
    ChainScreens() {
        SetManufacturerTablePath(ToLocal(GetProgramDirectory()) + "/mfrid.dat");
        d2xx_.devices = {{"Velmora Demo Board A", "VELDEMO1A"}};
        programmer_.CloseCable();
        programmer_.settings.cableType = OmCableType::Ftd2xx;
        programmer_.settings.ftd2xxDescription = d2xx_.devices[0].description;
        programmer_.settings.ftd2xxSerial = d2xx_.devices[0].serial;
        programmer_.createCable = [this](OmConnectionSettings&) { return target_.MakeCable(); };
    }

    ~ChainScreens() override {
        programmer_.CloseCable();
        programmer_.createCable = CreateCable;
        programmer_.settings.ResetToDefaults();
        SetManufacturerTablePath("");
    }

    void RunWizard(const ModalSteps::Step& step) {
        OmChainExamWizard wizard(frame_);
        dialogs_.Expect(wizard.GetTitle(), [&](wxDialog& shown) {
            step(shown);
            PressButton(shown, wxID_CANCEL);
        });
        wizard.RunWizard();
    }

    // The second page over the present chain.
    void PictureChain(const std::string& name) {
        RunWizard([&](wxDialog& shown) {
            PressButton(shown, wxID_FORWARD);
            Picture(shown, name);
        });
    }

    void UseAtmegaChain() { target_.devices = {{{}, 4}, {0x0940303F, 4, true}, {0x4BA00477, 4}}; }

    FakeD2xx d2xx_;
    FakeTarget target_{1, 1, 8};
    OmFlashProgrammer& programmer_ = OmFlashProgrammer::GetInstance();
};

} // namespace

TEST_F(ChainScreens, Connection) {
    RunWizard([this](wxDialog& shown) { Picture(shown, "wizard-connection"); });
}

TEST_F(ChainScreens, NoChain) {
    target_.tdoStuckAt = 1;
    PictureChain("wizard-none");
}

TEST_F(ChainScreens, OneDevice) {
    target_.devices = {{0x4BA00477, 4}};
    PictureChain("wizard-one");
}

TEST_F(ChainScreens, DevicesWithAndWithoutIdcode) {
    target_.devices = {{0x4BA00477, 4}, {{}, 5}, {0x06413041, 6}, {0x1FFFFF01, 6}};
    PictureChain("wizard-some");
}

TEST_F(ChainScreens, ManyDevices) {
    for (uint32_t i = 0; i < 40; ++i)
        target_.devices.push_back({0x0273A093 + (i << 28), 6});
    PictureChain("wizard-many");
}

TEST_F(ChainScreens, Atmega) {
    UseAtmegaChain();
    RunWizard([this](wxDialog& shown) {
        PressButton(shown, wxID_FORWARD);
        FindByClass<wxSpinCtrl>(shown)->SetValue(1);
        Picture(shown, "wizard-atmega");
        shown.SetSize(shown.GetSize() + wxSize(250, 200));
        Picture(shown, "wizard-atmega-larger");
    });
}

TEST_F(ChainScreens, German) {
    const GermanLocale machine;
    const InLanguage german("de");
    UseAtmegaChain();
    RunWizard([this](wxDialog& shown) {
        Picture(shown, "de-wizard-connection");
        PressButton(shown, wxID_FORWARD);
        Picture(shown, "de-wizard-atmega");
    });
    OmChainSizeDlg size(frame_);
    Show(size, [this](wxDialog& shown) { Picture(shown, "de-chain-size"); });
}

TEST_F(ChainScreens, Size) {
    OmChainSizeDlg size(frame_);
    size.count = 3;
    Show(size, [this](wxDialog& shown) { Picture(shown, "chain-size"); });
}
