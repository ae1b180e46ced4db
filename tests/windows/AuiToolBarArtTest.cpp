#include "app/AuiToolBarArt.h"

#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/wx.h>

namespace {

constexpr int kWidth = 20;
constexpr int kHeight = 10;
const wxColour kWhite(255, 255, 255);
const wxColour kGrey(177, 174, 162);

wxImage DrawBar(bool topLine, bool bottomLine) {
    wxBitmap bitmap(kWidth, kHeight, 24);
    {
        wxMemoryDC dc(bitmap);
        OmAuiToolBarArt(topLine, bottomLine).DrawBackground(dc, nullptr, {0, 0, kWidth, kHeight});
    }
    return bitmap.ConvertToImage();
}

// The first point of a line is blended with what is below it.
bool IsLine(const wxImage& image, int y, const wxColour& colour) {
    for (int x = 1; x < image.GetWidth(); ++x)
        if (wxColour(image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y)) != colour)
            return false;
    return true;
}

} // namespace

TEST(AuiToolBarArt, DrawsTheAskedLinesAcrossTheWholeWidth) {
    for (const bool top : {false, true})
        for (const bool bottom : {false, true}) {
            const wxImage image = DrawBar(top, bottom);
            EXPECT_EQ(IsLine(image, 0, kWhite), top) << top << bottom;
            EXPECT_EQ(IsLine(image, kHeight - 1, kGrey), bottom) << top << bottom;
            EXPECT_FALSE(IsLine(image, 1, kWhite) || IsLine(image, kHeight - 2, kGrey));
        }
}

TEST(AuiToolBarArt, CloneDrawsTheSame) {
    OmAuiToolBarArt art(true, false);
    const std::unique_ptr<wxAuiToolBarArt> clone(art.Clone());
    EXPECT_NE(dynamic_cast<OmAuiToolBarArt*>(clone.get()), nullptr);
}
