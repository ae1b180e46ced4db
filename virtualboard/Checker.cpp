#include "virtualboard/Checker.h"

namespace vb {

const char* ViolationName(ViolationKind kind) {
    constexpr const char* kNames[kViolationKinds] = {"contention",     "address-change",
                                                     "data-change",    "floating-read",
                                                     "floating-input", "core-released"};
    return kNames[static_cast<size_t>(kind)];
}

void Checker::Report(ViolationKind kind, uint64_t scan, const std::string& text) {
    ++total_;
    ++counts_[static_cast<size_t>(kind)];
    if (list_.size() < kMaxListed)
        list_.push_back({kind, scan, text});
}

void Checker::Clear() {
    *this = Checker();
}

} // namespace vb
