#pragma once

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

/// Posts an event, which is dispatched after the present one.
class FireEvent : public Action {
  public:
    constexpr explicit FireEvent(EventId eventId, const char* name = nullptr, std::uint32_t flags = Enabled)
        : Action(name, flags), eventId_(eventId) {}

    /// Always true: posting has no answer.
    bool execute() override;
    const char* name() const override { return nameOr("FireEvent"); }
    void setEvent(EventId eventId) { eventId_ = eventId; }

  private:
    EventId eventId_;
};

}  // namespace Engine
