#pragma once

#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

/// A piece of code that fires inside the scan of an event.
class Hook {
  public:
    virtual void fire() = 0;
    /// Called each frame while the running time is below the limit.
    virtual void addElapsed(int elapsedMs) { runningTime_ += elapsedMs; }

    bool isFiredBy(EventId eventId) const { return matcher_ != nullptr && matcher_->matches(eventId); }
    /// `period` 0 means that time does not concern the hook.
    bool isRunning() const { return period_ != 0 && runningTime_ < limit_; }
    int runningTime() const { return runningTime_; }

  protected:
    constexpr explicit Hook(const EventMatcher* matcher, int period = 0, int limit = 0)
        : matcher_(matcher), period_(period), limit_(limit) {}
    ~Hook() = default;

    const EventMatcher* matcher_;  ///< null never fires
    int period_;                   ///< milliseconds
    int limit_;                    ///< milliseconds
    int runningTime_ = 0;          ///< milliseconds
};

}  // namespace Engine
