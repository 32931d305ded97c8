#include "embedded-gui-engine/historygoback.h"

#include "embedded-gui-engine/guimanager.h"

namespace Engine {

bool HistoryGoBack::execute() {
    return GuiManager::instance().goBack();
}

}  // namespace Engine
