#pragma once

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/image.h"
#include "engine/src/raster/blocks.h"
#include "engine/src/raster/kernels.h"
#include "engine/src/raster/pixel.h"

namespace Engine::Raster {

constexpr unsigned fullDepth = 8;

/// The greatest sample of a mask of that depth; 0 when there is none.
constexpr std::uint64_t sampleMax(std::uint32_t sampleBits) {
    return (std::uint64_t{1} << std::min(sampleBits, 63U)) - 1;
}

/// Coverage 0 to 255 of a sample, truncated to 8 bits.
constexpr std::uint8_t coverage(std::uint8_t sample, std::uint64_t max) {
    return static_cast<std::uint8_t>(max == 0 ? 0 : std::uint64_t{sample} * 255 / max);
}

// The colours that blends mix: an index target has its indices only.
constexpr Color foregroundOf(const TargetColors<std::uint32_t>& colors) {
    return colors.foreground;
}
constexpr Color foregroundOf(const TargetColors<std::uint16_t>& colors) {
    return colors.foregroundWord;
}
constexpr Color foregroundOf(const TargetColors<std::uint8_t>& colors) {
    return colors.foreground;
}
constexpr Color backgroundOf(const TargetColors<std::uint32_t>& colors) {
    return colors.background;
}
constexpr Color backgroundOf(const TargetColors<std::uint16_t>& colors) {
    return colors.backgroundWord;
}

/// What draws an image that lies along the rows: everything that the formats need beside the pixels.
template <typename T>
struct ImageStyle {
    const Kernels<T>& kernels;
    Palette palette;
    Color foreground;  ///< 0xAARRGGBB, or the index of an index target
    std::uint32_t sampleBits;
    Zero zero;
};

/// Masks of other depths go through a line of coverage.
template <typename T>
void drawScaledMask(const ImageStyle<T>& style, const Target<T>& target, const Source<std::uint8_t>& source) {
    const std::uint64_t max = sampleMax(style.sampleBits);
    const BlockShape shape = blockShape(target.width);
    eachPart(target, shape, [&](const Target<T>& part, std::ptrdiff_t u, std::ptrdiff_t v) {
        std::uint8_t block[blockSize];
        for (std::ptrdiff_t row = 0; row < part.rows; ++row)
            for (std::ptrdiff_t x = 0; x < part.width; ++x)
                block[row * shape.width + x] =
                    coverage(source.first[(u + x) * source.step + (v + row) * source.rowStep], max);
        style.kernels.mask(part, {block, 1, shape.width}, style.foreground);
    });
}

template <typename T>
void drawRows(const ImageStyle<T>& style, const Target<T>& target, const Source<std::uint8_t>& source, bool mask) {
    if (!mask) return style.kernels.indexed(target, source, style.palette, style.zero);
    if (sizeof(T) == 1 || style.sampleBits == fullDepth) return style.kernels.mask(target, source, style.foreground);
    drawScaledMask(style, target, source);
}

/// Calls draw(pixels, kernel) with the image's pixels in their type and the kernel call of its format. Formats that the
/// target cannot show, and unknown ones, draw nothing.
template <typename T, typename Draw>
void byFormat(const ImageStyle<T>& style, const Image& image, Draw draw) {
    constexpr bool hasColors = sizeof(T) > 1;
    switch (image.format) {
        case Image::Mask8:
            if (hasColors && alpha(style.foreground) == 0) return;
            [[fallthrough]];
        case Image::Indexed8:
            return draw(static_cast<const std::uint8_t*>(image.pixels), [&](const auto& target, const auto& source) {
                drawRows(style, target, source, image.format == Image::Mask8);
            });
        case Image::Argb8888:
        case Image::Argb8888Alt:
            if (hasColors) draw(static_cast<const std::uint32_t*>(image.pixels), style.kernels.argb);
            return;
        case Image::Argb1555:
        case Image::Argb1555Alt:
            if (!hasColors) return;
            return draw(static_cast<const std::uint16_t*>(image.pixels), [&](const auto& target, const auto& source) {
                style.kernels.fixed(target, source, style.zero);
            });
        default: return;
    }
}

}  // namespace Engine::Raster
