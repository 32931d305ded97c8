#pragma once

#include <cstdint>

namespace Engine {

/// A place in pixels; wide enough that sums along a chain of parents cannot overflow.
struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;

    friend constexpr bool operator==(const Point&, const Point&) = default;
};

}  // namespace Engine
