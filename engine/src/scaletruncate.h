// Float to pixels and axis units: towards zero, held within bounds.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Engine {

/// 0 for what is no number.
inline std::int32_t truncated(float value) {
    constexpr float limit = 2147483520.0F;  // the last float below 2^31
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, -limit, limit));
}

/// A coordinate that is out of bounds stays out of sight instead of coming round.
inline std::int16_t toCoordinate(std::int64_t value) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace Engine
