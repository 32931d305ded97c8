#include "embedded-gui-engine/scalecontainerelement.h"

#include "embedded-gui-engine/scalecontainer.h"
#include "scaletruncate.h"

namespace Engine {

void ScaleContainerElement::setEnabled(bool enabled) {
    repaintIfChanged(enabled_, enabled);
}

void ScaleContainerElement::repaint() {
    container_->invalidateAll(false);
}

void ScaleContainerElement::paintMoved(Painter& painter, Widget& widget, std::int32_t down) {
    const std::int16_t home = widget.y();
    widget.setY(toCoordinate(std::int64_t{home} + down));
    widget.paint(painter);
    widget.setY(home);
}

}  // namespace Engine
