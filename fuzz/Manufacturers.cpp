// The table of manufacturer codes, asked for an IDCODE's and for a flash chip's code.

#include "bsdl/Idcode.h"
#include "fuzz/Check.h"
#include "fuzz/MemoryFile.h"

namespace {

// A name that has passed 300 characters ends there.
constexpr size_t kLongestName = 301;

// The four bytes in front of the table are the IDCODE.
OmBitVector TakeIdcode(const uint8_t* data) {
    OmBitVector idcode;
    for (size_t bit = 0; bit < 32; ++bit)
        idcode.push_back((data[bit / 8] >> (bit % 8)) & 1);
    return idcode;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4)
        return 0;
    const OmBitVector idcode = TakeIdcode(data);
    const MemoryFile file(data + 4, size - 4);
    SetManufacturerTablePath(file.Path());
    std::wstring name;
    if (LookupManufacturer(idcode, name))
        Check(!name.empty() && name.size() <= kLongestName, "a name is there and not too long");
    if (LookupManufacturer(data[0], name))
        Check(!name.empty() && name.size() <= kLongestName, "a name is there and not too long");
    Check(DecodeIdcode(idcode).whole.size() == 32, "an IDCODE has its digits");
    return 0;
}
