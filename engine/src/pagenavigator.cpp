#include "embedded-gui-engine/pagenavigator.h"

#include <algorithm>
#include <cstdlib>

#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/page.h"

namespace Engine {
namespace {

using Direction = PageNavigator::Direction;

constexpr int OpenThreshold = 25;  ///< pixels to drag, and the path across that forbids it
constexpr int SwipeStart = 10;     ///< pixels of the offset with which a programmed slide begins

Direction opposite(Direction direction) {
    switch (direction) {
        case Direction::NorthOf: return Direction::SouthOf;
        case Direction::EastOf: return Direction::WestOf;
        case Direction::SouthOf: return Direction::NorthOf;
        case Direction::WestOf: return Direction::EastOf;
        default: return Direction::Unrelated;
    }
}

int signOf(int value) {
    return (value > 0) - (value < 0);
}

/// Which way the pages move while a link in this direction opens.
Point openingSense(Direction direction) {
    switch (direction) {
        case Direction::NorthOf: return {0, 1};
        case Direction::EastOf: return {-1, 0};
        case Direction::SouthOf: return {0, -1};
        case Direction::WestOf: return {1, 0};
        default: return {0, 0};
    }
}

/// A logical shift as a shift of the physical surface.
Point rotated(Point shift, std::uint32_t rotationIndex) {
    switch (rotationIndex) {
        case 1: return {shift.y, -shift.x};
        case 2: return {-shift.x, -shift.y};
        case 3: return {-shift.y, shift.x};
        default: return shift;
    }
}

int clampTo(int value, int sense, int size) {
    return sense > 0 ? std::clamp(value, 0, size) : sense < 0 ? std::clamp(value, -size, 0) : 0;
}

int settleSign(int step, int offset, int size) {
    if (step != 0) return signOf(step);
    return std::abs(offset) <= size / 2 ? -signOf(offset) : signOf(offset);
}

}  // namespace

// Dragging.

bool PageNavigator::handleTouch(const TouchEvent& event) {
    if (event.phase == TouchEvent::Phase::Move) drag();
    if (event.phase == TouchEvent::Phase::Up) release();
    return direction_ != Direction::Unrelated;
}

void PageNavigator::drag() {
    const Gesture& gesture = GuiManager::instance().gesture();
    const int dx = gesture.last.x - gesture.start.x;
    const int dy = gesture.last.y - gesture.start.y;
    if (link_ != nullptr)
        setOffset(dx, dy);
    else if (std::abs(dx) > OpenThreshold && gesture.path.y < OpenThreshold)
        openLink(dx > 0 ? Direction::WestOf : Direction::EastOf);
    else if (std::abs(dy) > OpenThreshold && gesture.path.x < OpenThreshold)
        openLink(dy > 0 ? Direction::NorthOf : Direction::SouthOf);
}

void PageNavigator::release() {
    if (offsetX_ != 0 || offsetY_ != 0)
        startAnimation();
    else
        reset();
}

bool PageNavigator::openLink(Direction direction) {
    GuiManager& manager = GuiManager::instance();
    Page* active = manager.activePage();
    for (const Link* link : std::span(links_, linkCount_)) {
        if (link == nullptr) continue;
        const bool forward = link->pageA == active && link->direction == direction;
        if (!forward && (link->pageB != active || link->direction != opposite(direction))) continue;
        Page* other = forward ? link->pageB : link->pageA;
        direction_ = other != nullptr ? direction : Direction::Unrelated;
        if (other == nullptr) return false;
        link_ = link;
        manager.setSecondPage(other);
        manager.setCompositor(this);
        return true;
    }
    return false;
}

void PageNavigator::setOffset(int x, int y) {
    if (direction_ == Direction::Unrelated) return reset();
    const Point sense = openingSense(direction_);
    const auto newX = static_cast<std::int16_t>(clampTo(x, sense.x, width_));
    const auto newY = static_cast<std::int16_t>(clampTo(y, sense.y, height_));
    if (offsetX_ == 0 && offsetY_ == 0 && newX == 0 && newY == 0) return reset();
    stepX_ = static_cast<std::int16_t>(newX - offsetX_);
    stepY_ = static_cast<std::int16_t>(newY - offsetY_);
    offsetX_ = newX;
    offsetY_ = newY;
}

void PageNavigator::reset() {
    link_ = nullptr;
    direction_ = Direction::Unrelated;
    settleX_ = settleY_ = offsetX_ = offsetY_ = stepX_ = stepY_ = 0;
    animating_ = false;
    GuiManager& manager = GuiManager::instance();
    if (manager.compositor() != this) return;
    manager.setSecondPage(nullptr);
    manager.setCompositor(nullptr);
}

bool PageNavigator::swipeTo(Direction direction) {
    if (!openLink(direction)) return false;
    const Point sense = openingSense(direction);
    setOffset(sense.x * SwipeStart, sense.y * SwipeStart);
    if (offsetX_ != 0 || offsetY_ != 0) startAnimation();
    return true;
}

// Settling.

bool PageNavigator::movesAlongX() const {
    return direction_ == Direction::EastOf || direction_ == Direction::WestOf;
}

bool PageNavigator::settlesAway() const {
    const Point sense = openingSense(direction_);
    return settleX_ * sense.x + settleY_ * sense.y > 0;
}

void PageNavigator::startAnimation() {
    animationStart_ = GuiManager::nowMillis();
    animating_ = true;
    settleX_ = static_cast<std::int16_t>(settleSign(stepX_, offsetX_, width_));
    settleY_ = static_cast<std::int16_t>(settleSign(stepY_, offsetY_, height_));
    const int size = movesAlongX() ? width_ : height_;
    const int offset = std::abs(movesAlongX() ? offsetX_ : offsetY_);
    if (offset == 0 || size == 0) return;
    // The animation goes on from where the pages are, as if it had begun at its own end of the way.
    const int done = settlesAway() ? offset : size - offset;
    animationStart_ -= static_cast<std::uint32_t>(duration_ * done / size);
}

void PageNavigator::animate() {
    const auto elapsed = static_cast<std::int64_t>(GuiManager::nowMillis() - animationStart_);
    const int size = movesAlongX() ? width_ : height_;
    const std::int64_t time = std::min<std::int64_t>(elapsed, duration_);
    const std::int64_t shown = settlesAway() ? time : duration_ - time;
    const int way = duration_ > 0 ? static_cast<int>(size * shown / duration_) : settlesAway() ? size : 0;
    const Point sense = openingSense(direction_);
    const Point before = offset();
    setOffset(sense.x * way, sense.y * way);
    // Two frames inside one millisecond do not move either: only standing still at an end is the end.
    const int now = std::abs(offsetX_) + std::abs(offsetY_);
    if (offset() == before && (now == 0 || now == size)) finish();
}

void PageNavigator::finish() {
    GuiManager& manager = GuiManager::instance();
    if (offsetX_ != 0 || offsetY_ != 0) manager.setActivePage(manager.secondPage());
    reset();
}

// Compositing.

PageNavigator::Mode PageNavigator::modeOf(bool ofActivePage) const {
    const bool activeIsA = link_->pageA == GuiManager::instance().activePage();
    return activeIsA == ofActivePage ? link_->modeA : link_->modeB;
}

void PageNavigator::prepare(Point& firstOffset, Point& secondOffset, bool& firstGoesOnTop,
                            std::uint32_t rotationIndex) {
    firstOffset = secondOffset = {x_, y_};
    firstGoesOnTop = true;
    if (link_ == nullptr) return;
    if (modeOf(true) == Mode::Moves)
        firstOffset = offset();
    else
        firstGoesOnTop = false;
    if (modeOf(false) == Mode::Moves) placeSecond(secondOffset);
    firstOffset = rotated(firstOffset, rotationIndex);
    secondOffset = rotated(secondOffset, rotationIndex);
    if (animating_) animate();
}

void PageNavigator::placeSecond(Point& point) const {
    switch (direction_) {
        case Direction::NorthOf: point.y = offsetY_ - height_; break;
        case Direction::EastOf: point.x = width_ + offsetX_; break;
        case Direction::SouthOf: point.y = height_ + offsetY_; break;
        case Direction::WestOf: point.x = offsetX_ - width_; break;
        default: break;
    }
}

}  // namespace Engine
