// Looking at the Connection dialog changes nothing: the pages share the vendors' libraries with the
// cable that is open.
#include "jtag/CableTable.h"
#include "jtag/ui/CableSettingsDlg.h"
#include "platform/Translation.h"
#include "tests/cables/CableBench.h"
#include "tests/cables/ScanExpectations.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/windows/support/ModalSteps.h"

namespace {

class Looking : public ::testing::TestWithParam<CableCase> {};

void ExpectScanWorks(OpenCable& bench, const char* when) {
    bench.Hal().ResetTap();
    const OmBitVector in = Pattern(33, 4);
    OmBitVector out;
    bench.Hal().ScanDR(in, &out, kScanFromIdle, kScanToIdle);
    EXPECT_EQ(out, CapturedData().Shift(in)) << when;
}

void VisitEveryPage(wxDialog& shown) {
    for (const OmCableRow& row : GetCableRows())
        Choose(shown, "Connec&tion:", Translated(row.label));
    PressButton(shown, wxID_CANCEL);
}

} // namespace

TEST_P(Looking, VisitingEveryPageLeavesTheOpenCableAlone) {
    OpenCable bench(GetParam());
    ExpectScanWorks(bench, "before");
    ModalSteps user;
    user.Expect("JTAG Connection", VisitEveryPage);
    OmCableSettingsDlg dialog(nullptr);
    dialog.settings = bench.settings;
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
    ExpectScanWorks(bench, "after");
}

INSTANTIATE_TEST_SUITE_P(Cables, Looking, ::testing::ValuesIn(kCableCases), NameOfCable);
