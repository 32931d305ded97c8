#pragma once

#include <cstdint>

#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/painter.h"

namespace Engine {

class Border;
class Font;

/// A colour that may be left out.
class OptionalColor {
  public:
    constexpr OptionalColor() = default;
    constexpr OptionalColor(Color color) : color_(color), given_(true) {}
    constexpr bool isGiven() const { return given_; }
    constexpr Color valueOr(Color other) const { return given_ ? color_ : other; }

  private:
    Color color_ = 0;
    bool given_ = false;
};

/// The record that a widget is built from. Pointers are not owned and may be null.
struct WidgetParams {
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::int16_t width = 0;
    std::int16_t height = 0;
    std::int16_t scrollX = 0;
    std::int16_t scrollY = 0;
    bool enabled = true;
    Color foreground = 0xFFFFFFFF;
    Color background = 0xFF000000;
    bool disabled = false;
    Color disabledForeground = 0xFF808080;
    Color disabledBackground = 0xFF000000;
    OptionalColor highlightForeground = {};  ///< without a value the highlighted state keeps `foreground`
    OptionalColor highlightBackground = {};
    Font* highlightFont = nullptr;
    Border* highlightBorder = nullptr;
    Font* font = nullptr;
    bool wrap = false;
    Painter::Align horizontalAlign = Painter::Align::Start;
    Painter::Align verticalAlign = Painter::Align::Start;
    std::uint16_t padding = 0;  ///< pixels
    Color haloColor = 0xFF000000;
    std::int32_t haloRadius = 0;  ///< pixels
    Border* border = nullptr;
    const char* name = nullptr;
};

}  // namespace Engine
