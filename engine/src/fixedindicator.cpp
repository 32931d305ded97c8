#include "embedded-gui-engine/fixedindicator.h"

#include "embedded-gui-engine/widget.h"

namespace Engine {

void FixedIndicator::draw(Painter& painter, Rect /*rect*/) {
    if (figure_ != nullptr) figure_->paint(painter);
}

}  // namespace Engine
