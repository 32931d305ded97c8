#pragma once

#include <cstdint>

namespace Engine {

/// A rectangle in pixels. All zeros is the empty rectangle.
struct Rect {
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::int16_t width = 0;
    std::int16_t height = 0;

    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

/// `b` when `a` is empty (width and height 0), else the smallest rectangle that holds both. An empty `b` is not
/// tested for: it stretches `a` to the origin.
Rect uniteRect(Rect a, Rect b);

/// The common part; all zeros when it has no pixel.
Rect intersectRect(Rect a, Rect b);

}  // namespace Engine
