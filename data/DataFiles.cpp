#include "data/DataFiles.h"

#include "data/DataImage.h"

bool ReadDataFile(const std::string& path, OmDataImage& image, std::string& error) {
    for (const auto& read : {ReadSRecordFile, ReadIntelHexFile}) {
        image.ClearImage();
        error.clear();
        int records = 0;
        if (read(path, image, records, error))
            return true;
        if (records > 0)
            return false; // damaged, and not of another format
    }
    image.ClearImage();
    error.clear();
    return ReadRawFile(path, image, error);
}
