#pragma once

#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/observer.h"

namespace Engine {

class Condition;

/// Posts an event when a condition becomes true.
class EventTrigger : public Observer {
  public:
    enum class Fire : bool { OnRisingEdge = false, OnEveryTrueUpdate = true };

    /// A null condition never fires.
    constexpr EventTrigger(Condition* condition, EventId eventId, Fire fire = Fire::OnRisingEdge)
        : condition_(condition), eventId_(eventId), everyUpdate_(fire == Fire::OnEveryTrueUpdate) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    Condition* condition_;
    EventId eventId_;
    bool everyUpdate_;
    bool lastValue_ = false;
};

}  // namespace Engine
