#pragma once

#include "embedded-gui-engine/scalecontainerelement.h"

namespace Engine {

/// A band between two values of a scale, in either order.
class RangeIndicator : public ScaleContainerElement {
  public:
    /// `band` is a template whose y and height the indicator sets; not owned, null draws nothing.
    constexpr explicit RangeIndicator(ScaleContainer* container, Widget* band, float from = 0, float to = 0,
                                      bool enabled = true)
        : ScaleContainerElement(container, enabled), from_(from), to_(to), band_(band) {}

    // Fractions of the scale; while one is no number, the band is not shown.
    void setFrom(float from) { repaintIfChanged(from_, from); }
    void setTo(float to) { repaintIfChanged(to_, to); }
    float from() const { return from_; }
    float to() const { return to_; }

    void draw(Painter& painter, Rect rect) override;
    void tableChanged() override {}

  private:
    float from_;
    float to_;
    Widget* band_;
};

}  // namespace Engine
