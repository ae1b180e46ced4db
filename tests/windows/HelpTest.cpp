#include "app/Help.h"

#include "platform/Paths.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/html/helpfrm.h>
#include <wx/html/htmlwin.h>
#include <wx/wx.h>

namespace {

wxHtmlHelpFrame* FindHelpFrame() {
    for (wxWindow* window : wxTopLevelWindows)
        if (auto* frame = dynamic_cast<wxHtmlHelpFrame*>(window))
            return frame;
    return nullptr;
}

wxString GetShownText() {
    wxHtmlHelpFrame* frame = FindHelpFrame();
    return frame ? FindByClass<wxHtmlWindow>(*frame)->ToText() : wxString();
}

} // namespace

TEST(Help, ShowsTheTopicsOfTheBookBesideTheProgram) {
    const std::unique_ptr<OmHelpViewer> viewer = CreateHelpViewer();
    viewer->Initialize(wxString(GetProgramDirectory()) + "/velflash");

    const struct {
        const char* topic;
        const char* beginning;
    } cases[] = {
        {"welcome.htm", "Velmora Flash Programmer"},
        {"bsdl.htm", "BSDL files"},
        {"connection.htm", "JTAG connection"},
        {"setup.htm", "The setup"},
        {"actions.htm", "Actions"},
        {"data.htm", "Data files"},
    };

    for (const auto& test : cases) {
        viewer->DisplaySection(test.topic);
        ASSERT_NE(FindHelpFrame(), nullptr);
        EXPECT_TRUE(GetShownText().Strip(wxString::both).StartsWith(test.beginning))
            << GetShownText().Left(100).ToStdString();
    }
    viewer->DisplaySection("welcome.htm");
    FindHelpFrame()->SetSize(50, 50, 800, 600);
    TakeScreenshot(*FindHelpFrame(), "help");
    FindHelpFrame()->Destroy();
    SettleEvents();
}

TEST(Help, TopicWithoutAViewerDoesNothing) {
    SetCurrentHelpViewer(nullptr);
    ShowHelpTopic("welcome.htm");
    EXPECT_EQ(FindHelpFrame(), nullptr);
}
