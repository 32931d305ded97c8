#include "embedded-gui-engine/fancyborder.h"

#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/painter.h"

namespace Engine {

void FancyBorder::draw(Painter& painter, Rect rect) {
    if (image_ == nullptr) return;
    if (!checked_) checkImage();
    const Painter::Style style = painter.style();
    painter.setForeground(color_);
    painter.drawImageNine(*image_, rect);
    painter.applyStyle(style);
}

void FancyBorder::checkImage() {
    checked_ = true;
    if (image_ == nullptr || (image_->width % 3 == 0 && image_->height % 3 == 0)) return;
    engineLog(0, __FILE_NAME__, __LINE__, "Fancy border image width (%i) and/or height (%i) are not a multiple of 3.",
              static_cast<int>(image_->width), static_cast<int>(image_->height));
}

}  // namespace Engine
