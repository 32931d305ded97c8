#include "embedded-gui-engine/actiongroup.h"

#include "embedded-gui-engine/runactions.h"

namespace Engine {

bool ActionGroup::execute() {
    if (!isEnabled()) return false;
    bool all = true;
    for (Action* action : std::span(actions_, count_)) {
        bool result = true;
        if (!runAction(action, &result)) continue;
        if ((flags_ & StopAfterFirst) != 0) break;
        all = all && result;
    }
    return all;
}

}  // namespace Engine
