#pragma once

#include "embedded-gui-engine/action.h"

namespace Engine {

/// Base of the actions that do something to one object of the model. The target must not be null when the action
/// runs.
template <typename Target>
class TargetAction : public Action {
  protected:
    constexpr explicit TargetAction(Target* target, const char* name = nullptr, std::uint32_t flags = Enabled)
        : Action(name, flags), target_(target) {}
    ~TargetAction() = default;

    Target* target_;
};

}  // namespace Engine
