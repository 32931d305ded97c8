#pragma once

#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

class SingleEventMatcher : public EventMatcher {
  public:
    constexpr explicit SingleEventMatcher(EventId eventId) : eventId_(eventId) {}
    bool matches(EventId eventId) const override { return eventId == eventId_; }

  private:
    EventId eventId_;
};

}  // namespace Engine
