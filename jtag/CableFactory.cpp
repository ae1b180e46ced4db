#include "jtag/CableFactory.h"

#include "jtag/CableTable.h"
#include "jtag/Log.h"

namespace {

std::unique_ptr<OmCable> Open(const OmCableRow& row, OmConnectionSettings& settings) {
    OmLog(L"Creating cable object  %ls\n", row.logName);
    return row.open(settings);
}

} // namespace

std::unique_ptr<OmCable> CreateCable(OmConnectionSettings& settings) {
    const OmCableRow* row = FindCableRow(settings.cableType);
    std::unique_ptr<OmCable> cable = row ? Open(*row, settings) : nullptr;
    if (!cable)
        OmLog(L"*** FAILED *** (CreateCable failed)\n");
    return cable;
}

const char* GetCableLabel(OmCableType type) {
    const OmCableRow* row = FindCableRow(type);
    return row ? row->label : nullptr;
}
