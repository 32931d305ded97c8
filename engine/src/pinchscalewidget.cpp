#include "embedded-gui-engine/pinchscalewidget.h"

#include <cmath>

#include "embedded-gui-engine/setvariablechecked.h"

namespace Engine {

bool PinchScaleWidget::handleTouch(const TouchEvent& event) {
    if (event.finger < 0 || event.finger > 1) return false;
    remember(event);
    if (event.phase == TouchEvent::Phase::Down) startDistance_ = static_cast<float>(distance(firstTouch_));
    const bool pinches = twoFingersDown();
    if (pinches) applyRatio(static_cast<float>(distance(lastTouch_) / static_cast<double>(startDistance_)));
    pinching_ = pinches;
    return pinches;
}

void PinchScaleWidget::remember(const TouchEvent& event) {
    const auto finger = static_cast<std::size_t>(event.finger);
    lastTouch_[finger] = event;
    if (event.phase != TouchEvent::Phase::Move) firstTouch_[finger] = event;
}

bool PinchScaleWidget::twoFingersDown() const {
    using Phase = TouchEvent::Phase;
    return firstTouch_[0].phase == Phase::Down && firstTouch_[1].phase == Phase::Down &&
           lastTouch_[0].phase != Phase::Up && lastTouch_[1].phase != Phase::Up;
}

double PinchScaleWidget::distance(const Touches& touches) {
    const double dx = static_cast<double>(touches[0].x) - touches[1].x;
    const double dy = static_cast<double>(touches[0].y) - touches[1].y;
    return std::sqrt(dx * dx + dy * dy);
}

void PinchScaleWidget::applyRatio(float ratio) {
    if (read_ == nullptr || write_ == nullptr) return;
    if (!pinching_) startValue_ = read_->value();
    const float value = clamped(ratio * startValue_);
    if (std::isfinite(value)) setVariableChecked(*write_, value);
}

/// What is no number, as of fingers that started at one point, becomes the minimum.
float PinchScaleWidget::clamped(float value) const {
    if (!(value >= minimum_)) return minimum_;
    return value > maximum_ ? maximum_ : value;
}

}  // namespace Engine
