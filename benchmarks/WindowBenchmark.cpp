// The program around a benchmark of windows: a display of its own and an event loop.
#include "tests/windows/support/VirtualDisplay.h"

#include <benchmark/benchmark.h>
#include <wx/evtloop.h>
#include <wx/wx.h>

namespace {

class BenchmarkApp : public wxApp {
  public:
    bool OnInit() override {
        wxImage::AddHandler(new wxPNGHandler);
        return true;
    }

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
