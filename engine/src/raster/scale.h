#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/rect.h"
#include "engine/src/raster/area.h"

namespace Engine::Raster {

/// One axis of a scaled draw after clipping. Target pixel i shows source pixel start + floor(i * source / length): the
/// same as stepping an error term that starts at length - 1 and loses `source` a pixel.
struct ScaleAxis {
    int start;   ///< first target pixel
    int length;  ///< target pixels
    int origin;  ///< first source pixel
    int source;  ///< source pixels
    int first;   ///< the target pixels first to last - 1, counted from start, have a source inside the image
    int last;

    int sourceOf(int i) const { return origin + static_cast<int>(std::int64_t{i} * source / length); }
    bool empty() const { return first >= last; }
};

/// Nothing when no pixel is left. The target clip is clipStart to clipEnd; the scale of the uncut sizes, in
/// thousandths, is kept for the cuts, so a clipped picture need not be a part of the unclipped one.
inline std::optional<ScaleAxis> scaleAxis(std::int64_t origin, std::int64_t source, std::int64_t start,
                                          std::int64_t length, std::int64_t imageSize, std::int64_t clipStart,
                                          std::int64_t clipEnd) {
    if (start > clipEnd) return std::nullopt;
    std::int64_t ratio = length == 0 ? 1 : source * 1000 / length;
    if (ratio == 0) ratio = 1;
    if (const std::int64_t over = origin + source - imageSize; over > 0) {
        source -= over;
        length -= over * 1000 / ratio;
    }
    if (const std::int64_t over = clipStart - start; over > 0) {
        origin += ratio * over / 1000;
        source -= ratio * over / 1000;
        start = clipStart;
        length -= over;
    }
    if (const std::int64_t over = start + length - clipEnd; over > 0) {
        source -= ratio * over / 1000;
        length -= over;
    }
    // A source grown over 2^31 by a negative ratio shows nothing of an image that Rects can name.
    if (length < 1 || source < 1 || source > INT32_MAX || origin < INT32_MIN || origin >= imageSize)
        return std::nullopt;

    const auto firstFrom = [&](std::int64_t pixel) {
        return pixel <= origin ? 0 : std::min(length, ((pixel - origin) * length + source - 1) / source);
    };
    return ScaleAxis{static_cast<int>(start),  static_cast<int>(length),       static_cast<int>(origin),
                     static_cast<int>(source), static_cast<int>(firstFrom(0)), static_cast<int>(firstFrom(imageSize))};
}

/// Source offsets of target pixels in memory order, `count` of them from the `from`-th on.
inline void sourceOffsets(const ScaleAxis& axis, bool backwards, std::int64_t unit, int from, int count,
                          std::int32_t* offsets) {
    for (int i = 0; i < count; ++i) {
        const int pixel = backwards ? axis.last - 1 - from - i : axis.first + from + i;
        offsets[i] = static_cast<std::int32_t>(axis.sourceOf(pixel) * unit);
    }
}

}  // namespace Engine::Raster
