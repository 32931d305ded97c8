#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/condition.h"

namespace Engine {

/// True at the first condition that is true; those behind it are not evaluated.
class Or : public Condition {
  public:
    /// The array is not copied; null entries are skipped.
    constexpr explicit Or(std::span<Condition* const> conditions)
        : conditions_(conditions.data()), count_(static_cast<std::int32_t>(conditions.size())) {}

    bool evaluate() override;

  private:
    Condition* const* conditions_;
    std::int32_t count_;
};

}  // namespace Engine
