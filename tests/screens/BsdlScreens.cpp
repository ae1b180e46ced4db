#include "bsdl/BsdlParser.h"
#include "dialogs/BsdlFileDlg.h"
#include "dialogs/BsdlInfoDlg.h"
#include "dialogs/BsdlSearchDlg.h"
#include "tests/screens/Screens.h"
#include "widgets/ErrorMessageDlg.h"

#include <cstdlib>
#include <wx/listctrl.h>

namespace {

// Of the demo's processor.
constexpr uint32_t kIdcode = 0x2A011F01;

OmBitVector Bits(uint32_t idcode) {
    OmBitVector bits;
    for (int bit = 0; bit < 32; ++bit)
        bits.push_back((idcode >> bit) & 1);
    return bits;
}

std::string DemoFolder() {
    return std::getenv("OM_DEMO_BSDL");
}

std::string CpuFile() {
    return DemoFolder() + "/veldemo_cpu144.bsd";
}

class BsdlScreens : public ScreensTest {
  protected:
    void ShowInfo(const OmBsdlData* data, const ModalSteps::Step& step) {
        OmBsdlInfoDlg dialog(frame_);
        dialog.SetDevice("U1", Bits(kIdcode), data, CpuFile());
        Show(dialog, step);
    }

    void ShowFile(const ModalSteps::Step& step) {
        OmBsdlFileDlg dialog(frame_);
        dialog.displayName = "U1";
        dialog.idcode = Bits(kIdcode);
        Show(dialog, step);
    }
};

void Post(wxWindow& search, wxEventType type, const wxString& text) {
    wxCommandEvent event(type);
    event.SetString(text);
    search.GetEventHandler()->ProcessEvent(event);
}

bool HasEnded(const wxWindow& search) {
    return !search.FindWindow(wxID_STOP)->IsThisEnabled();
}

} // namespace

TEST_F(BsdlScreens, Info) {
    ShowInfo(nullptr, [this](wxDialog& shown) { Picture(shown, "bsdl-info-none"); });
    OmBsdlData data;
    ASSERT_TRUE(ParseBsdlFile(CpuFile().c_str(), data, nullptr));
    ShowInfo(&data, [this](wxDialog& shown) {
        Picture(shown, "bsdl-info");
        dialogs_.Expect("Data imported from veldemo_cpu144.bsd", [this](wxDialog& viewer) {
            Picture(viewer, "bsdl-report");
            PressButton(viewer, wxID_CANCEL);
        });
        PressButton(shown, "&View imported data");
    });
}

TEST_F(BsdlScreens, File) {
    ShowFile([this](wxDialog& shown) { Picture(shown, "bsdl-file-empty"); });
    wxConfigBase::Get()->Write("BsdlDirs",
                               "/home/engineer/bsdl;/home/engineer/projects/router/bsdl;"
                               "/srv/library/boundary scan/all vendors/by package");
    ShowFile([this](wxDialog& shown) {
        SelectRow(*FindByClass<wxListBox>(shown), 1);
        FindByClass<wxTextCtrl>(shown)->SetValue("/home/engineer/bsdl/veldemo_cpu144.bsd");
        Picture(shown, "bsdl-file");
    });
}

TEST_F(BsdlScreens, SearchRunning) {
    const std::string source = ReadWholeFile(CpuFile());
    for (int copy = 0; copy < 1000; ++copy)
        folder_.Write("copy" + std::to_string(copy) + ".bsd", source);
    OmBsdlSearchDlg dialog(frame_, Bits(kIdcode), {folder_.path.string()});
    Show(dialog, [this](wxDialog& shown) {
        WaitFor([&] { return FindByClass<wxListCtrl>(shown)->GetItemCount() > 3; });
        Picture(shown, "bsdl-search-running");
        PressButton(shown, "&Stop");
        WaitFor([&] { return FindByLabel(shown, "Search has been stopped by a user."); });
        Picture(shown, "bsdl-search-stopped");
    });
}

TEST_F(BsdlScreens, SearchDone) {
    folder_.Write("broken.bsd", "entity CHIP is\n  generic (PACKAGE : string);\nend CHIP;\n");
    OmBsdlSearchDlg dialog(frame_, Bits(kIdcode),
                           {DemoFolder(), folder_.path.string(), "/srv/no such folder"});
    Show(dialog, [this](wxDialog& shown) {
        ASSERT_TRUE(WaitFor([&] { return HasEnded(shown); }, 10000));
        Picture(shown, "bsdl-search-done");
        SelectRow(*FindByClass<wxListCtrl>(shown), 0);
        Picture(shown, "bsdl-search-selected");
        dialogs_.Expect("Errors", [this](wxDialog& errors) {
            Picture(errors, "bsdl-search-errors");
            PressButton(errors, wxID_CANCEL);
        });
        PressButton(shown, "2 &errors");
    });
}

// With the paths of a user, for the help pages.
TEST_F(BsdlScreens, SearchOfAUser) {
    const char* const finds[] = {
        "/home/engineer/bsdl/veldemo_cpu144.bsd;VELDEMO_CPU144;TQFP144;"
        "00101010000000010001111100000001",
        "/home/engineer/bsdl/old/veldemo_cpu144_a.bsd;VELDEMO_CPU144;TQFP144;"
        "00011010000000010001111100000001",
    };
    OmBsdlSearchDlg dialog(frame_, Bits(kIdcode), {});
    Show(dialog, [&](wxDialog& shown) {
        ASSERT_TRUE(WaitFor([&] { return HasEnded(shown); }, 10000));
        for (const char* find : finds)
            Post(shown, OM_EVT_BSDL_FOUND, find);
        Post(shown, OM_EVT_BSDL_DONE, "");
        SelectRow(*FindByClass<wxListCtrl>(shown), 0);
        Picture(shown, "bsdl-search-user");
    });
}

TEST_F(BsdlScreens, SearchWithoutResult) {
    OmBsdlSearchDlg dialog(frame_, Bits(1), {DemoFolder()});
    Show(dialog, [this](wxDialog& shown) {
        ASSERT_TRUE(WaitFor([&] { return HasEnded(shown); }, 10000));
        Picture(shown, "bsdl-search-nothing-found");
    });
}

TEST_F(BsdlScreens, ParserErrors) {
    const std::string name =
        folder_.Write("broken.bsd", "entity CHIP is\n  generic (PACKAGE : string);\nend CHIP;\n");
    OmBsdlData data;
    OmBsdlParserCallbackImpl messages;
    ASSERT_FALSE(ParseBsdlFile(name.c_str(), data, &messages));
    OmErrorMessageDlg dialog(frame_, "Error");
    dialog.message = "An error occurred while parsing the BSDL file.";
    dialog.details = messages.text;
    dialog.details.Replace(folder_.path.string(), "/home/engineer/bsdl");
    Show(dialog, [this](wxDialog& shown) { Picture(shown, "error-message"); });
}
