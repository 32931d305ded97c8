#include "apps/gui/main/scalemarks.h"

#include <algorithm>
#include <limits>

#include "embedded-gui-engine/widget.h"

namespace {

constexpr float pixelsPerMillimetre = 6;

std::int16_t coordinate(float value) {
    constexpr float lowest = std::numeric_limits<std::int16_t>::min();
    constexpr float highest = std::numeric_limits<std::int16_t>::max();
    if (!(value >= lowest)) return value < lowest ? std::numeric_limits<std::int16_t>::min() : std::int16_t{0};
    return static_cast<std::int16_t>(std::min(value, highest));
}

}  // namespace

std::int16_t ScaleMark::length(float percent, int frameWidth) {
    return coordinate(percent * static_cast<float>(frameWidth) * 0.01F);
}

std::int16_t ScaleMark::figureY(float percent, int frameHeight) {
    return coordinate((percent / 200 - 0.5F) * static_cast<float>(frameHeight));
}

std::int16_t ScaleMark::thickness(float millimetres) {
    return std::max<std::int16_t>(1, coordinate(millimetres * pixelsPerMillimetre));
}

std::int16_t ScaleMark::offset(float millimetres) {
    return coordinate(-(millimetres * pixelsPerMillimetre) * 0.5F);
}

void ScaleMarks::setLineLength(float percent) const {
    if (frame == nullptr) return;
    for (Engine::Widget* line : lines) line->setWidth(ScaleMark::length(percent, frame->width()));
}

void ScaleMarks::setLineThickness(float millimetres) const {
    for (Engine::Widget* line : lines) {
        line->setHeight(ScaleMark::thickness(millimetres));
        line->setY(ScaleMark::offset(millimetres));
    }
}

void ScaleMarks::setFigureX(float percent) const {
    if (frame == nullptr) return;
    for (Engine::Widget* figure : figures) figure->setX(ScaleMark::length(percent, frame->width()));
}

void ScaleMarks::setFigureY(float percent) const {
    if (frame == nullptr) return;
    for (Engine::Widget* figure : figures) figure->setY(ScaleMark::figureY(percent, frame->height()));
}
