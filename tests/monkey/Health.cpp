#include "tests/monkey/Health.h"

#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/wx.h>

namespace {

// Lines of 16 bytes at multiples of 16, and two empty lines between chunks.
uint64_t CountLines(const OmDataImage& image) {
    uint64_t lines = 0;
    for (const OmDataChunk& chunk : image.GetChunks()) {
        const uint64_t first = chunk.address / 16;
        const uint64_t last = (uint64_t{chunk.address} + chunk.bytes.size() - 1) / 16;
        lines += last - first + 1;
    }
    return image.IsEmpty() ? 0 : lines + 2 * (image.GetChunkCount() - 1);
}

void ExpectViewShowsTheImage(const OmHexViewCtrl& view, const OmDataImage& image) {
    EXPECT_EQ(view.GetLineCount(), CountLines(image));
    EXPECT_LE(view.GetFirstLine(), view.GetLineCount());
    if (image.IsEmpty())
        return;
    const OmDataChunk& last = image.GetLastChunk();
    wxString text;
    view.OnGetLineText(view.GetLineCount() - 1, text);
    unsigned long address = 0;
    EXPECT_TRUE(text.BeforeFirst(':').ToULong(&address, 16)) << text;
    EXPECT_EQ(address, last.LastAddress() & ~15U);
    EXPECT_TRUE(text.Contains(wxString::Format("%02X", last.bytes.back()))) << text;
}

void ExpectTitle(const OmMainFrame& frame) {
    const wxString& path = frame.GetSetupPath();
    const wxString name = path.empty() ? "Untitled" : wxFileName(path).GetName();
    EXPECT_EQ(frame.GetTitle(),
              name + (frame.IsSetupModified() ? "*" : "") + " - Velmora Flash Programmer");
}

void ExpectCaption(OmMainFrame& frame) {
    const wxString caption = FindByClass<wxStaticText>(frame)->GetLabelText();
    const OmDataImage& image = frame.GetDataImage();
    if (image.IsEmpty()) {
        EXPECT_EQ(caption, " (no data loaded)");
        return;
    }
    const wxString name = frame.GetDataPath().empty()
                              ? wxString("(data read from flash)")
                              : wxFileName(frame.GetDataPath()).GetFullName();
    EXPECT_EQ(caption, wxString::Format(" %s, %llu Bytes", name,
                                        static_cast<unsigned long long>(image.GetByteCount())));
}

void ExpectNothingLeftOver() {
    for (wxWindow* window : wxTopLevelWindows) {
        if (dynamic_cast<wxDialog*>(window)) {
            ADD_FAILURE() << "a dialog is left over: " << window->GetLabel();
        }
    }
    EXPECT_FALSE(wxIsBusy());
    EXPECT_EQ(wxWindow::GetCapture(), nullptr);
}

} // namespace

void ExpectHealthy(OmMainFrame& frame) {
    EXPECT_TRUE(frame.IsShown());
    EXPECT_TRUE(frame.IsEnabled());
    ExpectNothingLeftOver();
    ExpectTitle(frame);
    ExpectCaption(frame);
    ExpectViewShowsTheImage(frame.GetHexView(), frame.GetDataImage());
    EXPECT_EQ(IsMenuEnabled(frame, kIdSaveDataAs), !frame.GetDataImage().IsEmpty());
    EXPECT_EQ(IsMenuEnabled(frame, kIdGoToOffset), !frame.GetDataImage().IsEmpty());
}
