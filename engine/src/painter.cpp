#include "embedded-gui-engine/painter.h"

#include <algorithm>

namespace Engine {

namespace {

/// A rectangle from sums that may not fit; one that was cut off lies outside every surface all the same.
Rect rectOf(int x, int y, int width, int height) {
    const auto narrow = [](int value) {
        return static_cast<std::int16_t>(std::clamp<int>(value, INT16_MIN, INT16_MAX));
    };
    return {narrow(x), narrow(y), narrow(width), narrow(height)};
}

}  // namespace

void Painter::pushClip(Rect rect, bool replace) {
    if (!replace && !clipStack_.empty()) rect = intersectRect(rect, clipStack_.back());
    clipStack_.push_back(rect);
    setClip(rect);
}

void Painter::popClip() {
    if (!clipStack_.empty()) clipStack_.pop_back();
    if (clipStack_.empty())
        resetClip();
    else
        setClip(clipStack_.back());
}

void Painter::resetClipStack() {
    clipStack_.clear();
    resetClip();
}

Painter::Style Painter::style() const {
    return {wrap_, horizontalAlign_, verticalAlign_, foreground_, background_, ellipsis_};
}

void Painter::applyStyle(const Style& style) {
    wrap_ = style.wrap;
    horizontalAlign_ = style.horizontalAlign;
    verticalAlign_ = style.verticalAlign;
    foreground_ = style.foreground;
    background_ = style.background;
    ellipsis_ = style.ellipsis;
    setColors(foreground_, background_);
}

void Painter::setForeground(Color color) {
    foreground_ = color;
    setColors(foreground_, background_);
}

void Painter::setBackground(Color color) {
    background_ = color;
    setColors(foreground_, background_);
}

void Painter::drawImageNine(const Image& image, Rect rect) {
    const int c = static_cast<int>(std::min<std::uint32_t>(image.width / 3, INT16_MAX));
    const int right = rect.x + rect.width - c;
    const int bottom = rect.y + rect.height - c;
    const int innerX = rect.x + c;
    const int innerY = rect.y + c;
    const int innerWidth = rect.width - 2 * c;
    const int innerHeight = rect.height - 2 * c;

    drawImage(image, 0, 0, rectOf(rect.x, rect.y, c, c));
    drawImage(image, 2 * c, 0, rectOf(right, rect.y, c, c));
    drawImage(image, 0, 2 * c, rectOf(rect.x, bottom, c, c));
    drawImage(image, 2 * c, 2 * c, rectOf(right, bottom, c, c));
    drawImageScaled(image, rectOf(c, 0, c, c), rectOf(innerX, rect.y, innerWidth, c));
    drawImageScaled(image, rectOf(c, 2 * c, c, c), rectOf(innerX, bottom, innerWidth, c));
    drawImageScaled(image, rectOf(0, c, c, c), rectOf(rect.x, innerY, c, innerHeight));
    drawImageScaled(image, rectOf(2 * c, c, c, c), rectOf(right, innerY, c, innerHeight));
    drawImageScaled(image, rectOf(c, c, c, c), rectOf(innerX, innerY, innerWidth, innerHeight));
}

}  // namespace Engine
