#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/changed.h"
#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

class Action;
class Reactionee;

/// What is done when an event matches. Plain data; `enabled` is driven by modifiers.
struct Reaction {
    Action* const* actions = nullptr;  ///< may hold null entries
    std::uint16_t count = 0;
    const EventMatcher* matcher = nullptr;  ///< null never matches
    bool enabled = true;
    const Reactionee* owner = nullptr;  ///< what it is attached to and must be enabled; may be null
    const char* name = nullptr;         ///< may be null

    constexpr Reaction(std::span<Action* const> list, const EventMatcher* eventMatcher,
                       const Reactionee* attachedTo = nullptr, const char* id = nullptr, bool isEnabled = true)
        : actions(list.data()),
          count(static_cast<std::uint16_t>(list.size())),
          matcher(eventMatcher),
          enabled(isEnabled),
          owner(attachedTo),
          name(id) {}

    void setEnabled(bool value) { changed(enabled, value); }
};

/// Runs the reaction's enabled actions.
void runReaction(const Reaction& reaction);

}  // namespace Engine
