#pragma once

#include <array>

#include "embedded-gui-engine/touchevent.h"
#include "embedded-gui-engine/variablebase.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

/// An invisible widget that lies over a scale and turns two fingers into a change of a value: the value follows the
/// ratio of their distances from the moment the second one touched. A single finger is left to what lies below.
class PinchScaleWidget : public Widget {
  public:
    /// Neither is owned; with one missing (null) a pinch changes nothing. They may be the same variable.
    constexpr explicit PinchScaleWidget(const WidgetParams& params, const ValueProvider<float>* read,
                                        VariableBase<float>* write, float minimum = 1, float maximum = 10)
        : Widget(params), read_(read), write_(write), minimum_(minimum), maximum_(maximum) {}

    // Limits of what is written, in force from the next step of the fingers.
    void setMinimum(float minimum) { minimum_ = minimum; }
    void setMaximum(float maximum) { maximum_ = maximum; }
    bool isPinching() const { return pinching_; }

    const char* objectName() const override { return nameOr("PinchScaleWidget"); }
    bool acceptsTouch() const override { return true; }
    /// True while two fingers pinch.
    bool handleTouch(const TouchEvent& event) override;
    void draw(Painter&, Rect) override {}

  private:
    using Touches = std::array<TouchEvent, 2>;

    void remember(const TouchEvent& event);
    bool twoFingersDown() const;
    static double distance(const Touches& touches);
    void applyRatio(float ratio);
    float clamped(float value) const;

    const ValueProvider<float>* read_;
    VariableBase<float>* write_;
    float minimum_;
    float maximum_;
    float startValue_ = 1;
    Touches firstTouch_{{{0, 0, TouchEvent::Phase::Up, 0}, {0, 0, TouchEvent::Phase::Up, 1}}};  ///< last down or up
    Touches lastTouch_ = firstTouch_;
    float startDistance_ = 0;  ///< pixels
    bool pinching_ = false;
};

}  // namespace Engine
