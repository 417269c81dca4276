#ifndef EVALG_TOOL_RENDER_H
#define EVALG_TOOL_RENDER_H

#include "Image.h"
#include "Picture.h"

namespace evalgtool {

// The picture at one image pixel per graph pixel: the inside of every region,
// then the light grid and the axes (unless turned off), then each relation's
// visible stretches (or its pixel runs' edge pixels) in its colour, later
// relations over earlier ones.
Image renderPicture(Picture const &picture);

} // namespace evalgtool

#endif
