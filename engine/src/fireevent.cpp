#include "embedded-gui-engine/fireevent.h"

#include "embedded-gui-engine/guimanager.h"

namespace Engine {

bool FireEvent::execute() {
    GuiManager::instance().postEvent(eventId_);
    return true;
}

}  // namespace Engine
