#include "tests/cables/CableAttempt.h"

#include "jtag/Exception.h"
#include "tests/cables/ScanExpectations.h"

namespace {

bool ScanEachWay(OmJtagHAL& hal) {
    hal.ResetTap();
    const OmBitVector in = Pattern(33, 4);
    OmBitVector data;
    hal.ScanDR(in, &data, 1, 1);
    OmCapturedList captured;
    hal.ScanVectors({{in, false}, {in, true}}, &captured);
    OmBitVector instruction;
    hal.ScanIR(OmBitVector(15, 1), &instruction, 1, 1);
    const OmBitVector expected = CapturedData().Shift(in);
    return data == expected && captured == OmCapturedList{expected} &&
           instruction == CapturedInstruction().Shift(OmBitVector(15, 1));
}

} // namespace

Attempt::Attempt(CableBench& bench) {
    bench.log.Take();
    if (const auto cable = bench.Create()) {
        try {
            rightBits = ScanEachWay(*cable->GetJtagHAL());
            result = AttemptResult::Done;
        } catch (const OmException& error) {
            result = AttemptResult::Thrown;
            thrown = error.GetText();
        }
    }
    log = bench.log.Take();
}
