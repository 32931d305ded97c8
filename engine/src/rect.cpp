#include "embedded-gui-engine/rect.h"

#include "engine/src/raster/area.h"

namespace Engine {

namespace {

std::int16_t narrow(int value) {
    return static_cast<std::int16_t>(std::clamp<int>(value, INT16_MIN, INT16_MAX));
}

Rect toRect(const Raster::Area& area) {
    return {narrow(area.x), narrow(area.y), narrow(area.width), narrow(area.height)};
}

}  // namespace

Rect uniteRect(Rect a, Rect b) {
    if (a.width == 0 && a.height == 0) return b;
    const auto first = Raster::Area::of(a);
    const auto second = Raster::Area::of(b);
    const int x = std::min(first.x, second.x);
    const int y = std::min(first.y, second.y);
    return toRect({x, y, std::max(first.right(), second.right()) - x, std::max(first.bottom(), second.bottom()) - y});
}

Rect intersectRect(Rect a, Rect b) {
    const Raster::Area common = Raster::intersect(Raster::Area::of(a), Raster::Area::of(b));
    return common.empty() ? Rect{} : toRect(common);
}

}  // namespace Engine
