#include "apps/gui/main/joystick.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float deadZone = 0.15F;
constexpr float travel = 0.55F;
/// Of the setting. Whatever else stands there must not turn one step into a long run of events.
constexpr int slowest = 1;
constexpr int fastest = 10;

float rateOf(float deflection) {
    return std::pow(2.0F * deflection, 5.0F);
}

}  // namespace

void Joystick::step(const Reading& reading, Listener& listener) {
    const float x = std::isfinite(reading.x) ? reading.x : 0.0F;
    const float y = std::isfinite(reading.y) ? reading.y : 0.0F;
    if (std::fabs(x) <= deadZone && std::fabs(y) <= deadZone) {
        release(listener);
        return;
    }
    if (blocked_) return;
    const float back = 20.0F / static_cast<float>(std::clamp(reading.scrollSpeed, slowest, fastest));
    if (std::fabs(x) > std::fabs(y)) {
        const float clamped = std::clamp(x, -travel, travel);
        feed(accumulatorX_, reading.fastX ? rateOf(clamped) : clamped * 0.125F, Left, Right, back, listener);
    } else {
        feed(accumulatorY_, rateOf(std::clamp(y, -travel, travel)), Down, Up, back, listener);
    }
}

void Joystick::release(Listener& listener) {
    for (std::size_t i = 0; i < counters_.size(); ++i)
        if (counters_[i] > 1) listener.joystickReleased(static_cast<Direction>(i), counters_[i]);
    counters_ = {};
    accumulatorX_ = 0;
    accumulatorY_ = 0;
    blocked_ = false;
}

void Joystick::feed(float& accumulator, float rate, Direction negative, Direction positive, float back,
                    Listener& listener) {
    accumulator += rate;
    const Direction direction = rate < 0 ? negative : positive;
    while (rate < 0 ? accumulator < 0 : accumulator > 0) {
        int& counter = counters_[static_cast<std::size_t>(direction)];
        listener.joystickPressed(direction, counter == 0);
        ++counter;
        accumulator += rate < 0 ? back : -back;
    }
}
