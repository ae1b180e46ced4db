#include "platform/Paths.h"
#include "tests/screens/Screens.h"

#include <wx/html/helpfrm.h>
#include <wx/html/htmlwin.h>

namespace {

wxHtmlHelpFrame* FindHelpFrame() {
    for (wxWindow* window : wxTopLevelWindows)
        if (auto* frame = dynamic_cast<wxHtmlHelpFrame*>(window))
            return frame;
    return nullptr;
}

class HelpScreens : public ScreensTest {
  protected:
    ~HelpScreens() override {
        if (wxHtmlHelpFrame* help = FindHelpFrame())
            help->Destroy();
        SettleEvents();
    }

    // One picture for each screenful of the page.
    void PictureTopic(OmHelpViewer& viewer, const std::string& topic) {
        viewer.DisplaySection(topic + ".htm");
        wxHtmlHelpFrame& help = *FindHelpFrame();
        help.SetSize(40, 0, 960, 900);
        SettleEvents();
        auto& page = *FindByClass<wxHtmlWindow>(help);
        for (int part = 1, previous = -1;; ++part) {
            page.Scroll(-1, previous + 1);
            const int line = page.GetViewStart().y;
            if (line <= previous && part > 1)
                break;
            Picture(help, "help-" + topic + "-" + std::to_string(part));
            int unit = 1;
            page.GetScrollPixelsPerUnit(nullptr, &unit);
            previous = line + page.GetClientSize().y / unit - 2;
            if (previous + 1 <= line || part > 12)
                break;
        }
    }
};

} // namespace

TEST_F(HelpScreens, EveryTopic) {
    const std::unique_ptr<OmHelpViewer> viewer = CreateHelpViewer();
    viewer->Initialize(wxString(GetProgramDirectory()) + "/velflash");
    for (const char* topic :
         {"welcome", "connection", "setup", "bsdl", "data", "actions", "trouble"})
        PictureTopic(*viewer, topic);
}
