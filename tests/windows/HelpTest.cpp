#include "widgets/Help.h"

#include "platform/Paths.h"
#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <wx/html/helpfrm.h>
#include <wx/html/htmlwin.h>
#include <wx/mstream.h>
#include <wx/wfstream.h>
#include <wx/wx.h>
#include <wx/zipstrm.h>

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

// The files of the book by their names.
std::map<std::string, std::string> ReadBook() {
    std::map<std::string, std::string> files;
    wxFFileInputStream book(wxString(GetProgramDirectory()) + "/velflash.htb");
    wxZipInputStream archive(book);
    while (const std::unique_ptr<wxZipEntry> entry{archive.GetNextEntry()}) {
        std::string content(static_cast<size_t>(entry->GetSize()), '\0');
        archive.ReadAll(content.data(), content.size());
        files[entry->GetName(wxPATH_UNIX).ToStdString()] = content;
    }
    return files;
}

// What a page, the contents or the index point at, without the place in the page.
std::vector<std::string> FindTargets(const std::string& page) {
    static const std::regex kTarget(R"re((?:href|src|name="Local" value)="([^"#]*))re",
                                    std::regex::icase);
    std::vector<std::string> targets;
    for (std::sregex_iterator match(page.begin(), page.end(), kTarget), end; match != end; ++match)
        targets.push_back((*match)[1]);
    return targets;
}

} // namespace

TEST(Help, EveryLinkPictureAndTopicIsInTheBook) {
    const std::map<std::string, std::string> book = ReadBook();
    std::set<std::string> used;
    for (const auto& [name, content] : book) {
        SCOPED_TRACE(name);
        if (name.ends_with(".png"))
            continue;
        for (const std::string& target : FindTargets(content)) {
            EXPECT_EQ(book.count(target), 1u) << target << " is not there";
            used.insert(target);
        }
    }
    EXPECT_GE(used.size(), 20u); // pages and pictures
    for (const auto& [name, content] : book)
        EXPECT_TRUE(name.starts_with("velflash.hh") || used.contains(name)) << name << " is unused";
}

TEST(Help, PicturesAreNoWiderThanAPage) {
    for (const auto& [name, content] : ReadBook()) {
        SCOPED_TRACE(name);
        if (!name.ends_with(".png"))
            continue;
        wxMemoryInputStream stream(content.data(), content.size());
        const wxImage picture(stream, wxBITMAP_TYPE_PNG);
        ASSERT_TRUE(picture.IsOk());
        EXPECT_LE(picture.GetWidth(), 640);
        EXPECT_LE(content.size(), 60000u);
    }
}

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
        {"trouble.htm", "If something fails"},
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

// Over a modal dialog the toolkit keeps the user in the help window until it is closed.
TEST(Help, WindowOverADialogCanBeClosedAndOpenedAgain) {
    const std::unique_ptr<OmHelpViewer> viewer = CreateHelpViewer();
    viewer->Initialize(wxString(GetProgramDirectory()) + "/velflash");
    int closed = 0;
    wxDialog dialog(nullptr, wxID_ANY, "Over");
    ModalSteps user;
    user.Expect("Over", [&](wxDialog& shown) {
        for (int round = 0; round < 2; ++round) {
            wxTheApp->CallAfter([&] { closed += FindHelpFrame() && FindHelpFrame()->Close(true); });
            viewer->DisplaySection("bsdl.htm");
        }
        shown.EndModal(wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
    EXPECT_EQ(closed, 2);
}

TEST(Help, TopicWithoutAViewerDoesNothing) {
    SetCurrentHelpViewer(nullptr);
    ShowHelpTopic("welcome.htm");
    EXPECT_EQ(FindHelpFrame(), nullptr);
}
