# Run as a script: writes ${OUTPUT}, a header with the bytes of ${IMAGES} (a list separated by "|")
# as one table of name, data and size.
string(REPLACE "|" ";" images "${IMAGES}")
set(arrays "")
set(rows "")
foreach(image ${images})
  get_filename_component(name ${image} NAME_WE)
  string(MAKE_C_IDENTIFIER ${name} identifier)
  file(READ ${image} bytes HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  string(REGEX REPLACE "(....................................................................................................)" "\\1\n    " bytes "${bytes}")
  string(APPEND arrays "inline constexpr unsigned char ${identifier}[] = {\n    ${bytes}};\n\n")
  string(APPEND rows "    {\"${name}\", image_data::${identifier}, sizeof image_data::${identifier}},\n")
endforeach()
file(WRITE ${OUTPUT} "// Generated from the images in resources/icons.
#pragma once

#include <cstddef>

namespace image_data {

${arrays}} // namespace image_data

struct OmEmbeddedImage {
    const char* name;
    const unsigned char* data;
    size_t size;
};

inline constexpr OmEmbeddedImage kEmbeddedImages[] = {
${rows}};
")
