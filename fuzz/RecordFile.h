// What a reader and a writer of one kind of data file owe to each other, whatever the file.
#pragma once

#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "fuzz/Check.h"
#include "fuzz/MemoryFile.h"

template <typename Read, typename Write>
void ReadAndWriteBack(const uint8_t* data, size_t size, Read read, Write write) {
    const MemoryFile file(data, size);
    OmDataImage image;
    int records = 0;
    std::string error;
    const bool good = read(file.Path(), image, records, error);
    Check(good == error.empty(), "a file is refused with a message, or read");
    Check(records >= 0 && image.GetByteCount() <= size, "there is no more data than file");
    if (!good)
        return;
    Check(records > 0, "a file without records is not read");
    if (image.IsEmpty())
        return;
    Check(write(ScratchPath(), image), "what was read can be written");
    OmDataImage second;
    Check(read(ScratchPath(), second, records, error), "what was written can be read");
    Check(second == image, "and is the same");
}
