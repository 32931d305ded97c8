#pragma once

#include "embedded-gui-engine/scalecontainerelement.h"

namespace Engine {

/// A pointer at one value of a scale. While the value is outside the window, another widget at the window's edge can
/// stand for it.
class MarkerIndicator : public ScaleContainerElement {
  public:
    /// Templates, not owned. Without `marker` nothing is drawn; without the widget of an edge the marker goes out of
    /// the window there.
    struct Templates {
        Widget* marker = nullptr;
        Widget* above = nullptr;
        Widget* below = nullptr;
    };

    constexpr explicit MarkerIndicator(ScaleContainer* container, const Templates& templates, float value = 0,
                                       bool enabled = true)
        : ScaleContainerElement(container, enabled), value_(value), templates_(templates) {}

    /// A fraction of the scale; what is no number is not shown.
    void setValue(float value) { repaintIfChanged(value_, value); }
    float value() const { return value_; }

    void draw(Painter& painter, Rect rect) override;
    void tableChanged() override {}

  private:
    float value_;
    Templates templates_;
};

}  // namespace Engine
