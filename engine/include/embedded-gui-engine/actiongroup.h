#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/action.h"

namespace Engine {

/// Runs its enabled actions in order, or with the flag StopAfterFirst only the first enabled one.
class ActionGroup : public Action {
  public:
    /// The array may hold null entries and is not copied.
    constexpr explicit ActionGroup(std::span<Action* const> actions, const char* name = nullptr,
                                   std::uint32_t flags = Enabled)
        : Action(name, flags), actions_(actions.data()), count_(static_cast<std::uint16_t>(actions.size())) {}

    /// False when the group is disabled or an action answered false. In a StopAfterFirst group the action's answer
    /// does not count.
    bool execute() override;
    const char* name() const override { return nameOr("ActionGroup"); }

  private:
    Action* const* actions_;
    std::uint16_t count_;
};

}  // namespace Engine
