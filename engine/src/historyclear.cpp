#include "embedded-gui-engine/historyclear.h"

#include "embedded-gui-engine/guimanager.h"

namespace Engine {

bool HistoryClear::execute() {
    GuiManager::instance().clearHistory();
    return true;
}

}  // namespace Engine
