#include "embedded-gui-engine/objectindicator.h"

#include "embedded-gui-engine/scalecontainer.h"
#include "embedded-gui-engine/tablesource.h"
#include "scaletruncate.h"

namespace Engine {
namespace {

enum Column : unsigned int { Shown = 0, Across = 3, Along = 4 };

}  // namespace

void ObjectIndicator::draw(Painter& painter, Rect /*rect*/) {
    if (objects_ == nullptr || objectWidget_ == nullptr) return;
    for (unsigned int row = 0; row < objects_->rowCount() && isEnabled(); ++row)
        if (objects_->intAt(Shown, row) != 0) drawObject(painter, row);
}

void ObjectIndicator::drawObject(Painter& painter, unsigned int row) {
    const std::int16_t home = objectWidget_->x();
    const float across = static_cast<float>(span_) * objects_->floatAt(Across, row) * 0.5F;
    objectWidget_->setX(toCoordinate(truncated(static_cast<float>(home) + across)));
    paintMoved(painter, *objectWidget_, container_->pixelOfFraction(objects_->floatAt(Along, row)));
    objectWidget_->setX(home);
}

void ObjectIndicator::update(std::intptr_t /*arg1*/, std::intptr_t /*arg2*/) {
    tableChanged();
}

}  // namespace Engine
