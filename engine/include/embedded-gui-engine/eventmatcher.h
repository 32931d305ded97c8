#pragma once

namespace Engine {

/// Event ids below 128 are the engine's own (system events), from 128 up the application's (user events).
using EventId = unsigned int;

class EventMatcher {
  public:
    /// Depends on the event alone and never changes: whoever asks may remember the answer.
    virtual bool matches(EventId eventId) const = 0;

  protected:
    constexpr EventMatcher() = default;
    ~EventMatcher() = default;
};

}  // namespace Engine
