#pragma once

#include <cstdint>

#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/scalecontainerelement.h"

namespace Engine {

struct ScaleRow;

/// The ruler of a ScaleContainer: a tick for each row of the table, and a number where there is room for one. A number
/// is left out when it would stand closer to the last one, on the axis, than a label is high.
class Scale : public ScaleContainerElement {
  public:
    /// Any may be null. They show themselves disabled for rows outside the range that can be used; a template whose
    /// disabled colours are both 0 is left out there instead. Rows without a label are labelled too, if they have a
    /// text, when the main label's disabled foreground is not 0.
    struct Templates {
        Widget* majorTick = nullptr;   ///< of a row with a label
        Widget* mediumTick = nullptr;  ///< of a row without one
        Widget* minorTick = nullptr;   ///< where rows stand too close
        Label* mainLabel = nullptr;
        Label* subLabel = nullptr;
    };
    enum class SubLabel : bool { StaysInPlace = false, FollowsMainLabel = true };

    constexpr explicit Scale(ScaleContainer* container, const Templates& templates,
                             SubLabel subLabel = SubLabel::StaysInPlace, bool enabled = true)
        : ScaleContainerElement(container, enabled), templates_(templates), subLabelFollows_(subLabel) {}

    void draw(Painter& painter, Rect rect) override;
    void tableChanged() override {}

  private:
    class Pass;

    Templates templates_;
    SubLabel subLabelFollows_;
};

}  // namespace Engine
