#pragma once

#include <algorithm>
#include <cstdint>

#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/rect.h"

namespace Engine::Raster {

/// A rectangle in 32 bits, so that sums of a Rect's fields cannot overflow.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    static Area of(Rect rect) { return {rect.x, rect.y, rect.width, rect.height}; }
    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool empty() const { return width < 1 || height < 1; }
};

inline Area intersect(const Area& a, const Area& b) {
    const int x = std::max(a.x, b.x);
    const int y = std::max(a.y, b.y);
    return {x, y, std::min(a.right(), b.right()) - x, std::min(a.bottom(), b.bottom()) - y};
}

/// A part of the target and the source position of its first pixel.
struct Cut {
    Area area;
    std::int64_t srcX = 0;
    std::int64_t srcY = 0;
};

/// Moves one axis of a cut so that the source is read between 0 and `size` only.
inline void cutAxis(int& start, int& length, std::int64_t& source, std::int64_t size) {
    const std::int64_t before = source < 0 ? std::min<std::int64_t>(-source, length) : 0;
    start += static_cast<int>(before);
    source += before;
    length = static_cast<int>(std::clamp<std::int64_t>(size - source, 0, length - before));
}

/// `area` is `dst` after clipping. Keeps the source in step with what was clipped, then cuts to the image.
inline Cut cutToImage(const Area& area, Rect dst, int srcX, int srcY, const Image& image) {
    Cut cut{area, std::int64_t{srcX} + area.x - dst.x, std::int64_t{srcY} + area.y - dst.y};
    if (area.empty()) return cut;
    cutAxis(cut.area.x, cut.area.width, cut.srcX, image.width);
    cutAxis(cut.area.y, cut.area.height, cut.srcY, image.height);
    return cut;
}

/// Offsets into an image are kept in 32 bits; one without pixels or above that size is not drawn.
inline bool isDrawable(const Image& image) {
    return image.pixels != nullptr && std::uint64_t{image.width} * image.height <= INT32_MAX;
}

}  // namespace Engine::Raster
