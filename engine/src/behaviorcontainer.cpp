#include "embedded-gui-engine/behaviorcontainer.h"

#include "embedded-gui-engine/userbutton.h"

namespace Engine {

void BehaviorContainer::setEnabled(bool enabled) {
    if (isEnabled() == enabled) return;
    enabled_ = enabled ? 1 : 0;
    for (UserButton* button : userButtons())
        if (button != nullptr) button->update();
}

bool BehaviorContainer::afterDispatch(EventId eventId) {
    bool handled = false;
    if (!isEnabled()) return handled;
    for (UserButton* button : userButtons())
        if (button != nullptr && button->onEvent(eventId)) handled = true;
    return handled;
}

void BehaviorContainer::tickUserButtons(int elapsedMs) {
    if (!isEnabled()) return;
    for (UserButton* button : userButtons())
        if (button != nullptr) button->update(elapsedMs);
}

UserAction* BehaviorContainer::userAction(int index) const {
    return isEnabled() && index >= 0 && index < userActionCount_ ? userActions_[index] : nullptr;
}

}  // namespace Engine
