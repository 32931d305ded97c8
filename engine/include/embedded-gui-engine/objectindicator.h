#pragma once

#include <cstdint>

#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/scalecontainerelement.h"

namespace Engine {

class TableSource;

/// A list of objects on a scale, one a row of a table: column 0 tells whether it is shown, column 3 is its place across
/// as a factor of half the span, column 4 its fraction on the scale.
class ObjectIndicator : public ScaleContainerElement, public Observer {
  public:
    /// `objects` and the template are not owned and may be null; then nothing is drawn. `span` is in pixels.
    constexpr explicit ObjectIndicator(ScaleContainer* container, const TableSource* objects, Widget* objectWidget,
                                       std::int32_t span, bool enabled = true)
        : ScaleContainerElement(container, enabled), objects_(objects), objectWidget_(objectWidget), span_(span) {}

    void draw(Painter& painter, Rect rect) override;
    void tableChanged() override { repaint(); }
    /// The table of objects changed.
    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    void drawObject(Painter& painter, unsigned int row);

    const TableSource* objects_;
    Widget* objectWidget_;
    std::int32_t span_;
};

}  // namespace Engine
