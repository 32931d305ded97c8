#include "embedded-gui-engine/rangeindicator.h"

#include <algorithm>
#include <cstdlib>

#include "embedded-gui-engine/scalecontainer.h"

namespace Engine {

void RangeIndicator::draw(Painter& painter, Rect /*rect*/) {
    if (band_ == nullptr) return;
    const std::int32_t a = container_->pixelOfFraction(from_);
    const std::int32_t b = container_->pixelOfFraction(to_);
    if (a == ScaleContainer::Nowhere || b == ScaleContainer::Nowhere) return;
    // Far outside any window, and near enough that the height of a band fits into a rectangle.
    constexpr std::int32_t far = 16000;
    const std::int32_t first = std::clamp(std::min(a, b), -far, far);
    const std::int32_t last = std::clamp(std::max(a, b), -far, far);
    band_->setY(static_cast<std::int16_t>(first));
    band_->setHeight(static_cast<std::int16_t>(last - first));
    band_->paint(painter);
}

}  // namespace Engine
