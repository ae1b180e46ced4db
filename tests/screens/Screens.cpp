#include "tests/screens/Screens.h"

#include <cstdlib>

namespace {

constexpr unsigned long kFewestColours = 12; // an empty window has about three

std::string PictureFolder(const TemporaryFolder& temporary) {
    const char* named = std::getenv("OM_SCREENSHOTS");
    return named ? named : temporary.path.string();
}

wxWindow* FindActiveTopLevel() {
    for (wxWindow* window : wxTopLevelWindows)
        if (dynamic_cast<wxTopLevelWindow&>(*window).IsActive())
            return window;
    return nullptr;
}

// The window or a dialog over it.
bool IsActive(const wxWindow& window) {
    const wxWindow* active = FindActiveTopLevel();
    while (active && active != &window)
        active = active->GetParent();
    return active != nullptr;
}

// A window manager that has just started may overlook a window.
void ExpectActive(wxWindow& window) {
    constexpr int kTries = 20;
    constexpr int kTryMilliseconds = 1000; // on a machine that is busy with a build
    for (int attempt = 0; attempt < kTries; ++attempt) {
        if (WaitFor([&] { return IsActive(window); }, kTryMilliseconds))
            return;
        window.Raise();
    }
    FAIL() << "the window did not become active";
}

} // namespace

ScreensTest::ScreensTest() {
    frame_->SetSize(670, 680); // as a first start opens it
    SettleEvents();
    ExpectActive(*frame_);
}

void ScreensTest::Show(wxDialog& dialog, const ModalSteps::Step& step) {
    dialogs_.Expect(dialog.GetTitle(), [&](wxDialog& shown) {
        step(shown);
        shown.EndModal(wxID_CANCEL);
    });
    dialog.ShowModal();
}

void ScreensTest::Picture(wxWindow& window, const std::string& name) {
    SCOPED_TRACE(name);
    ExpectActive(window);
    constexpr int kPaintMilliseconds = 100; // a frame or two of the toolkit's clock
    WaitFor([] { return false; }, kPaintMilliseconds);
    const std::string path = PictureFolder(folder_) + "/" + name + ".png";
    ASSERT_TRUE(SaveScreenshot(window, path));
    const wxImage picture(path, wxBITMAP_TYPE_PNG);
    ASSERT_TRUE(picture.IsOk());
    EXPECT_EQ(picture.GetSize(), window.GetRect().GetSize() * window.GetContentScaleFactor());
    EXPECT_GE(picture.CountColours(kFewestColours), kFewestColours) << "the picture is blank";
}
