#pragma once

#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/ringqueue.h"

namespace Engine {

class EventQueue : public RingQueue<EventId> {
  public:
    using RingQueue::RingQueue;
};

}  // namespace Engine
