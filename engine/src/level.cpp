#include "embedded-gui-engine/level.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Engine {

namespace {

std::int16_t narrow(int value) {
    return static_cast<std::int16_t>(value);
}

/// Truncates towards zero into the range of coordinates; 0 for what is no number.
int truncated(float value) {
    constexpr float limit = std::numeric_limits<std::int16_t>::max();
    return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -limit, limit));
}

}  // namespace

void Level::setValue(float value) {
    store(value, minimum_, maximum_);
}

void Level::setMinimum(float minimum) {
    store(value_, minimum, maximum_);
}

void Level::setMaximum(float maximum) {
    store(value_, minimum_, maximum);
}

void Level::store(float value, float minimum, float maximum) {
    if (value < minimum) value = minimum;
    if (value > maximum) value = maximum;
    const bool minimumMoved = changed(minimum_, minimum);
    const bool maximumMoved = changed(maximum_, maximum);
    if (changed(value_, value) || minimumMoved || maximumMoved) invalidateAll(false);
}

/// The value itself is stepped, not its distance from the minimum.
float Level::shownValue() const {
    if (steps_ == 0.0F) return value_;
    const float step = (maximum_ - minimum_) / steps_;
    return step * std::floor(value_ / step);
}

/// The part of `size` pixels that the value takes.
int Level::scaled(int size) const {
    return truncated(static_cast<float>(size) * (shownValue() - minimum_) / (maximum_ - minimum_));
}

int Level::barRect(Rect& rect) const {
    if (maximum_ == minimum_) return 0;
    std::int16_t& start = isHorizontal() ? rect.x : rect.y;
    std::int16_t& size = isHorizontal() ? rect.width : rect.height;
    const int oldSize = size;
    size = narrow(scaled(oldSize));
    if (!growsFromFarEdge()) return 0;
    const int hidden = oldSize - size;
    start = narrow(start + hidden);
    return hidden;
}

void Level::pointerRect(Rect& rect) const {
    if (maximum_ == minimum_) return;
    std::int16_t& start = isHorizontal() ? rect.x : rect.y;
    std::int16_t& size = isHorizontal() ? rect.width : rect.height;
    const int room = size - pointerThickness_;
    const int way = scaled(room);
    start = narrow(start + (growsFromFarEdge() ? room - way : way));
    size = narrow(pointerThickness_);
}

Rect Level::imagePlace(Painter& painter, Rect content) const {
    Rect place{0, 0, narrow(static_cast<int>(image_->width)), narrow(static_cast<int>(image_->height))};
    painter.alignRect(place, content);
    return place;
}

void Level::draw(Painter& painter, Rect rect) {
    contentRect(painter, rect);
    if (pointerMode_ == Mode::Pointer) {
        drawPointer(painter, rect);
    } else {
        drawBar(painter, rect);
    }
}

void Level::drawPointer(Painter& painter, Rect content) const {
    Rect pointer = content;
    pointerRect(pointer);
    if (image_ == nullptr) {
        painter.setBackground(painter.foreground());
        painter.fill(pointer);
        return;
    }
    const Rect place = imagePlace(painter, content);
    if (isHorizontal()) {
        pointer.y = place.y;
    } else {
        pointer.x = place.x;
    }
    painter.drawImage(*image_, 0, 0, pointer);
}

void Level::drawBar(Painter& painter, Rect content) const {
    if (image_ == nullptr) {
        barRect(content);
        painter.setBackground(painter.foreground());
        painter.fill(content);
        return;
    }
    Rect place = imagePlace(painter, content);
    const int hidden = barRect(place);
    painter.drawImage(*image_, isHorizontal() ? hidden : 0, isHorizontal() ? 0 : hidden, place);
}

}  // namespace Engine
