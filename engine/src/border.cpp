#include "embedded-gui-engine/border.h"

#include "embedded-gui-engine/widget.h"

namespace Engine {

void Border::setColor(Color color) {
    if (changed(color_, color) && owner_ != nullptr) owner_->invalidateAll(false);
}

}  // namespace Engine
