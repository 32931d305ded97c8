#include "embedded-gui-engine/navigateto.h"

#include "embedded-gui-engine/guimanager.h"

namespace Engine {

bool NavigateTo::execute() {
    GuiManager::instance().navigateTo(target_);
    return true;
}

}  // namespace Engine
