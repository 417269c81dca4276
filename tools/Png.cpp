#include "Png.h"

#include <csetjmp>
#include <new>
#include <png.h>
#include <vector>

#include "Errors.h"

namespace evalgtool {

namespace {

struct RowSource {
    Image const *image;
    int scale;
};

void fillRow(RowSource const &source, int outputRow, unsigned char *row) {
    int y = outputRow / source.scale;
    for (int x = 0; x < source.image->width(); ++x) {
        Rgb c = paletteColour(source.image->at(x, y));
        for (int i = 0; i < source.scale; ++i) {
            *row++ = c.r;
            *row++ = c.g;
            *row++ = c.b;
        }
    }
}

void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    std::string *out = static_cast<std::string *>(png_get_io_ptr(png));
    try {
        out->append(reinterpret_cast<char const *>(data), length);
    } catch (std::bad_alloc const &) {
        png_error(png, "out of memory"); // leaves by longjmp, not through libpng's C frames by exception
    }
}

void flushNothing(png_structp) {}

// libpng reports errors by longjmp back into this frame, so it holds nothing
// with a destructor; the row buffer and the output belong to the caller.
bool writePng(std::string *out, RowSource const *source, unsigned char *row) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_uint_32 width = png_uint_32(source->image->width()) * png_uint_32(source->scale);
    png_uint_32 height = png_uint_32(source->image->height()) * png_uint_32(source->scale);
    png_set_write_fn(png, out, appendBytes, flushNothing);
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (png_uint_32 y = 0; y < height; ++y) {
        fillRow(*source, int(y), row);
        png_write_row(png, row);
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

std::string encodePng(Image const &image, int scale) {
    std::string out;
    std::vector<unsigned char> row(std::size_t(image.width()) * std::size_t(scale) * 3);
    RowSource source{&image, scale};
    if (!writePng(&out, &source, row.data())) throw OutputError("the PNG encoder failed");
    return out;
}

} // namespace evalgtool
