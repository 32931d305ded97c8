#pragma once

#include <array>
#include <optional>

#include "unit/server/module.h"

namespace Unit {

/// The knob, the slider and the stick (which is the force pad of an axis while it does not drive the display): they
/// move the targets of the axes that they are assigned to, unless they are locked or the axis is held elsewhere.
class Hands final : public Module {
  public:
    explicit Hands(Store& values);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    static constexpr std::size_t axisCount = 4;

    /// An axis as the hands see it.
    struct Axis {
        Axis(Store& values, const std::string& axis, const std::string& motor, const std::string& overridden);
        Real target;
        Flag limited;
        Real lower, upper;
        Number overridden;

        bool free() const { return overridden.get() == 0; }
        void moveTo(double position) const;
    };

    /// A control that has a place of its own: the axis stands where the control stands.
    struct Control {
        Control(Store& values, const std::string& control, const std::string& testControl);
        Number assignment;
        Flag reverse, locked;
        Real position;
        Flag testEnabled;
        Real testPosition;
        double hand = 0.5;  ///< where the hand has put it
        std::optional<std::array<double, 4>> seen;

        void tick(const std::array<Axis, axisCount>& axes);
    };

    static const Axis* axisOf(const std::array<Axis, axisCount>& axes, std::int32_t assignment);
    void pushForcePad(double seconds);
    void learnKnobLimit();
    void addSettings();

    std::array<Axis, axisCount> axes_;
    Control knob_, slider_;
    Number padAssignment_;
    Flag padReverse_, padLocked_, padDisabled_, stickControlsGui_, stickFastX_;
    Number padSpeed_;
    Real stickX_, stickY_;
    Flag setKnobLimit_, knobLimitActive_;
    bool learning_ = false;
    double lowest_ = 1, highest_ = 0;
    double x_ = 0, y_ = 0;
};

}  // namespace Unit
