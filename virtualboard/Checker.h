// Collects what would hurt or lie on a real board, with the number of the scan that did it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vb {

enum class ViolationKind {
    Contention,    // two drivers hold a net at different levels
    AddressChange, // an address moves while the flash latches it
    DataChange,    // data move while the flash latches them
    FloatingRead,  // a read samples a net that nobody drives
    FloatingInput, // a selected flash sees a net that nobody drives
    CoreReleased,  // the core logic gets its pins back in the middle of a bus cycle
};

constexpr size_t kViolationKinds = 6;

const char* ViolationName(ViolationKind kind);

struct Violation {
    ViolationKind kind;
    uint64_t scan; // DR scans done when it happened
    std::string text;
    uint32_t data = 0; // on the data pins of the chip that saw it; 0 where no chip did
};

class Checker {
  public:
    void Report(const Violation& violation);

    // What `harmless` is true of is not counted, and takes no place in the list: for the oddities
    // of a bus that a test knows and accepts.
    void Tolerate(std::function<bool(const Violation&)> harmless);

    // All that happened; the list holds the first kMaxListed of them.
    uint64_t Count() const { return total_; }

    uint64_t Count(ViolationKind kind) const { return counts_[static_cast<size_t>(kind)]; }

    const std::vector<Violation>& List() const { return list_; }

    // What is tolerated stays so.
    void Clear();

    static constexpr size_t kMaxListed = 1000;

  private:
    std::array<uint64_t, kViolationKinds> counts_{};
    uint64_t total_ = 0;
    std::vector<Violation> list_;
    std::function<bool(const Violation&)> harmless_;
};

} // namespace vb
