#include "unit/server/modules/hands.h"

#include <algorithm>

namespace Unit {

namespace {

constexpr double smallestRange = 0.01;

}  // namespace

Hands::Axis::Axis(Store& values, const std::string& axis, const std::string& motor, const std::string& overridden_)
    : target(values, "Var" + axis + "TargetValue"),
      limited(values, "Var" + motor + "Motor.SoftBndActive"),
      lower(values, "Var" + motor + "Motor.SoftBndLowerNorm"),
      upper(values, "Var" + motor + "Motor.SoftBndUpperNorm"),
      overridden(values, "VarOverride" + overridden_ + "ForGui") {}

void Hands::Axis::moveTo(double position) const {
    const float low = limited ? lower.get() : 0;
    const float high = limited ? upper.get() : 1;
    target.set(std::clamp(static_cast<float>(position), low, std::max(low, high)));
}

Hands::Control::Control(Store& values, const std::string& control, const std::string& testControl)
    : assignment(values, "Var" + control + "Assignment"),
      reverse(values, "Var" + control + "Reverse"),
      locked(values, "Var" + control + "Lock"),
      position(values, "Var" + control),
      testEnabled(values, "VarManual" + testControl + "Enable"),
      testPosition(values, "VarManual" + testControl + "Value") {}

void Hands::Control::tick(const std::array<Axis, axisCount>& axes) {
    if (testEnabled) hand = static_cast<double>(testPosition.get());
    position.set(static_cast<float>(hand));
    // The axis follows when the control is moved or comes to mean something else; otherwise it stays where others
    // have put it.
    const std::array<double, 4> now = {hand, static_cast<double>(assignment.get()), reverse ? 1.0 : 0.0,
                                       locked ? 1.0 : 0.0};
    if (seen == now) return;
    seen = now;
    const Axis* axis = axisOf(axes, assignment.get());
    if (axis != nullptr && !locked && axis->free()) axis->moveTo(reverse ? 1 - hand : hand);
}

Hands::Hands(Store& values)
    : Module("hands", values),
      axes_{Axis(values, "Focus", "Focus", "Focus"), Axis(values, "Iris", "Iris", "Iris"),
            Axis(values, "Zoom", "Zoom", "Zoom"), Axis(values, "Aux", "AUX", "Aux")},
      knob_(values, "Knob", "Knob"),
      slider_(values, "Slider", "Slider"),
      padAssignment_(values, "VarForcePadAssignment"),
      padReverse_(values, "VarForcePadReverse"),
      padLocked_(values, "VarForcePadLock"),
      padDisabled_(values, "VarDisableForcePad"),
      stickControlsGui_(values, "VarJoystickControlsGui"),
      stickFastX_(values, "VarJoystickFastX"),
      padSpeed_(values, "VarForcePadSpeed"),
      stickX_(values, "VarJoystickX"),
      stickY_(values, "VarJoystickY"),
      setKnobLimit_(values, "VarSetKnobLimit"),
      knobLimitActive_(values, "VarKnobLimitActive") {
    addSettings();
    // Who writes the position from outside has moved the control.
    hear(knob_.position, [this] { knob_.hand = static_cast<double>(knob_.position.get()); });
    hear(slider_.position, [this] { slider_.hand = static_cast<double>(slider_.position.get()); });
    hear(stickX_, [this] { x_ = static_cast<double>(stickX_.get()); });
    hear(stickY_, [this] { y_ = static_cast<double>(stickY_.get()); });
}

void Hands::addSettings() {
    settingNumber(
        "knob", 0, 1, [this](double v) { knob_.hand = v; }, [this] { return knob_.hand; });
    settingNumber(
        "slider", 0, 1, [this](double v) { slider_.hand = v; }, [this] { return slider_.hand; });
    settingNumber(
        "stick-x", -1, 1, [this](double v) { x_ = v; }, [this] { return x_; });
    settingNumber(
        "stick-y", -1, 1, [this](double v) { y_ = v; }, [this] { return y_; });
}

void Hands::factory() {
    knob_.assignment.set(1);
    slider_.assignment.set(2);
    padAssignment_.set(3);
    padSpeed_.set(50);
    for (const Control* control : {&knob_, &slider_}) {
        control->reverse.set(false);
        control->locked.set(false);
    }
    padReverse_.set(false);
    padLocked_.set(false);
}

void Hands::powerUp() {
    knob_.hand = slider_.hand = 0.5;
    knob_.seen.reset();
    slider_.seen.reset();
    x_ = y_ = 0;
    learning_ = false;
    axes_[2].target.set(0.5F);
    axes_[3].target.set(0.5F);
    tick(0);
}

void Hands::tick(std::int64_t nanoseconds) {
    stickX_.set(static_cast<float>(x_));
    stickY_.set(static_cast<float>(y_));
    stickFastX_.set(std::abs(x_) > 0.8);
    learnKnobLimit();
    knob_.tick(axes_);
    slider_.tick(axes_);
    pushForcePad(static_cast<double>(nanoseconds) * 1e-9);
}

const Hands::Axis* Hands::axisOf(const std::array<Axis, axisCount>& axes, std::int32_t assignment) {
    switch (assignment) {
        case 1: return &axes[0];
        case 2:
        case 7: return &axes[1];
        case 3:
        case 8: return &axes[2];
        case 4: return &axes[3];
        default: return nullptr;
    }
}

void Hands::pushForcePad(double seconds) {
    const Axis* axis = axisOf(axes_, padAssignment_.get());
    if (y_ == 0 || axis == nullptr || stickControlsGui_ || padLocked_ || padDisabled_ || !axis->free()) return;
    // At full speed and full force an axis takes a second from end to end.
    const double direction = padReverse_ ? -y_ : y_;
    axis->moveTo(static_cast<double>(axis->target.get()) + direction * padSpeed_.get() / 100 * seconds);
}

void Hands::learnKnobLimit() {
    const Axis* axis = axisOf(axes_, knob_.assignment.get());
    if (setKnobLimit_ && axis != nullptr) {
        if (!learning_) {
            lowest_ = 1;
            highest_ = 0;
        }
        learning_ = true;
        lowest_ = std::min(lowest_, static_cast<double>(axis->target.get()));
        highest_ = std::max(highest_, static_cast<double>(axis->target.get()));
        knobLimitActive_.set(false);
    } else if (learning_) {
        learning_ = false;
        knobLimitActive_.set(highest_ - lowest_ > smallestRange);
    }
}

}  // namespace Unit
