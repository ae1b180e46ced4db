#include "virtualboard/Checker.h"

#include <utility>

namespace vb {

const char* ViolationName(ViolationKind kind) {
    constexpr const char* kNames[kViolationKinds] = {"contention",     "address-change",
                                                     "data-change",    "floating-read",
                                                     "floating-input", "core-released"};
    return kNames[static_cast<size_t>(kind)];
}

void Checker::Report(const Violation& violation) {
    if (harmless_ && harmless_(violation))
        return;
    ++total_;
    ++counts_[static_cast<size_t>(violation.kind)];
    if (list_.size() < kMaxListed)
        list_.push_back(violation);
}

void Checker::Tolerate(std::function<bool(const Violation&)> harmless) {
    harmless_ = std::move(harmless);
}

void Checker::Clear() {
    total_ = 0;
    counts_.fill(0);
    list_.clear();
}

} // namespace vb
