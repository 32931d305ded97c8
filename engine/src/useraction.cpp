#include "embedded-gui-engine/useraction.h"

#include "embedded-gui-engine/runactions.h"

namespace Engine {

void UserAction::press() const {
    if (enabled_) runActions({pressActions_, pressCount_});
}

void UserAction::release() const {
    if (enabled_) runActions({releaseActions_, releaseCount_});
}

void UserAction::select() const {
    if (enabled_) runActions({selectActions_, selectCount_});
}

void UserAction::deselect() const {
    if (enabled_) runActions({deselectActions_, deselectCount_});
}

}  // namespace Engine
