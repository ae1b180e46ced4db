#include "tests/dialogs/BsdlFixture.h"

#include <filesystem>
#include <fstream>
#include <wx/fileconf.h>

namespace {

constexpr char kAnyVersion[] = "\"XXXX\" & \"0001001000110100\"";

std::string WithIdcode(const std::string& leading20Bits) {
    return ChangedSource(kAnyVersion, leading20Bits);
}

} // namespace

BsdlDialogTest::BsdlDialogTest()
    : matching_(Write("matching.bsd", WithIdcode("\"0001\" & \"0001001000110100\""))),
      anyVersion_(Write("any-version.bsdl", SampleSource())),
      otherVersion_(Write("other-version.bsm", WithIdcode("\"0010\" & \"0001001000110100\""))),
      other_(Write("other.bsd", WithIdcode("\"0001\" & \"1111001000110100\""))),
      broken_(Write("broken.bsd", ChangedSource("generic", "generous"))) {
    previousStore_ = wxConfigBase::Set(new wxFileConfig("test", "test", folder_.Path("settings"),
                                                        wxString(), wxCONFIG_USE_LOCAL_FILE));
    const wxString editor =
        Write("xdg-open", "#!/bin/sh\nprintf %s \"$1\" > '" + folder_.Path("viewed") + "'\n");
    std::filesystem::permissions(editor.ToStdString(), std::filesystem::perms::owner_all);
    previousPath_ = getenv("PATH");
    setenv("PATH", (folder_.path.string() + ":" + previousPath_).c_str(), 1);
}

BsdlDialogTest::~BsdlDialogTest() {
    setenv("PATH", previousPath_.c_str(), 1);
    delete wxConfigBase::Set(previousStore_);
}

// 0001 0001001000110100 00000010111 1
OmBitVector BsdlDialogTest::Idcode() {
    OmBitVector idcode;
    for (int bit = 0; bit < 32; ++bit)
        idcode.push_back((0x1123402Fu >> bit) & 1);
    return idcode;
}

std::string BsdlDialogTest::GetViewedFile() const {
    std::string viewed;
    WaitFor([&] {
        std::ifstream file(folder_.Path("viewed"));
        std::getline(file, viewed);
        return !viewed.empty();
    });
    return viewed;
}

void ExpectParserErrors(ModalSteps& user) {
    user.Expect("Error", [](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "An error occurred while parsing the BSDL file."), nullptr);
        EXPECT_NE(FindByClass<wxTextCtrl>(shown)->GetValue().Find("broken.bsd"), wxNOT_FOUND);
        PressButton(shown, wxID_CANCEL);
    });
}
