// The formats of data files, one row each: whoever loads, saves, or asks for a file or a format
// looks here, so that a new format is its source and its row. See docs/add-a-data-format.md.
#pragma once

#include <span>
#include <string>
#include <string_view>

class OmDataImage;

struct OmDataFormat {
    const char* name;                        // on the command line
    const char* label;                       // in file dialogs; for translation
    std::span<const char* const> extensions; // without their dot; the first is the usual one
    bool holdsGaps;                          // false: raw, every chunk needs a file of its own

    // As in data/DataFiles.h.
    bool (*read)(const std::string& path, OmDataImage& image, int& records, std::string& error);
    bool (*write)(const std::string& path, const OmDataImage& image);
};

// In the order in which a file is tried; the last takes any file that can be read.
std::span<const OmDataFormat> GetDataFormats();

// Null if there is none of this name, or of this path's extension.
const OmDataFormat* FindDataFormat(std::string_view name);
const OmDataFormat* FindDataFormatOfPath(const std::string& path);
