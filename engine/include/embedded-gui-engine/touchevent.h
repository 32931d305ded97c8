#pragma once

#include <cstdint>

namespace Engine {

/// One touch record, in screen coordinates.
struct TouchEvent {
    /// The order is the wire's: not the usual down, move, up.
    enum class Phase : std::int32_t { Down = 0, Up = 1, Move = 2 };

    std::int32_t x = 0;
    std::int32_t y = 0;
    Phase phase = Phase::Down;
    std::int32_t finger = 0;  ///< 0 is the first one
};
static_assert(sizeof(TouchEvent) == 16, "four words");

}  // namespace Engine
