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

/// Walks the source pixels of an axis in memory order, by the error term.
class ScaleWalk {
  public:
    /// Begins at the `from`-th drawn pixel of the axis. `unit` is the distance of source pixels in elements.
    ScaleWalk(const ScaleAxis& axis, bool backwards, std::int64_t unit, int from)
        : length_(axis.length),
          whole_(axis.source / axis.length),
          rest_(axis.source % axis.length),
          backwards_(backwards),
          unit_(unit) {
        const int pixel = backwards ? axis.last - 1 - from : axis.first + from;
        const std::int64_t product = std::int64_t{pixel} * axis.source;
        source_ = axis.origin + static_cast<int>(product / axis.length);
        error_ = static_cast<int>(product % axis.length);
    }

    std::int32_t offset() const { return static_cast<std::int32_t>(source_ * unit_); }

    void advance() {
        if (backwards_) {
            error_ -= rest_;
            source_ -= whole_ + (error_ < 0 ? 1 : 0);
            error_ += error_ < 0 ? length_ : 0;
        } else {
            error_ += rest_;
            source_ += whole_ + (error_ >= length_ ? 1 : 0);
            error_ -= error_ >= length_ ? length_ : 0;
        }
    }

  private:
    int source_;
    int error_;
    int length_;
    int whole_;
    int rest_;
    bool backwards_;
    std::int64_t unit_;
};

}  // namespace Engine::Raster
