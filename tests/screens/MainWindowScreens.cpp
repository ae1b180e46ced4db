#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "flash/FlashProgrammer.h"
#include "tests/screens/Screens.h"

#include <wx/uiaction.h>

namespace {

class MainWindowScreens : public ScreensTest {
  protected:
    void Load(const std::string& name, const std::string& content) {
        ASSERT_TRUE(frame_->LoadDataFile(folder_.Write(name, content)));
    }

    // Opens a menu from the keyboard, with the keys pressed in it, and closes it again.
    void PictureMenu(char mnemonic, const std::vector<int>& keys, const std::string& name) {
        wxUIActionSimulator keyboard;
        keyboard.Char(mnemonic, wxMOD_ALT);
        for (const int key : keys) {
            SettleEvents();
            keyboard.Char(key);
        }
        Picture(*frame_, name);
        for (size_t level = 0; level <= keys.size(); ++level) {
            keyboard.Char(WXK_ESCAPE);
            SettleEvents();
        }
    }
};

std::string Firmware(size_t size) {
    std::string content = "Velmora boot loader 2.4";
    uint32_t state = 1;
    while (content.size() < size)
        content += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return content;
}

std::vector<uint8_t> Bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

} // namespace

TEST_F(MainWindowScreens, EmptyAndLoaded) {
    Picture(*frame_, "main-empty");
    Load("firmware.bin", Firmware(65536));
    Picture(*frame_, "main-loaded");
    PressKey(*FindByClass<OmHexViewCtrl>(*frame_), WXK_PAGEDOWN);
    PressKey(*FindByClass<OmHexViewCtrl>(*frame_), WXK_PAGEDOWN);
    Picture(*frame_, "main-scrolled");
    PressKey(*FindByClass<OmHexViewCtrl>(*frame_), WXK_END);
    Picture(*frame_, "main-end");
}

TEST_F(MainWindowScreens, EightDigitsAndGap) {
    ReadFromFlash(0xBFC00000, Bytes(Firmware(1000)));
    Picture(*frame_, "main-8-digits");
    OmDataImage& image = frame_->BeginFlashData();
    image.SetBytes(0x1FFF5, Bytes(Firmware(150)));
    image.SetBytes(0x60004, Bytes(Firmware(1000)));
    frame_->ShowFlashData();
    Picture(*frame_, "main-gap");
    frame_->SetSize(640, 400); // as much as a help page needs
    Picture(*frame_, "data-with-a-gap");
}

TEST_F(MainWindowScreens, LongNames) {
    Load("router board revision C with the second boot loader, release candidate 4.bin",
         Firmware(4096));
    const std::string name = "router board revision C with second boot loader and four flash chips";
    const wxString setup = folder_.Path(name + " for the last production run.velflash");
    OmFlashProgrammer::GetInstance().SetDesignSetup(MakeSmallestSetup());
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, setup);
    ChooseMenu(*frame_, wxID_SAVEAS);
    Picture(*frame_, "main-long-names");
}

TEST_F(MainWindowScreens, SmallAndLarge) {
    Load("firmware.bin", Firmware(65536));
    frame_->SetSize(300, 260);
    Picture(*frame_, "main-small");
    frame_->SetSize(0, 0, 1280, 1024);
    Picture(*frame_, "main-large");
}

TEST_F(MainWindowScreens, Menus) {
    PictureMenu('F', {}, "menu-file-empty");
    Load("bootloader.srec", "S1050000ABCD82\n");
    Load("firmware.bin", Firmware(4096));
    PictureMenu('F', {'d'}, "menu-file");
    PictureMenu('V', {}, "menu-view");
    PictureMenu('S', {}, "menu-setup");
    PictureMenu('A', {'s'}, "menu-actions");
    PictureMenu('H', {}, "menu-help");
}
