#include "tools/assetc/canvas.h"

#include <cairo.h>

#include <algorithm>

#include "tools/common/inputerror.h"
#include "tools/common/utf8.h"

Canvas::Canvas(int width, int height, std::uint32_t ground)
    : width_(width), height_(height), pixels_(static_cast<std::size_t>(width * height), ground) {}

void Canvas::blend(int x, int y, std::uint32_t colour, int coverage) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    std::uint32_t& pixel = pixels_[static_cast<std::size_t>(y * width_ + x)];
    std::uint32_t mixed = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int from = static_cast<int>(pixel >> shift & 0xFF), to = static_cast<int>(colour >> shift & 0xFF);
        mixed |= static_cast<std::uint32_t>((from * (255 - coverage) + to * coverage + 127) / 255) << shift;
    }
    pixel = mixed;
}

void Canvas::fill(int x, int y, int width, int height, std::uint32_t colour) {
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column) blend(column, row, colour, 255);
}

void Canvas::draw(const ImageData& image, int x, int y, int scale, std::uint32_t ink) {
    const int bytes = image.format == PixelFormat::Mask8 ? 1 : 4;
    for (int row = 0; row < image.height * scale; ++row)
        for (int column = 0; column < image.width * scale; ++column) {
            const std::uint8_t* pixel =
                &image.pixels[static_cast<std::size_t>((row / scale * image.width + column / scale) * bytes)];
            if (bytes == 1)
                blend(x + column, y + row, ink, *pixel);
            else
                blend(x + column, y + row, static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]),
                      pixel[3]);
        }
}

int Canvas::draw(const FontData& font, const std::string& text, int x, int y, std::uint32_t ink) {
    const std::u32string codes = decodeUtf8(text).value();
    for (const char32_t code : codes) {
        const auto found = std::lower_bound(font.codes.begin(), font.codes.end(), code);
        const std::size_t glyph =
            found != font.codes.end() && *found == code ? static_cast<std::size_t>(found - font.codes.begin()) : 0;
        const int left = static_cast<int>(font.xs[glyph]);
        const int top = y + font.spec.baseline + font.ys[glyph] % font.spec.lineHeight;
        for (int row = 0; row < font.heights[glyph]; ++row)
            for (int column = 0; column < font.widths[glyph]; ++column)
                blend(x + font.bearings[glyph] + column, top + row, ink,
                      font.atlas[static_cast<std::size_t>((font.ys[glyph] + row) * font.atlasWidth + left + column)]);
        x += font.advances[glyph];
    }
    return x;
}

void Canvas::writePng(const std::filesystem::path& path) const {
    std::vector<std::uint32_t> opaque(pixels_);
    const auto status = [&] {
        cairo_surface_t* surface = cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(opaque.data()),
                                                                       CAIRO_FORMAT_RGB24, width_, height_, width_ * 4);
        const cairo_status_t result = cairo_surface_write_to_png(surface, path.c_str());
        cairo_surface_destroy(surface);
        return result;
    }();
    if (status != CAIRO_STATUS_SUCCESS) throw InputError(path, 0, "the picture cannot be written");
}
