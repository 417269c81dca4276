#ifndef EVALG_TOOL_FONT_H
#define EVALG_TOOL_FONT_H

namespace evalgtool {

// A 5x8 bitmap font for printable ASCII (capitals seven rows high, the eighth
// for descenders), for the labels of the contact sheet.
int const glyphWidth = 5;
int const glyphHeight = 8;

// Whether the glyph of c has its pixel (x, y) set, y = 0 at the top; any
// character outside printable ASCII shows as '?'.
bool glyphPixel(char c, int x, int y);

} // namespace evalgtool

#endif
