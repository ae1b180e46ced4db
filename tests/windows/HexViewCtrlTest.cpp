#include "app/HexViewCtrl.h"

#include "data/DataImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/dcsvg.h>
#include <wx/uiaction.h>
#include <wx/wx.h>

namespace {

void SendScroll(wxWindow& view, wxEventType type, int position, int orientation) {
    wxScrollWinEvent event(type, position, orientation);
    event.SetEventObject(&view);
    view.GetEventHandler()->ProcessEvent(event);
}

void Track(wxWindow& view, uint32_t position) {
    SendScroll(view, wxEVT_SCROLLWIN_THUMBTRACK, static_cast<int>(position), wxVERTICAL);
}

void TurnWheel(wxWindow& view, int rotation, int linesPerAction = 3) {
    wxMouseEvent event(wxEVT_MOUSEWHEEL);
    event.m_wheelRotation = rotation;
    event.m_wheelDelta = 120;
    event.m_linesPerAction = linesPerAction;
    event.SetEventObject(&view);
    view.GetEventHandler()->ProcessEvent(event);
}

class HexView : public testing::Test {
  protected:
    HexView() {
        frame_ = new wxFrame(nullptr, wxID_ANY, "Hex view", wxPoint(0, 0), wxSize(700, 500));
        view_ = new OmHexViewCtrl(frame_);
        frame_->Show();
        SettleEvents();
        lineHeight_ = view_->GetTextExtent("3F").y;
    }

    ~HexView() override {
        delete frame_;
        SettleEvents();
    }

    // A view of `page` whole lines and half a line over `lines` lines of data.
    void Show(int page, uint32_t lines) {
        image_.ClearImage();
        if (lines > 0)
            image_.SetBytes(0, std::vector<uint8_t>(lines * 16, 0x41));
        view_->SetDataImage(&image_);
        SetPage(page);
    }

    // A late event of an earlier size may still come in between.
    void SetPage(int page) {
        frame_->SetClientSize(700, page * lineHeight_ + lineHeight_ / 2);
        const auto hasPage = [&] { return view_->GetScrollThumb(wxVERTICAL) == page; };
        ASSERT_TRUE(WaitFor(hasPage));
        SettleEvents();
        ASSERT_TRUE(WaitFor(hasPage));
    }

    void Scroll(wxEventType type, int position = 0, int orientation = wxVERTICAL) {
        SendScroll(*view_, type, position, orientation);
    }

    void Wheel(int rotation, int linesPerAction = 3) {
        TurnWheel(*view_, rotation, linesPerAction);
    }

    // Texts in the order in which they are drawn.
    std::string DrawToSvg(const wxSize& size) {
        const std::string path = folder_.Path("drawing.svg");
        {
            wxSVGFileDC dc(path, size.x, size.y);
            dc.SetBackground(*wxWHITE_BRUSH);
            view_->Draw(dc, size);
        }
        return ReadWholeFile(path);
    }

    TemporaryFolder folder_;
    OmDataImage image_;
    wxFrame* frame_;
    OmHexViewCtrl* view_;
    int lineHeight_;
};

size_t CountOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

} // namespace

TEST_F(HexView, EmptyImageHasNoScrollRangeAndDrawsNoText) {
    view_->SetDataImage(&image_);
    EXPECT_LE(view_->GetScrollRange(wxVERTICAL), view_->GetScrollThumb(wxVERTICAL));
    EXPECT_EQ(view_->GetLineCount(), 0u);
    const std::string drawing = DrawToSvg(wxSize(600, 200));
    EXPECT_EQ(CountOf(drawing, "<text"), 0u);
    EXPECT_GT(CountOf(drawing, "<rect"), 0u);
}

