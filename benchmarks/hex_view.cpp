// What one repaint of the hex view costs on a screen of 1080 pixel lines, all of them full of text:
// over one chunk of more and more data, and over more and more chunks. It must depend on neither;
// the font engine's work is nearly all of it.
#include "app/HexViewCtrl.h"
#include "data/DataImage.h"

#include <benchmark/benchmark.h>
#include <wx/wx.h>

namespace {

constexpr uint32_t kChunkDistance = 0x100;
const wxSize kScreen(1920, 1080);

OmDataImage MakeOneChunk(int64_t bytes) {
    OmDataImage image;
    image.SetBytes(0, std::vector<uint8_t>(static_cast<size_t>(bytes), 0x41));
    return image;
}

// Each chunk is 8 lines of text and two empty ones.
OmDataImage MakeChunks(int64_t chunks) {
    OmDataImage image;
    for (uint32_t chunk = 0; chunk < chunks; ++chunk)
        image.SetBytes(chunk * kChunkDistance, std::vector<uint8_t>(kChunkDistance / 2, 0x41));
    return image;
}

// At the end of the data, so that all of it lies before what is painted.
void Paint(benchmark::State& state, const OmDataImage& image) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, "Hex view", wxPoint(0, 0), kScreen);
    auto* view = new OmHexViewCtrl(frame);
    view->SetSize(kScreen);
    view->SetDataImage(&image);
    view->ScrollToLine(view->GetLineCount());
    wxBitmap bitmap(kScreen.x, kScreen.y);
    wxMemoryDC dc(bitmap);
    dc.SetBackground(*wxWHITE_BRUSH);
    for ([[maybe_unused]] auto _ : state)
        view->Draw(dc, kScreen);
    state.counters["first"] = view->GetFirstLine();
    state.counters["lines"] = view->GetLineCount() - view->GetFirstLine();
    delete frame;
}

void PaintOneChunk(benchmark::State& state) {
    Paint(state, MakeOneChunk(state.range(0)));
}

void PaintChunks(benchmark::State& state) {
    Paint(state, MakeChunks(state.range(0)));
}

void AttachImage(benchmark::State& state) {
    const OmDataImage image = MakeChunks(state.range(0));
    OmHexLines lines;
    for ([[maybe_unused]] auto _ : state)
        lines.Attach(&image);
}

BENCHMARK(PaintOneChunk)->Arg(1 << 10)->Arg(1 << 20)->Arg(1 << 28)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintChunks)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(AttachImage)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
