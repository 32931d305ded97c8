#include "embedded-gui-engine/icon.h"

#include <limits>

namespace Engine {

namespace {

constexpr int lowest = std::numeric_limits<std::int16_t>::min();
constexpr int highest = std::numeric_limits<std::int16_t>::max();

/// Calls `stamp` for each step away from `start` whose tile still shows in the span that begins at `spanStart`.
template <typename Stamp>
void stampBothWays(int start, int step, int spanStart, int spanEnd, Stamp stamp) {
    if (step < 1) return;
    for (int at = start - step; at + step > spanStart && at >= lowest; at -= step) stamp(static_cast<std::int16_t>(at));
    for (int at = start + step; at < spanEnd && at <= highest; at += step) stamp(static_cast<std::int16_t>(at));
}

}  // namespace

void Icon::draw(Painter& painter, Rect rect) {
    if (image_ == nullptr) return;
    Rect content = rect;
    contentRect(painter, content);
    Rect place{0, 0, static_cast<std::int16_t>(image_->width), static_cast<std::int16_t>(image_->height)};
    painter.alignRect(place, content);
    place.x = static_cast<std::int16_t>(place.x + scrollX_);
    place.y = static_cast<std::int16_t>(place.y + scrollY_);

    if (haloRadius_ != 0) {
        painter.setBackground(haloColor_);
        painter.setHaloRadius(haloRadius_);
        painter.drawMaskHalo(*image_, 0, 0, place, haloRadius_);
        painter.setHaloRadius(0);
    }
    if (nineSliced_ == Slicing::Nine) {
        painter.drawImageNine(*image_, rect);
    } else {
        painter.drawImage(*image_, 0, 0, place);
    }
    if (tiled_ == Tiling::Cross) drawTiles(painter, place, content);
}

void Icon::drawTiles(Painter& painter, Rect place, Rect content) const {
    const auto right = static_cast<std::int16_t>(content.x + content.width);
    const auto bottom = static_cast<std::int16_t>(content.y + content.height);
    stampBothWays(place.x, place.width, content.x, right, [&](std::int16_t x) {
        painter.drawImage(*image_, 0, 0, {x, place.y, place.width, place.height});
    });
    stampBothWays(place.y, place.height, content.y, bottom, [&](std::int16_t y) {
        painter.drawImage(*image_, 0, 0, {place.x, y, place.width, place.height});
    });
}

}  // namespace Engine
