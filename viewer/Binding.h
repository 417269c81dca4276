#ifndef EVALG_VIEWER_BINDING_H
#define EVALG_VIEWER_BINDING_H

#include <cstdint>

// The page's view of the library, as plain C functions over numbered slots,
// one slot per relation box. Points and markers are handed out as pointers
// into the library's own data set: the page reads them in place.
extern "C" {

// Reads the relation typed into a slot; 1 when it is drawable, 0 when not,
// with the reason in evalg_message(). A slot that failed keeps nothing.
int evalg_set(int slot, char const *text);
void evalg_clear(int slot);
// What was chosen to draw the slot's relation ("circle · CircleEvalC"), and
// how: bit 1 when its drawing is row runs of pixels (a region or an implicit
// curve) rather than a path, bit 2 when it has y values for trace and table.
char const *evalg_chosen(int slot);
int evalg_form(int slot);
char const *evalg_message();

// Draws the slot's relation on the window; the number of points, 0 for an
// empty slot or an invalid window, -1 when it cannot be drawn, with the
// reason in evalg_message().
int evalg_draw(int slot, double xMin, double xMax, double yMin, double yMax, int columns, int rows);
// The last drawing's points, [column, row] pairs, and one marker byte each.
std::int32_t const *evalg_points(int slot);
std::uint8_t const *evalg_markers(int slot);

// The relation's y values at x, in branch order, into evalg_numbers(); their
// count.
int evalg_values_at(int slot, double x);
// Rows x, first y, second y (NaN when missing) for x = from + i*step, into
// evalg_numbers(); the number of rows.
int evalg_table(int slot, double from, double step, int count);
// The grid lines at round values for the window, into evalg_numbers(): the
// counts of vertical and horizontal lines, then (pixel, value, axis) for each,
// vertical first. Returns the number of lines.
int evalg_grid(double xMin, double xMax, double yMin, double yMax, int columns, int rows);
double const *evalg_numbers();
}

#endif
