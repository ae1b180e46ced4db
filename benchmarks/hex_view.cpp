// What one repaint of the hex view costs on a screen of 1080 pixel lines, at the bottom of images
// of more and more chunks. The font engine's work is nearly all of it.
#include "app/HexViewCtrl.h"
#include "data/DataImage.h"
#include "tests/windows/support/VirtualDisplay.h"

#include <benchmark/benchmark.h>
#include <wx/wx.h>

#include <wx/evtloop.h>

namespace {

constexpr uint32_t kChunkDistance = 0x100;
const wxSize kScreen(1920, 1080);

OmDataImage MakeImage(int64_t chunks) {
    OmDataImage image;
    for (uint32_t chunk = 0; chunk < chunks; ++chunk)
        image.SetBytes(chunk * kChunkDistance, std::vector<uint8_t>(kChunkDistance / 2, 0x41));
    return image;
}

void PaintScreen(benchmark::State& state) {
    const OmDataImage image = MakeImage(state.range(0));
    auto* frame = new wxFrame(nullptr, wxID_ANY, "Hex view", wxPoint(0, 0), wxSize(800, 600));
    auto* view = new OmHexViewCtrl(frame);
    view->SetDataImage(&image);
    view->ScrollToLine(view->GetLineCount());
    wxBitmap bitmap(kScreen.x, kScreen.y);
    wxMemoryDC dc(bitmap);
    dc.SetBackground(*wxWHITE_BRUSH);
    for ([[maybe_unused]] auto _ : state)
        view->Draw(dc, kScreen);
    delete frame;
}

void AttachImage(benchmark::State& state) {
    const OmDataImage image = MakeImage(state.range(0));
    OmHexLines lines;
    for ([[maybe_unused]] auto _ : state)
        lines.Attach(&image);
}

BENCHMARK(PaintScreen)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(AttachImage)->Arg(1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

class BenchmarkApp : public wxApp {
  public:
    bool OnInit() override { return true; }

    int OnRun() override {
        wxEventLoop loop;
        const wxEventLoopActivator activator(&loop);
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    }
};

} // namespace

wxIMPLEMENT_APP_NO_MAIN(BenchmarkApp);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const VirtualDisplay display;
    return wxEntry(argc, argv);
}
