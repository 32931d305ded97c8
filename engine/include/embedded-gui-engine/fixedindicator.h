#pragma once

#include "embedded-gui-engine/scalecontainerelement.h"

namespace Engine {

/// Something that stands still while the scale slides, as the line that a scale is read at. Being an element it can lie
/// between others: over a band and under the numbers.
class FixedIndicator : public ScaleContainerElement {
  public:
    /// `figure` is a template that is drawn at its own place in the container; not owned, null draws nothing.
    constexpr explicit FixedIndicator(ScaleContainer* container, Widget* figure, bool enabled = true)
        : ScaleContainerElement(container, enabled), figure_(figure) {}

    void draw(Painter& painter, Rect rect) override;
    void tableChanged() override {}

  private:
    Widget* figure_;
};

}  // namespace Engine
