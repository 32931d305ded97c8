#include "embedded-gui-engine/framebuffer.h"

#include <cstdint>
#include <cstring>

#include "engine/src/raster/draw.h"

namespace Engine {

namespace {

using Raster::Source;
using Raster::Target;

constexpr int maxRadius = 5;
constexpr std::ptrdiff_t blockWidth = 64;
constexpr std::ptrdiff_t blockRows = 16;
constexpr std::ptrdiff_t wordSize = 8;
constexpr std::ptrdiff_t marginWidth = (blockWidth + 2 * maxRadius + wordSize - 1) / wordSize * wordSize;
static_assert(blockWidth % wordSize == 0);
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
    std::memset(block.samples, 0, static_cast<std::size_t>(rows * marginWidth));
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

// Eight samples at once; their order within the word does not matter where words are only joined.
std::uint64_t wordAt(const std::uint8_t* samples) {
    std::uint64_t word;
    std::memcpy(&word, samples, sizeof word);
    return word;
}

constexpr std::ptrdiff_t wholeWords(std::ptrdiff_t samples) {
    return (samples + wordSize - 1) / wordSize * wordSize;
}

/// out becomes non-zero where any sample of the window around it is: first the columns of a row's windows, then their
/// rows. Up to a word beyond `width` is written as well.
void spread(const Block& block, int radius, std::ptrdiff_t width, std::ptrdiff_t rows, std::uint8_t* out) {
    const std::ptrdiff_t columns = wholeWords(width + 2 * radius);
    alignas(wordSize) std::uint8_t column[marginWidth + wordSize] = {};
    for (std::ptrdiff_t v = 0; v < rows; ++v, out += blockWidth) {
        for (std::ptrdiff_t u = 0; u < columns; u += wordSize) {
            std::uint64_t any = 0;
            for (int i = 0; i <= 2 * radius; ++i) any |= wordAt(&block.samples[v + i][u]);
            std::memcpy(column + u, &any, sizeof any);
        }
        for (std::ptrdiff_t u = 0; u < width; u += wordSize) {
            std::uint64_t any = 0;
            for (int i = 0; i <= 2 * radius; ++i) any |= wordAt(column + u + i);
            std::memcpy(out + u, &any, sizeof any);
        }
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
