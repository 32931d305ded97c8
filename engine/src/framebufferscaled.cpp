#include "embedded-gui-engine/framebuffer.h"

#include "engine/src/raster/draw.h"
#include "engine/src/raster/scale.h"

namespace Engine {

namespace {

using Raster::ScaleAxis;
using Raster::Source;
using Raster::Target;

constexpr int chunk = 256;

/// The two axes in memory order: `along` runs along a target row.
struct Walk {
    const ScaleAxis& along;
    const ScaleAxis& across;
    std::int64_t alongUnit;  ///< image elements of one source pixel
    std::int64_t acrossUnit;
    bool alongBackwards;
    bool acrossBackwards;
};

Walk walkOf(unsigned rotation, const ScaleAxis& x, const ScaleAxis& y, std::int64_t stride) {
    const bool alongBackwards = rotation == 2 || rotation == 3;
    const bool acrossBackwards = rotation == 1 || rotation == 2;
    if ((rotation & 1) != 0) return {y, x, stride, 1, alongBackwards, acrossBackwards};
    return {x, y, 1, stride, alongBackwards, acrossBackwards};
}

/// Draws at most `chunk` columns of the target. A source row that shows in several target rows is picked once.
template <typename T, typename S, typename Draw>
void drawColumns(const Walk& walk, const Target<T>& target, int column, const S* pixels, std::int64_t pixelCount,
                 Draw draw) {
    std::int32_t offsets[chunk];
    alignas(32) S line[chunk];
    const int width = static_cast<int>(target.width);
    sourceOffsets(walk.along, walk.alongBackwards, walk.alongUnit, column, width, offsets);

    const auto pick = Raster::moves<S>().pick;
    std::int32_t picked = -1;
    for (int row = 0; row < target.rows; ++row) {
        std::int32_t base = 0;
        sourceOffsets(walk.across, walk.acrossBackwards, walk.acrossUnit, row, 1, &base);
        if (base != picked) pick(line, pixels + base, offsets, width, static_cast<std::ptrdiff_t>(pixelCount - base));
        picked = base;
        draw(Target<T>{target.first + row * target.rowStep, target.rowStep, width, 1}, Source<S>{line, 1, 0});
    }
}

template <typename T, typename S, typename Draw>
void drawScaled(const Walk& walk, const Target<T>& target, const S* pixels, std::int64_t pixelCount, Draw draw) {
    for (std::ptrdiff_t column = 0; column < target.width; column += chunk) {
        const Target<T> columns{target.first + column, target.rowStep,
                                std::min<std::ptrdiff_t>(chunk, target.width - column), target.rows};
        drawColumns(walk, columns, static_cast<int>(column), pixels, pixelCount, draw);
    }
}

}  // namespace

template <typename T>
void Framebuffer<T>::drawImageScaled(const Image& image, Rect src, Rect dst) {
    if (!Raster::isDrawable(image)) return;
    const Raster::Area bounds = drawable();
    const auto x = Raster::scaleAxis(src.x, src.width, dst.x, dst.width, image.width, bounds.x, bounds.right());
    const auto y = Raster::scaleAxis(src.y, src.height, dst.y, dst.height, image.height, bounds.y, bounds.bottom());
    if (!x || !y || x->empty() || y->empty()) return;

    const Raster::Area area{x->start + x->first, y->start + y->first, x->last - x->first, y->last - y->first};
    const Target<T> target = Raster::placed(canvas(), area);
    const Walk walk = walkOf(rotation_, *x, *y, image.width);
    const std::int64_t pixelCount = std::int64_t{image.width} * image.height;
    Raster::byFormat<T>(imageStyle(Raster::Zero::Skipped), image, [&](const auto* pixels, const auto& kernel) {
        drawScaled(walk, target, pixels, pixelCount, kernel);
    });
}

template void Framebuffer<unsigned char>::drawImageScaled(const Image&, Rect, Rect);
template void Framebuffer<unsigned short>::drawImageScaled(const Image&, Rect, Rect);
template void Framebuffer<unsigned int>::drawImageScaled(const Image&, Rect, Rect);

}  // namespace Engine
