#include "embedded-gui-engine/scalecontainer.h"

#include <cmath>

#include "embedded-gui-engine/scalecontainerelement.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "scaletruncate.h"

namespace Engine {
namespace {

void tell(VariableBase<float>* variable, float fraction) {
    if (variable != nullptr && std::isfinite(fraction)) setVariableChecked(*variable, fraction);
}

/// The difference of two axis positions, which need not fit into 32 bits.
float axisDistance(std::int32_t from, std::int32_t to) {
    return static_cast<float>(std::int64_t{to} - from);
}

}  // namespace

void ScaleContainer::setPosition(float fraction) {
    if (!changed(position_, fraction)) return;
    updateOffset();
    invalidateAll(false);
}

void ScaleContainer::setMagnification(float magnification) {
    if (!changed(magnification_, magnification)) return;
    updateOffset();
    invalidateAll(false);
}

ScaleRow ScaleContainer::row(unsigned int index) const {
    return table_ != nullptr ? ScaleRow::read(*table_, index) : ScaleRow{};
}

// Mapping.

std::int32_t ScaleContainer::contentTop() const {
    return toLocal({content_.x, content_.y}).y;
}

void ScaleContainer::updateOffset() {
    const float fraction = reversed_ ? 1.0F - position_ : position_;
    const auto height = static_cast<float>(content_.height);
    const auto top = static_cast<float>(contentTop());
    if (follow_ == Follow::Centred) {
        const auto half = static_cast<float>(content_.height / 2);
        offset_ = truncated(top + half - fraction * height * magnification_ + 0.5F);
    } else {
        offset_ = truncated(top - (height * magnification_ - height) * fraction + 0.5F);
    }
}

std::int32_t ScaleContainer::pixelOfFraction(float fraction) const {
    const float along = reversed_ ? 1.0F - fraction : fraction;
    const float pixel = static_cast<float>(offset_) + length() * along + 0.5F;
    return std::isnan(pixel) ? Nowhere : truncated(pixel);
}

std::int32_t ScaleContainer::pixelOfAxis(std::int32_t axisPosition) const {
    const auto [first, last] = axis();
    if (first == last) return 0;
    return pixelOfFraction(axisDistance(first, axisPosition) / axisDistance(first, last));
}

float ScaleContainer::fractionOfPixels(std::int32_t pixels) const {
    return static_cast<float>(pixels) / length();
}

std::int32_t ScaleContainer::axisOfFraction(float fraction) const {
    const auto [first, last] = axis();
    return truncated(static_cast<float>(first) + axisDistance(first, last) * fraction + 0.5F);
}

/// The count may shrink before the last row is read: then its place reads as 0, as of any row without a cell.
ScaleContainer::Axis ScaleContainer::axis() const {
    const unsigned int count = rowCount();
    if (count == 0) return {};
    return {ScaleRow::axisPositionOf(*table_, 0), ScaleRow::axisPositionOf(*table_, count - 1)};
}

// Drawing.

void ScaleContainer::draw(Painter& painter, Rect rect) {
    content_ = rect;
    contentRect(painter, content_);
    updateOffset();
    if (table_ == nullptr || elements_ == nullptr) return;
    for (ScaleContainerElement* element : elements())
        if (element != nullptr && element->isEnabled()) element->draw(painter, content_);
    tellEdges();
}

void ScaleContainer::tellEdges() const {
    const std::int64_t top = std::int64_t{contentTop()} - offset_;
    tell(visibleStart_, static_cast<float>(top) / length());
    tell(visibleEnd_, static_cast<float>(top + content_.height) / length());
}

// The table.

void ScaleContainer::tableChanged() {
    if (table_ == nullptr || elements_ == nullptr) return;
    for (ScaleContainerElement* element : elements())
        if (element != nullptr) element->tableChanged();
    invalidateAll(false);
}

void ScaleContainer::update(std::intptr_t /*arg1*/, std::intptr_t /*arg2*/) {
    tableChanged();
}

}  // namespace Engine
