#pragma once

#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/ringqueue.h"

namespace Engine {

class ReactionQueue : public RingQueue<const Reaction*> {
  public:
    using RingQueue::RingQueue;
};

}  // namespace Engine
