// Readers and writers between data files and an OmDataImage. Readers give an error text; a failed
// read may leave part of the data in the image, so callers read into a fresh one. Writers write
// beside the target and rename, so that a failure never costs an existing file.
#pragma once

#include <cstddef>
#include <string>

class OmDataImage;

// `records` receives the number of good data records: with more than 0 a failed file is a damaged
// file of that format, with 0 it is of another format. The first good record must end within 50,000
// bytes.
bool ReadSRecordFile(const std::string& path, OmDataImage& image, int& records, std::string& error);
bool ReadIntelHexFile(const std::string& path, OmDataImage& image, int& records,
                      std::string& error);

// The file's bytes from address 0 up.
bool ReadRawFile(const std::string& path, OmDataImage& image, std::string& error);

// Tries every format in the order of data/DataFormats.h; a file that holds good records of a format
// and then breaks is not tried as another. On false `image` is undefined and `error` tells why.
bool ReadDataFile(const std::string& path, OmDataImage& image, std::string& error);

// False for an image with no chunks and when the file cannot be written.
bool WriteSRecordFile(const std::string& path, const OmDataImage& image);
bool WriteIntelHexFile(const std::string& path, const OmDataImage& image);

// One chunk, counted from 0; false for an index beyond the last.
bool WriteRawChunk(const std::string& path, const OmDataImage& image, unsigned chunk);
