#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/changed.h"
#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/reactionee.h"

namespace Engine {

class Action;

struct TimerParams {
    int interval = 0;  ///< milliseconds
    int repeat = 0;    ///< 0 fires once and runs no finish actions, negative for ever, else the number of firings
    const EventMatcher* startMatcher = nullptr;
    const EventMatcher* stopMatcher = nullptr;
    bool enabled = true;
    std::span<Action* const> tickActions = {};
    std::span<Action* const> finishActions = {};
    const char* name = nullptr;
};

/// Started and stopped by events, advanced once a frame. Overshoot is not carried: each round begins with the full
/// interval, so a timer falls behind by at most one frame each time.
class Timer : public Reactionee {
  public:
    constexpr explicit Timer(const TimerParams& params)
        : interval_(params.interval),
          repeat_(params.repeat),
          startMatcher_(params.startMatcher),
          stopMatcher_(params.stopMatcher),
          enabled_(params.enabled),
          tickActions_(params.tickActions.data()),
          finishActions_(params.finishActions.data()),
          tickActionCount_(static_cast<std::uint16_t>(params.tickActions.size())),
          finishActionCount_(static_cast<std::uint16_t>(params.finishActions.size())),
          name_(params.name) {}

    bool isEnabled() const override { return enabled_; }
    const char* objectName() const override { return name_ != nullptr ? name_ : "Timer"; }

    void setEnabled(bool enabled) { changed(enabled_, enabled); }
    bool isStartedBy(EventId eventId) const { return startMatcher_ != nullptr && startMatcher_->matches(eventId); }
    bool isStoppedBy(EventId eventId) const { return stopMatcher_ != nullptr && stopMatcher_->matches(eventId); }

    void start();
    void stop() { remaining_ = 0; }
    void advance(int elapsedMs);
    /// Milliseconds; 0 is stopped.
    int remaining() const { return remaining_; }

  private:
    void endRound();

    int interval_;
    int repeat_;
    const EventMatcher* startMatcher_;
    const EventMatcher* stopMatcher_;
    bool enabled_;
    Action* const* tickActions_;
    Action* const* finishActions_;
    std::uint16_t tickActionCount_;
    std::uint16_t finishActionCount_;
    const char* name_;
    int remaining_ = 0;
    int repeatsLeft_ = 0;
};

}  // namespace Engine
