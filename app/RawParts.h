// Saving an image as raw binary files. A raw file holds one unbroken piece, so an image of several
// chunks becomes several files, after the user has agreed.
#pragma once

#include <string>

class OmDataImage;

// False if the user declines or a file cannot be written, which has then been told. A failure may
// leave some of the files written.
bool SaveRawParts(const std::wstring& path, const OmDataImage& image);
