#pragma once

#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/observer.h"

namespace Engine {

class BehaviorContainer;
class BoolVariable;
class UserAction;
template <typename T>
class ValueProvider;

struct UserButtonParams {
    const EventMatcher* pressMatcher = nullptr;         ///< null never matches
    const EventMatcher* releaseMatcher = nullptr;       ///< null never matches
    const ValueProvider<int>* indexProvider = nullptr;  ///< which of the container's functions; null is none
    BoolVariable* activeVariable = nullptr;             ///< may be null
    const BehaviorContainer* container = nullptr;       ///< null is a container without functions
    bool enabled = true;
};

/// A button to which one of its container's functions is assigned by an index.
class UserButton : public Observer {
  public:
    constexpr explicit UserButton(const UserButtonParams& params)
        : pressMatcher_(params.pressMatcher),
          releaseMatcher_(params.releaseMatcher),
          indexProvider_(params.indexProvider),
          activeVariable_(params.activeVariable),
          container_(params.container),
          enabled_(params.enabled) {}

    /// Looks up the assigned function. A change runs the old one's deselect actions, then the new one's select
    /// actions. Always syncs the active variable. Cheap enough for every frame.
    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;
    /// Writes the assigned function's active value (false with none) to the active variable when it differs.
    virtual void syncActive();

    /// Runs the press or else the release actions when the event matches. Answers whether it matched.
    bool onEvent(EventId eventId);

    void setEnabled(bool enabled) { enabled_ = enabled; }
    bool isEnabled() const { return enabled_; }
    /// Null when no function is assigned.
    const UserAction* current() const { return current_; }

  private:
    const EventMatcher* pressMatcher_;
    const EventMatcher* releaseMatcher_;
    const ValueProvider<int>* indexProvider_;
    BoolVariable* activeVariable_;
    const BehaviorContainer* container_;
    bool enabled_;
    const UserAction* current_ = nullptr;
};

}  // namespace Engine
