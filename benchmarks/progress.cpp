// What the progress dialog costs at a hundred reports a second over the main window: the share of
// the program's time, painting and idle work included. The pace is kept, since painting follows the
// screen's rhythm and not that of the reports.
#include "app/MainFrame.h"
#include "app/ProgressDlg.h"
#include "widgets/Help.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <memory>
#include <thread>
#include <vector>
#include <wx/wx.h>

namespace {

using namespace std::chrono_literals;

constexpr int kWarmUp = 100; // the windows have been painted, the theme has been read
constexpr int kReports = 500;
constexpr auto kPace = 10ms;

double GetProcessSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

using Reporter = void (*)(OmProgressDlg& dialog, int number);

std::chrono::steady_clock::duration ReportAtPace(OmProgressDlg& dialog, Reporter report,
                                                 int count) {
    const auto start = std::chrono::steady_clock::now();
    for (int number = 0; number < count; ++number) {
        report(dialog, number);
        std::this_thread::sleep_until(start + (number + 1) * kPace);
    }
    return std::chrono::steady_clock::now() - start;
}

void Report(benchmark::State& state, Reporter report) {
    const std::unique_ptr<OmHelpViewer> help = CreateHelpViewer();
    auto* frame = new OmMainFrame("Progress", wxPoint(0, 0), wxSize(670, 680), *help);
    frame->BeginFlashData().SetBytes(0, std::vector<uint8_t>(1 << 20, 0x41));
    frame->ShowFlashData();
    frame->Show();
    auto owned = std::make_unique<OmProgressDlg>(frame, "Please Wait");
    OmProgressDlg& dialog = *owned;
    dialog.Show(true);
    ReportAtPace(dialog, report, kWarmUp);
    for (auto _ : state) {
        const double before = GetProcessSeconds();
        const std::chrono::duration<double> passed = ReportAtPace(dialog, report, kReports);
        const double used = GetProcessSeconds() - before;
        state.SetIterationTime(used / kReports);
        state.counters["percent"] = 100 * used / passed.count();
    }
    owned.reset();
    delete frame;
}

// As in a long run of programming: the bar moves now and then.
void NothingNew(benchmark::State& state) {
    Report(state, [](OmProgressDlg& dialog, int) { dialog.OnProgress(40, nullptr); });
}

void BarMovesEachTime(benchmark::State& state) {
    Report(state,
           [](OmProgressDlg& dialog, int number) { dialog.OnProgress(number % 100, nullptr); });
}

void BarPulses(benchmark::State& state) {
    Report(state, [](OmProgressDlg& dialog, int) { dialog.OnProgress(-1, nullptr); });
}

// As with small sectors that erase fast.
void BarAndTextChangeEachTime(benchmark::State& state) {
    Report(state, [](OmProgressDlg& dialog, int number) {
        const wxString text = wxString::Format("Erasing sector %d of %d...", number, kReports);
        dialog.OnProgress(number % 100, text.wc_str());
    });
}

BENCHMARK(NothingNew)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BarMovesEachTime)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BarPulses)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BarAndTextChangeEachTime)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace
