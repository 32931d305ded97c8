#include "embedded-gui-engine/userbutton.h"

#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/boolvariable.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "embedded-gui-engine/useraction.h"

namespace Engine {

void UserButton::update(std::intptr_t, std::intptr_t) {
    const bool canLookUp = container_ != nullptr && indexProvider_ != nullptr;
    const UserAction* assigned = canLookUp ? container_->userAction(indexProvider_->value()) : nullptr;
    if (assigned != current_) {
        // Stored between the two lists: the deselect actions still see the old function.
        if (current_ != nullptr) current_->deselect();
        current_ = assigned;
        if (current_ != nullptr) current_->select();
    }
    syncActive();
}

void UserButton::syncActive() {
    if (!enabled_ || activeVariable_ == nullptr) return;
    const bool wanted = current_ != nullptr && current_->activeValue();
    if (activeVariable_->value() != wanted) setVariableChecked(*activeVariable_, wanted);
}

bool UserButton::onEvent(EventId eventId) {
    if (!enabled_ || current_ == nullptr) return false;
    if (pressMatcher_ != nullptr && pressMatcher_->matches(eventId)) {
        current_->press();
        return true;
    }
    if (releaseMatcher_ == nullptr || !releaseMatcher_->matches(eventId)) return false;
    current_->release();
    return true;
}

}  // namespace Engine
