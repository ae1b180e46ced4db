// A file of S-record records.

#include "fuzz/RecordFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ReadAndWriteBack(data, size, ReadSRecordFile, WriteSRecordFile);
    return 0;
}
