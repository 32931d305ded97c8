#include "embedded-gui-engine/framebuffer.h"

#include <cstring>

#include "engine/src/raster/draw.h"

namespace Engine {

namespace {

using Raster::Source;
using Raster::Target;

constexpr int maxRadius = 5;
constexpr std::ptrdiff_t blockWidth = 64;
constexpr std::ptrdiff_t blockRows = 16;
constexpr std::ptrdiff_t marginWidth = blockWidth + 2 * maxRadius;
constexpr std::ptrdiff_t marginRows = blockRows + 2 * maxRadius;

/// A part of the mask in memory order with the margin that its windows reach into; empty where there is no sample.
struct Block {
    alignas(32) std::uint8_t samples[marginRows][marginWidth];
};

/// The samples that count, in memory order and in the coordinates of the halo's target block.
struct Mask {
    Source<std::uint8_t> source;
    std::ptrdiff_t left;
    std::ptrdiff_t top;
    std::ptrdiff_t width;
    std::ptrdiff_t rows;
};

/// Copies the samples of the window (u, v, width, rows) that lie in the mask.
void load(Block& block, const Mask& mask, std::ptrdiff_t u, std::ptrdiff_t v, std::ptrdiff_t width,
          std::ptrdiff_t rows) {
    std::memset(block.samples, 0, sizeof block.samples);
    const std::ptrdiff_t left = std::max(u, mask.left);
    const std::ptrdiff_t top = std::max(v, mask.top);
    const std::ptrdiff_t columns = std::min(u + width, mask.left + mask.width) - left;
    const std::ptrdiff_t lines = std::min(v + rows, mask.top + mask.rows) - top;
    if (columns < 1 || lines < 1) return;
    const auto& from = mask.source;
    const std::uint8_t* first = from.first + (left - mask.left) * from.step + (top - mask.top) * from.rowStep;
    Raster::moves<std::uint8_t>().turn(&block.samples[top - v][left - u], marginWidth, {first, from.step, from.rowStep},
                                       columns, lines);
}

/// out becomes non-zero where any sample of the window around it is.
void spread(const Block& block, int radius, std::ptrdiff_t width, std::ptrdiff_t rows, std::uint8_t* out) {
    for (std::ptrdiff_t v = 0; v < rows; ++v, out += blockWidth) {
        alignas(32) std::uint8_t column[marginWidth] = {};
        for (int i = 0; i <= 2 * radius; ++i)
            for (std::ptrdiff_t u = 0; u < marginWidth; ++u) column[u] |= block.samples[v + i][u];
        std::copy_n(column, width, out);
        for (int i = 1; i <= 2 * radius; ++i)
            for (std::ptrdiff_t u = 0; u < width; ++u) out[u] |= column[u + i];
    }
}

}  // namespace

template <typename T>
void Framebuffer<T>::drawMaskHalo(const Image& image, int srcX, int srcY, Rect dst, int radius) {
    if (image.format != Image::Mask8 || radius < 0 || radius > maxRadius || !Raster::isDrawable(image)) return;
    const Raster::Area inner = Raster::Area::of(dst);
    const Raster::Cut samples = Raster::cutToImage(inner, dst, srcX, srcY, image);
    const Raster::Area grown{inner.x - radius, inner.y - radius, inner.width + 2 * radius, inner.height + 2 * radius};
    const Raster::Area area = intersect(grown, drawable());
    if (samples.area.empty() || area.empty()) return;

    const auto stride = static_cast<std::ptrdiff_t>(image.width);
    const std::uint8_t* pixels = static_cast<const std::uint8_t*>(image.pixels) +
                                 static_cast<std::ptrdiff_t>(samples.srcY) * stride +
                                 static_cast<std::ptrdiff_t>(samples.srcX);
    const Raster::Area block = physical(canvas(), area);
    const Raster::Area inside = physical(canvas(), samples.area);
    const Mask mask{Raster::turned(rotation_, pixels, stride, samples.area), inside.x - block.x, inside.y - block.y,
                    inside.width, inside.height};
    Raster::eachPart(placed(canvas(), area), {blockWidth, blockRows},
                     [&](const Target<T>& part, std::ptrdiff_t u, std::ptrdiff_t v) {
                         Block window;
                         load(window, mask, u - radius, v - radius, part.width + 2 * radius, part.rows + 2 * radius);
                         alignas(32) std::uint8_t cover[blockWidth * blockRows];
                         spread(window, radius, part.width, part.rows, cover);
                         kernels_->stamp(part, {cover, 1, blockWidth}, colors_.background);
                     });
}

template void Framebuffer<unsigned char>::drawMaskHalo(const Image&, int, int, Rect, int);
template void Framebuffer<unsigned short>::drawMaskHalo(const Image&, int, int, Rect, int);
template void Framebuffer<unsigned int>::drawMaskHalo(const Image&, int, int, Rect, int);

}  // namespace Engine
