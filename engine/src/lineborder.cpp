#include "embedded-gui-engine/lineborder.h"

#include "embedded-gui-engine/painter.h"

namespace Engine {

void LineBorder::draw(Painter& painter, Rect rect) {
    painter.fill(rect);
    const Color inside = painter.background();
    const auto line = static_cast<std::int16_t>(lineWidth_);
    const auto right = static_cast<std::int16_t>(rect.x + rect.width - line);
    const auto bottom = static_cast<std::int16_t>(rect.y + rect.height - line);
    painter.setBackground(color_);
    painter.fill({rect.x, rect.y, rect.width, line});
    painter.fill({rect.x, bottom, rect.width, line});
    painter.fill({rect.x, rect.y, line, rect.height});
    painter.fill({right, rect.y, line, rect.height});
    painter.setBackground(inside);
}

}  // namespace Engine
