#pragma once

#include "embedded-gui-engine/condition.h"

namespace Engine {

/// Always true: the last entry of a conditional value, its default.
class CondElse : public Condition {
  public:
    constexpr CondElse() = default;

    bool evaluate() override;
};

}  // namespace Engine
