#include "embedded-gui-engine/eventtrigger.h"

#include "embedded-gui-engine/condition.h"
#include "embedded-gui-engine/guimanager.h"

namespace Engine {

void EventTrigger::update(std::intptr_t, std::intptr_t) {
    const bool value = condition_ != nullptr && condition_->evaluate();
    // Stored before posting: whoever hears of the event may come back here.
    const bool fires = value && (everyUpdate_ || !lastValue_);
    lastValue_ = value;
    if (fires) GuiManager::instance().postEvent(eventId_);
}

}  // namespace Engine
