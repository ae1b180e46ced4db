// The commands that look at the chain, the setup and the flash's own description.
#include "bsdl/Idcode.h"
#include "cli/Commands.h"
#include "cli/FlashReportText.h"
#include "flash/FlashProgrammer.h"
#include "jobs/InfoJob.h"
#include "platform/Text.h"

#include <cstdio>

namespace {

void PrintDevice(size_t index, const OmBitVector& idcode) {
    const OmIdcodeFields fields = DecodeIdcode(idcode);
    if (fields.hexadecimal.empty()) {
        std::printf("Dev%zu: no IDCODE\n", index + 1);
        return;
    }
    std::printf("Dev%zu: IDCODE %sh, manufacturer %s, part %s, version %s\n", index + 1,
                ToLocal(fields.hexadecimal).c_str(), ToLocal(fields.manufacturerName).c_str(),
                ToLocal(fields.part).c_str(), ToLocal(fields.version).c_str());
}

} // namespace

bool RunChain(const OmCliOptions&, OmConsoleProgress&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    std::vector<OmBitVector> chain;
    bool atmelBug = false;
    if (!programmer.ExamineChain(chain, atmelBug)) // what went wrong with the cable has been told
        return programmer.cable && Fail(L"No JTAG chain was detected.");
    if (atmelBug)
        std::puts("Devices at the beginning of the chain cannot be detected due to the ATMEL "
                  "ATmega bug.");
    std::printf("%zu device%s, from TDI to TDO\n", chain.size(), chain.size() == 1 ? "" : "s");
    for (size_t index = 0; index < chain.size(); ++index)
        PrintDevice(index, chain[index]);
    OmBitVector bits;
    if (programmer.CaptureChainIr(bits))
        std::printf("IR: %zu bits, nearest TDO first: %s\n", bits.size(),
                    BitsToText(bits, OmBitOrder::LowestFirst).c_str());
    return true;
}

bool RunCheck(const OmCliOptions&, OmConsoleProgress&) {
    if (!OmFlashProgrammer::GetInstance().Prepare(kPrepareFlashCommands))
        return false;
    ReportSuccess(L"The setup is complete and the connected chain conforms to it.");
    return true;
}

bool RunInfo(const OmCliOptions&, OmConsoleProgress&) {
    OmFlashReport report;
    if (!RunInfoJob(OmFlashProgrammer::GetInstance(), report))
        return false;
    std::fputs(ToLocal(MakeFlashReportText(report)).c_str(), stdout);
    return true;
}

bool RunReset(const OmCliOptions&, OmConsoleProgress&) {
    return OmFlashProgrammer::GetInstance().JtagReset();
}