TEST_F(HexView, IsMadeForScrollingWithoutBorder) {
    EXPECT_TRUE(view_->HasFlag(wxVSCROLL));
    EXPECT_FALSE(view_->HasFlag(wxHSCROLL));
    EXPECT_EQ(view_->GetBorder(), wxBORDER_NONE);
    EXPECT_EQ(view_->GetName(), "panel");
    EXPECT_EQ(view_->GetBackgroundColour(), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    EXPECT_EQ(view_->GetFont().GetPointSize(), 10);
    EXPECT_TRUE(view_->GetFont().IsFixedWidth());
}

TEST_F(HexView, ScrollBarShowsThePageAndTheLines) {
    Show(10, 100);
    EXPECT_EQ(view_->GetScrollThumb(wxVERTICAL), 10);
    EXPECT_EQ(view_->GetScrollRange(wxVERTICAL), 100);
    EXPECT_EQ(view_->GetScrollPos(wxVERTICAL), 0);
}

TEST_F(HexView, DetachingEmptiesTheView) {
    Show(10, 100);
    view_->ScrollToLine(50);
    view_->SetDataImage(nullptr);
    EXPECT_EQ(view_->GetLineCount(), 0u);
    EXPECT_EQ(view_->GetFirstLine(), 0u);
    EXPECT_LE(view_->GetScrollRange(wxVERTICAL), view_->GetScrollThumb(wxVERTICAL));
}

TEST_F(HexView, AttachingAgainShowsTheTopOfTheNewContents) {
    Show(10, 100);
    view_->ScrollToLine(50);
    image_.SetBytes(0x10000, std::vector<uint8_t>(16, 0x42));
    view_->SetDataImage(&image_);
    EXPECT_EQ(view_->GetFirstLine(), 0u);
    EXPECT_EQ(view_->GetLineCount(), 103u);
    wxString text;
    view_->OnGetLineText(102, text);
    EXPECT_EQ(text, "10000:  42 42 42 42  42 42 42 42  42 42 42 42  42 42 42 42  "
                    "BBBBBBBBBBBBBBBB");
}

TEST_F(HexView, KeysMoveByLinesPagesAndToTheEnds) {
    Show(10, 100);

    const struct {
        int from;
        int key;
        unsigned to;
    } cases[] = {
        {0, WXK_UP, 0},       {1, WXK_UP, 0},         {0, WXK_DOWN, 1},       {89, WXK_DOWN, 90},
        {90, WXK_DOWN, 90},   {0, WXK_PAGEUP, 0},     {5, WXK_PAGEUP, 0},     {50, WXK_PAGEUP, 41},
        {0, WXK_PAGEDOWN, 9}, {85, WXK_PAGEDOWN, 90}, {90, WXK_PAGEDOWN, 90}, {50, WXK_HOME, 0},
        {0, WXK_END, 90},     {50, WXK_LEFT, 50},
    };

    for (const auto& test : cases) {
        view_->ScrollToLine(test.from);
        PressKey(*view_, test.key);
        EXPECT_EQ(view_->GetFirstLine(), test.to) << test.from << " key " << test.key;
        EXPECT_EQ(view_->GetScrollPos(wxVERTICAL), static_cast<int>(test.to));
    }
}

TEST_F(HexView, OtherKeysGoOnToTheToolkit) {
    Show(10, 100);
    for (const int key : std::vector<int>{WXK_LEFT, WXK_TAB, WXK_ESCAPE, 'A'}) {
        wxKeyEvent event(wxEVT_KEY_DOWN);
        event.m_keyCode = key;
        event.SetEventObject(view_);
        view_->GetEventHandler()->ProcessEventLocally(event);
        EXPECT_TRUE(event.GetSkipped()) << key;
    }
    wxKeyEvent taken(wxEVT_KEY_DOWN);
    taken.m_keyCode = WXK_DOWN;
    view_->GetEventHandler()->ProcessEventLocally(taken);
    EXPECT_FALSE(taken.GetSkipped());
}

TEST_F(HexView, ScrollBarEventsMoveAsTheirKeysDo) {
    Show(10, 100);

    const struct {
        int from;
        wxEventType type;
        int position;
        unsigned to;
    } cases[] = {
        {50, wxEVT_SCROLLWIN_LINEUP, 0, 49},    {50, wxEVT_SCROLLWIN_LINEDOWN, 0, 51},
        {50, wxEVT_SCROLLWIN_PAGEUP, 0, 41},    {50, wxEVT_SCROLLWIN_PAGEDOWN, 0, 59},
        {50, wxEVT_SCROLLWIN_THUMBTRACK, 7, 7}, {50, wxEVT_SCROLLWIN_THUMBTRACK, 0, 0},
    };

    for (const auto& test : cases) {
        view_->ScrollToLine(test.from);
        Scroll(test.type, test.position);
        EXPECT_EQ(view_->GetFirstLine(), test.to);
    }
    view_->ScrollToLine(50);
    for (const auto& test : cases)
        Scroll(test.type, test.position, wxHORIZONTAL);
    EXPECT_EQ(view_->GetFirstLine(), 50u);
}

TEST_F(HexView, WheelMovesByActionsAndKeepsTheRest) {
    Show(10, 100);
    view_->ScrollToLine(50);
    Wheel(120);
    EXPECT_EQ(view_->GetFirstLine(), 47u);
    Wheel(-240);
    EXPECT_EQ(view_->GetFirstLine(), 53u);
    Wheel(-60);
    EXPECT_EQ(view_->GetFirstLine(), 53u);
    Wheel(-60);
    EXPECT_EQ(view_->GetFirstLine(), 56u);
    Wheel(-1200 - 30, 5);
    EXPECT_EQ(view_->GetFirstLine(), 90u);
    Wheel(-90, 1); // with the rest of 30 one whole action, but the view is at its end
    EXPECT_EQ(view_->GetFirstLine(), 90u);
    Wheel(12000);
    EXPECT_EQ(view_->GetFirstLine(), 0u);
}

TEST_F(HexView, TallWindowDoesNotMoveAtAll) {
    Show(10, 10);
    for (const int key : {WXK_DOWN, WXK_PAGEDOWN, WXK_END})
        PressKey(*view_, key);
    Wheel(-1200);
    EXPECT_FALSE(view_->ScrollToLine(5));
    EXPECT_EQ(view_->GetFirstLine(), 0u);
}

TEST_F(HexView, PageOfOneLineStillMoves) {
    Show(1, 100);
    PressKey(*view_, WXK_PAGEDOWN);
    EXPECT_EQ(view_->GetFirstLine(), 1u);
    PressKey(*view_, WXK_PAGEUP);
    EXPECT_EQ(view_->GetFirstLine(), 0u);
}

TEST_F(HexView, ScrollToLineSaysWhetherItMoved) {
    Show(10, 100);
    EXPECT_TRUE(view_->ScrollToLine(20));
    EXPECT_FALSE(view_->ScrollToLine(20));
    EXPECT_TRUE(view_->ScrollToLine(100));
    EXPECT_EQ(view_->GetFirstLine(), 90u);
    EXPECT_FALSE(view_->ScrollToLine(0xFFFFFFFF));
}

TEST_F(HexView, AddressAboveAllDataScrollsToTheLastPage) {
    Show(10, 100);
    uint32_t line = 0;
    EXPECT_FALSE(view_->FindLine(0xFFFFFFFF, line));
    EXPECT_EQ(line, 100u);
    view_->ScrollToLine(line);
    EXPECT_EQ(view_->GetFirstLine(), 90u);
}

TEST_F(HexView, GrowingWindowKeepsTheLastPageFull) {
    Show(10, 100);
    PressKey(*view_, WXK_END);
    SetPage(20);
    EXPECT_EQ(view_->GetFirstLine(), 80u);
    EXPECT_EQ(view_->GetScrollThumb(wxVERTICAL), 20);
    EXPECT_EQ(view_->GetScrollPos(wxVERTICAL), 80);
}

TEST_F(HexView, DrawsTheVisibleLinesOneTextEach) {
    image_.SetBytes(0, std::vector<uint8_t>(16 * 100, 0x41));
    view_->SetDataImage(&image_);
    SetPage(3);
    view_->ScrollToLine(5);
    const std::string drawing = DrawToSvg(wxSize(700, 3 * lineHeight_ + 1));
    EXPECT_EQ(CountOf(drawing, "<text"), 4u); // the fourth one is cut by the edge
    EXPECT_EQ(CountOf(drawing, "050:"), 1u);
    EXPECT_EQ(CountOf(drawing, "080:"), 1u);
    EXPECT_EQ(CountOf(drawing, "090:"), 0u);
    EXPECT_EQ(CountOf(drawing, "AAAAAAAAAAAAAAAA"), 4u);
}

TEST_F(HexView, RealKeysReachTheView) {
    Show(10, 100);
    view_->SetFocus();
    ASSERT_TRUE(WaitFor([this] { return view_->HasFocus(); }));
    wxUIActionSimulator user;
    user.Char(WXK_PAGEDOWN);
    EXPECT_TRUE(WaitFor([this] { return view_->GetFirstLine() == 9; }));
    user.Char(WXK_END);
    EXPECT_TRUE(WaitFor([this] { return view_->GetFirstLine() == 90; }));
}

namespace {

// As many lines as 4 GiB of data have.
class HugeView : public OmVirtualListViewCtrl {
  public:
    explicit HugeView(wxWindow* parent) : OmVirtualListViewCtrl(parent) { SetLineCount(kLines); }

    void OnGetLineText(unsigned line, wxString& text) const override {
        asked.push_back(line);
        text = "text";
    }

    static constexpr uint32_t kLines = 0x10000000;
    mutable std::vector<unsigned> asked;
};

} // namespace

TEST_F(HexView, EndsOfTheAddressRangeAreShownExactly) {
    image_.SetBytes(0, std::vector<uint8_t>(16 * 100, 0x41));
    image_.SetBytes(0xFFFFF9C0, std::vector<uint8_t>(16 * 100, 0x42));
    view_->SetDataImage(&image_);
    SetPage(10);
    ASSERT_EQ(view_->GetLineCount(), 202u);
    wxString text;
    const auto lineOnTop = [&] {
        view_->OnGetLineText(view_->GetFirstLine(), text);
        return text.Left(9).ToStdString();
    };
    EXPECT_EQ(lineOnTop(), "00000000:");
    PressKey(*view_, WXK_END);
    EXPECT_EQ(view_->GetFirstLine(), 192u);
    EXPECT_EQ(lineOnTop(), "FFFFFF60:");
    view_->OnGetLineText(201, text);
    EXPECT_EQ(text, "FFFFFFF0:  42 42 42 42  42 42 42 42  42 42 42 42  42 42 42 42  "
                    "BBBBBBBBBBBBBBBB");
    Wheel(-120);
    PressKey(*view_, WXK_DOWN);
    Scroll(wxEVT_SCROLLWIN_THUMBTRACK, 192);
    EXPECT_EQ(lineOnTop(), "FFFFFF60:");
    Wheel(120, 1);
    EXPECT_EQ(lineOnTop(), "FFFFFF50:");
    uint32_t line = 0;
    EXPECT_TRUE(view_->FindLine(0xFFFFFFFF, line));
    EXPECT_EQ(line, 201u);
    EXPECT_FALSE(view_->FindLine(0x80000000, line));
    EXPECT_EQ(line, 102u);
    EXPECT_TRUE(view_->ScrollToLine(line));
    EXPECT_EQ(lineOnTop(), "FFFFF9C0:");
    PressKey(*view_, WXK_HOME);
    EXPECT_EQ(lineOnTop(), "00000000:");
}

TEST_F(HexView, FourGigabytesScrollByEachSingleLine) {
    delete view_;
    auto* view = new HugeView(frame_);
    view_ = nullptr;
    frame_->SetClientSize(700, 10 * lineHeight_ + lineHeight_ / 2);
    ASSERT_TRUE(WaitFor([&] { return view->GetScrollThumb(wxVERTICAL) > 1; }));
    SettleEvents();
    const auto page = static_cast<uint32_t>(view->GetScrollThumb(wxVERTICAL));
    const uint32_t last = HugeView::kLines - page;

    const struct {
        const char* what;
        uint32_t from;
        std::function<void()> move;
        uint32_t to;
    } cases[] = {
        {"end", 0, [&] { PressKey(*view, WXK_END); }, last},
        {"up", last, [&] { PressKey(*view, WXK_UP); }, last - 1},
        {"down", last - 1, [&] { PressKey(*view, WXK_DOWN); }, last},
        {"down at the end", last, [&] { PressKey(*view, WXK_DOWN); }, last},
        {"page up", last, [&] { PressKey(*view, WXK_PAGEUP); }, last - page + 1},
        {"page down", last - 1, [&] { PressKey(*view, WXK_PAGEDOWN); }, last},
        {"wheel up", last, [&] { TurnWheel(*view, 120); }, last - 3},
        {"wheel down", last - 4, [&] { TurnWheel(*view, -120); }, last - 1},
        {"wheel beyond", last - 1, [&] { TurnWheel(*view, -1200000); }, last},
        {"thumb", 0, [&] { Track(*view, last - 1); }, last - 1},
        {"thumb at the end", 0, [&] { Track(*view, last); }, last},
        {"thumb at the start", last, [&] { Track(*view, 0); }, 0},
        {"home", last, [&] { PressKey(*view, WXK_HOME); }, 0},
    };

    for (const auto& test : cases) {
        view->ScrollToLine(test.from);
        test.move();
        EXPECT_EQ(view->GetFirstLine(), test.to) << test.what;
        EXPECT_EQ(view->GetScrollPos(wxVERTICAL), static_cast<int>(test.to)) << test.what;
    }
}

// The toolkit's own scroll bar, dragged beyond its ends.
TEST_F(HexView, RealThumbReachesBothEndsOfFourGigabytes) {
    delete view_;
    auto* view = new HugeView(frame_);
    view_ = nullptr;
    frame_->SetClientSize(700, 400);
    ASSERT_TRUE(WaitFor([&] { return view->GetScrollThumb(wxVERTICAL) > 1; }));
    SettleEvents();
    const uint32_t last =
        HugeView::kLines - static_cast<uint32_t>(view->GetScrollThumb(wxVERTICAL));
    const wxRect area = view->GetScreenRect();
    const wxPoint top(area.GetRight() - 5, area.GetTop() + 12);
    wxUIActionSimulator user;
    for (const int left : {100, 0}) { // a scroll bar may show itself only to a pointer that moves
        user.MouseMove(wxPoint(top.x - left, top.y));
        WaitFor([] { return false; }, 200);
    }
    user.MouseDown();
    user.MouseMove(wxPoint(top.x, area.GetBottom() + 100));
    EXPECT_TRUE(WaitFor([&] { return view->GetFirstLine() == last; })) << view->GetFirstLine();
    user.MouseMove(wxPoint(top.x, area.GetTop() - 100));
    EXPECT_TRUE(WaitFor([&] { return view->GetFirstLine() == 0; })) << view->GetFirstLine();
    user.MouseUp();
}

TEST_F(HexView, DrawingAsksForTheVisibleLinesOnly) {
    HugeView view(frame_);
    wxBitmap bitmap(700, 100);
    wxMemoryDC dc(bitmap);
    dc.SetFont(view.GetFont());
    const int height = dc.GetTextExtent("3F").y;
    view.ScrollToLine(200000000);
    view.asked.clear();
    view.Draw(dc, wxSize(700, 2 * height));
    EXPECT_EQ(view.asked, (std::vector<unsigned>{200000000, 200000001}));
}
