#pragma once

#include <cstdint>

#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

/// A value between two limits, shown as a bar that grows or as a pointer that moves.
class Level : public Widget {
  public:
    enum class Direction : std::uint32_t {
        Left = 0,   ///< from the right edge
        Right = 1,  ///< from the left edge
        Up = 2,     ///< from the bottom edge
        Down = 3    ///< from the top edge
    };
    enum class Mode : bool { Bar = false, Pointer = true };

    /// `pointerThickness` is in pixels along the axis. `steps` is the number of equal steps of the range at which the
    /// value is shown, 0 shows it as it is. The bar reveals `image`, the pointer is it; without one (null) they are
    /// filled in the foreground. Not owned. The value is not clamped until a setter is called.
    constexpr explicit Level(const WidgetParams& params, Direction direction = Direction::Right, Mode mode = Mode::Bar,
                             std::int32_t pointerThickness = 1, float steps = 1.0F, const Image* image = nullptr,
                             float value = 0.0F, float minimum = 0.0F, float maximum = 1000.0F)
        : Widget(params),
          direction_(direction),
          steps_(steps),
          pointerMode_(mode),
          pointerThickness_(pointerThickness),
          image_(image),
          value_(value),
          minimum_(minimum),
          maximum_(maximum) {}

    void setValue(int value) { setValue(static_cast<float>(value)); }
    void setValue(float value);
    /// The limits push the value ahead; widening them later does not bring it back.
    void setMinimum(float minimum);
    void setMaximum(float maximum);
    float value() const { return value_; }
    float minimum() const { return minimum_; }
    float maximum() const { return maximum_; }

    const char* objectName() const override { return nameOr("Level"); }
    void draw(Painter& painter, Rect rect) override;

    /// Cuts `rect` down to the bar; the result is where the bar's part of an image begins along the axis.
    int barRect(Rect& rect) const;
    /// Cuts `rect` down to the pointer.
    void pointerRect(Rect& rect) const;

  private:
    bool isHorizontal() const { return direction_ == Direction::Left || direction_ == Direction::Right; }
    bool growsFromFarEdge() const { return direction_ == Direction::Left || direction_ == Direction::Up; }
    float shownValue() const;
    int scaled(int size) const;
    void store(float value, float minimum, float maximum);
    Rect imagePlace(Painter& painter, Rect content) const;
    void drawPointer(Painter& painter, Rect content) const;
    void drawBar(Painter& painter, Rect content) const;

    Direction direction_;
    float steps_;
    Mode pointerMode_;
    std::int32_t pointerThickness_;
    const Image* image_;
    float value_;
    float minimum_;
    float maximum_;
};

}  // namespace Engine
