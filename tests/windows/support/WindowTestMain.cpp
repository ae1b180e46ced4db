// The main of every program with window tests: runs the tests inside a running toolkit, on a
// display of its own.
#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/VirtualDisplay.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <wx/wx.h>

#include <wx/evtloop.h>
#include <wx/uilocale.h>

namespace {

// Far above the longest run; a test that hangs ends the program with a message.
constexpr unsigned kLimitSeconds = 240;

// The toolkit's own log would pop up a modal box and hang the run.
class StandardErrorLog : public wxLog {
  protected:
    void DoLogText(const wxString& text) override {
        std::fprintf(stderr, "%s\n", static_cast<const char*>(text.utf8_str()));
    }
};

void FailOnAssert(const wxString& file, int line, const wxString& function,
                  const wxString& condition, const wxString& message) {
    ADD_FAILURE_AT(file.utf8_str(), line)
        << "assertion " << condition.ToStdString() << " in " << function.ToStdString() << ": "
        << message.ToStdString();
}

class WindowTestApp : public wxApp {
  public:
    bool OnInit() override {
        wxUILocale::UseDefault();
        delete wxLog::SetActiveTarget(new StandardErrorLog);
        wxSetAssertHandler(FailOnAssert);
        wxImage::AddHandler(new wxPNGHandler);
        SetExitOnFrameDelete(false);
        RefuseUnexpectedDialogs();
        return true;
    }

    int OnRun() override {
        wxEventLoop loop;
        wxEventLoopActivator activator(&loop);
        return RUN_ALL_TESTS();
    }
};

bool OnlyListsTests() {
    return GTEST_FLAG_GET(list_tests);
}

} // namespace

#ifdef __SANITIZE_ADDRESS__
// Caches that fontconfig keeps to the end of the process.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif

wxIMPLEMENT_APP_NO_MAIN(WindowTestApp);

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (OnlyListsTests())
        return RUN_ALL_TESTS();
    alarm(kLimitSeconds);
    const VirtualDisplay display;
    return wxEntry(argc, argv);
}
