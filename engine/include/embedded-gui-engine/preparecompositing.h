#pragma once

#include <cstdint>

#include "embedded-gui-engine/point.h"

namespace Engine {

/// Gives the geometry of a slide between two pages.
class PrepareCompositing {
  public:
    /// Fills in where the active page (`firstOffset`) and the other one are copied to, and whether the active page
    /// lies on top. May end the slide. `rotationIndex` is the screen's in quarter turns.
    virtual void prepare(Point& firstOffset, Point& secondOffset, bool& firstGoesOnTop,
                         std::uint32_t rotationIndex) = 0;

  protected:
    constexpr PrepareCompositing() = default;
    ~PrepareCompositing() = default;
};

}  // namespace Engine
