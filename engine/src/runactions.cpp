#include "embedded-gui-engine/runactions.h"

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/trace.h"

namespace Engine {

bool runAction(Action* action, bool* result) {
    if (action == nullptr || !action->isEnabled()) return false;
    Trace::instance().action("execute", *action);
    const bool answer = action->execute();
    if (result != nullptr) *result = answer;
    return true;
}

void runActions(std::span<Action* const> actions) {
    for (Action* action : actions) runAction(action);
}

}  // namespace Engine
