#include "embedded-gui-engine/markerindicator.h"

#include "embedded-gui-engine/scalecontainer.h"

namespace Engine {

void MarkerIndicator::draw(Painter& painter, Rect rect) {
    if (templates_.marker == nullptr) return;
    std::int32_t y = container_->pixelOfFraction(value_);
    if (y == ScaleContainer::Nowhere) return;
    const std::int32_t top = container_->toLocal({rect.x, rect.y}).y;
    const std::int32_t bottom = top + rect.height;
    Widget* shown = templates_.marker;
    if (y < top && templates_.above != nullptr) {
        shown = templates_.above;
        y = top;
    } else if (y > bottom && templates_.below != nullptr) {
        shown = templates_.below;
        y = bottom;
    }
    paintMoved(painter, *shown, y);
}

}  // namespace Engine
