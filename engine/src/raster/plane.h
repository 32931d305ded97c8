#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/src/raster/area.h"

namespace Engine::Raster {

/// A block of target pixels in memory order: what every row kernel writes.
template <typename T>
struct Target {
    T* first;
    std::ptrdiff_t rowStep;  ///< elements from one row to the next
    std::ptrdiff_t width;
    std::ptrdiff_t rows;
};

/// The source pixels of a target block, walked in the target's memory order. Row kernels take a step of 1 or -1 only.
template <typename S>
struct Source {
    const S* first;
    std::ptrdiff_t step;     ///< elements from one pixel of a target row to the next
    std::ptrdiff_t rowStep;  ///< elements from one target row to the next
};

/// The pixels of a surface and how logical coordinates lie on them.
template <typename T>
struct Canvas {
    T* pixels;
    int width;   ///< physical
    int height;  ///< physical
    unsigned rotation;
};

/// A logical area in physical coordinates.
template <typename T>
Area physical(const Canvas<T>& canvas, const Area& area) {
    switch (canvas.rotation) {
        case 1: return {area.y, canvas.height - area.right(), area.height, area.width};
        case 2: return {canvas.width - area.right(), canvas.height - area.bottom(), area.width, area.height};
        case 3: return {canvas.width - area.bottom(), area.x, area.height, area.width};
        default: return area;
    }
}

/// The block of memory that a logical area covers. The area must lie on the surface.
template <typename T>
Target<T> placed(const Canvas<T>& canvas, const Area& area) {
    const Area block = physical(canvas, area);
    return {canvas.pixels + block.x + std::ptrdiff_t{canvas.width} * block.y, canvas.width, block.width, block.height};
}

/// The source of placed(): `pixels` is the source pixel of the area's logical top left, `stride` its row stride.
template <typename S>
Source<S> turned(unsigned rotation, const S* pixels, std::ptrdiff_t stride, const Area& area) {
    const std::ptrdiff_t right = area.width - 1;
    const std::ptrdiff_t down = stride * (area.height - 1);
    switch (rotation) {
        case 1: return {pixels + right, stride, -1};
        case 2: return {pixels + right + down, -1, -stride};
        case 3: return {pixels + down, -stride, 1};
        default: return {pixels, 1, stride};
    }
}

/// One run instead of many rows where the rows touch each other.
template <typename T>
Target<T> joined(const Target<T>& target) {
    if (target.rowStep != target.width) return target;
    return {target.first, target.rowStep, target.width * target.rows, 1};
}

/// The same for a blit: its rows must touch in the source too, and in the same order.
template <typename T, typename S>
Target<T> joined(const Target<T>& target, const Source<S>& source) {
    return source.rowStep == source.step * target.width ? joined(target) : target;
}

}  // namespace Engine::Raster
