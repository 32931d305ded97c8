#include "embedded-gui-engine/reaction.h"

#include "embedded-gui-engine/runactions.h"
#include "embedded-gui-engine/trace.h"

namespace Engine {

void runReaction(const Reaction& reaction) {
    Trace::instance().reaction("execute", reaction);
    runActions({reaction.actions, reaction.count});
}

}  // namespace Engine
