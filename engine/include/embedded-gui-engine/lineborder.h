#pragma once

#include <cstdint>

#include "embedded-gui-engine/border.h"

namespace Engine {

/// A frame of four lines, its inside filled with the painter's background.
class LineBorder : public Border {
  public:
    /// `reserved` is kept and read by nobody. `lineWidth` is in pixels.
    constexpr LineBorder(Color color, std::uint32_t reserved, std::uint32_t lineWidth)
        : Border(color), reserved_(reserved), lineWidth_(lineWidth) {}

    std::uint32_t reserved() const { return reserved_; }

    void draw(Painter& painter, Rect rect) override;
    int thickness() const override { return static_cast<int>(lineWidth_); }
    const char* className() const override { return "LineBorder"; }

  private:
    std::uint32_t reserved_;
    std::uint32_t lineWidth_;
};

}  // namespace Engine
