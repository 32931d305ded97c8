#include "embedded-gui-engine/framebuffer.h"

#include "engine/src/raster/draw.h"
#include "engine/src/raster/scale.h"

namespace Engine {

namespace {

using Raster::ScaleAxis;
using Raster::ScaleWalk;
using Raster::Source;
using Raster::Target;

constexpr int chunk = Raster::PickPlan::maxWidth;

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
    const auto rows = static_cast<int>(target.rows);
    ScaleWalk across(walk.across, walk.acrossBackwards, walk.acrossUnit, 0);
    const ScaleWalk lastRow(walk.across, walk.acrossBackwards, walk.acrossUnit, rows - 1);

    Raster::PickPlan plan;
    plan.width = static_cast<int>(target.width);
    ScaleWalk along(walk.along, walk.alongBackwards, walk.alongUnit, column);
    for (int u = 0; u < plan.width; ++u, along.advance()) plan.places[u] = along.offset();
    plan.settle(static_cast<std::ptrdiff_t>(pixelCount) - std::max(across.offset(), lastRow.offset()));

    const auto pick = Raster::moves<S>().pick;
    alignas(32) S line[chunk];
    std::int32_t picked = -1;
    for (int row = 0; row < rows; ++row, across.advance()) {
        const std::int32_t base = across.offset();
        if (base != picked) pick(line, pixels + base, plan);
        picked = base;
        draw(Target<T>{target.first + row * target.rowStep, target.rowStep, target.width, 1}, Source<S>{line, 1, 0});
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
