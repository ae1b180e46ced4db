// A file of Intel HEX records.

#include "fuzz/RecordFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ReadAndWriteBack(data, size, ReadIntelHexFile, WriteIntelHexFile);
    return 0;
}
