#include "platform/Memory.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr size_t kWorthwhile = size_t{4} << 20; // a large page has 2 MiB on the usual machines

} // namespace

void PreferLargePages([[maybe_unused]] void* memory, size_t sizeBytes) {
    if (sizeBytes < kWorthwhile)
        return;
#ifdef MADV_HUGEPAGE
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t lead = (page - reinterpret_cast<uintptr_t>(memory) % page) % page;
    // A system without large pages refuses, and goes on as ever.
    madvise(static_cast<char*>(memory) + lead, (sizeBytes - lead) / page * page, MADV_HUGEPAGE);
#endif
}
