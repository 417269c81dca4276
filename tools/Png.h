#ifndef EVALG_TOOL_PNG_H
#define EVALG_TOOL_PNG_H

#include <string>

#include "Image.h"

namespace evalgtool {

// The image as an 8-bit RGB PNG file, each pixel enlarged to scale x scale
// (nearest neighbour). Throws OutputError if libpng fails.
std::string encodePng(Image const &image, int scale);

} // namespace evalgtool

#endif
