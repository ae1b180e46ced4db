#include "tests/road/BoardChecks.h"

#include <algorithm>
#include <span>

namespace {

constexpr uint32_t kClearStatusOnAllLanes = 0x50505050;

bool IsOpenAddressOfAWrite(const vb::Violation& violation) {
    return violation.kind == vb::ViolationKind::FloatingInput &&
           violation.text.find(".A") != std::string::npos &&
           violation.text.ends_with(" floats while WE falls");
}

} // namespace

void TolerateClearStatus(vb::Board& board, const vb::BuiltBoard& built) {
    if (built.flash.commandSet != vb::CommandSet::Intel)
        return;
    const uint32_t clearStatus = kClearStatusOnAllLanes >> (32 - built.flash.widthBits);
    board.Violations().Tolerate([clearStatus](const vb::Violation& violation) {
        return violation.data == clearStatus && IsOpenAddressOfAWrite(violation);
    });
}

std::string DescribeViolations(const vb::Board& board) {
    constexpr size_t kShown = 10;
    const std::vector<vb::Violation>& all = board.Violations().List();
    const size_t shown = std::min(all.size(), kShown);
    std::string text;
    for (const vb::Violation& violation : std::span(all).first(shown))
        text += std::string(vb::ViolationName(violation.kind)) + " in scan " +
                std::to_string(violation.scan) + ": " + violation.text + '\n';
    const uint64_t further = board.Violations().Count() - shown;
    return further == 0 ? text : text + "and " + std::to_string(further) + " more\n";
}
