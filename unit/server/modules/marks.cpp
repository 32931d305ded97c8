#include "unit/server/modules/marks.h"

#include <algorithm>
#include <cmath>

namespace Unit {

namespace {

/// How near to a mark counts as on it, as a part of the whole travel.
constexpr float reach = 0.01F;

}  // namespace

Marks::Axis::Axis(Store& values, const std::string& axis, const std::string& clearName)
    : at(values, "Var" + axis + "TargetValue"),
      full(values, "VarLensMarker" + axis + "MaxReached"),
      near(values, "VarLensMarker" + axis + "NearMark"),
      add(values, "VarLensMarker" + axis + "AddValue"),
      clear(values, clearName),
      clearAll(values, "VarLensMarker" + axis + "ClearAllValue") {
    for (std::size_t i = 0; i < markCount; ++i) {
        marks.emplace_back(values, "VarLensMarker" + axis + "Value" + std::to_string(i));
        if (axis != "Zoom") absolute.emplace_back(values, "VarLensMarkerAbs" + axis + "Value" + std::to_string(i));
    }
}

void Marks::Axis::addHere(float shown) const {
    if (nearest() != nullptr) return;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (marks[i].get() >= 0) continue;
        marks[i].set(at.get());
        if (!absolute.empty()) absolute[i].set(shown);
        return;
    }
}

const Real* Marks::Axis::nearest() const {
    const Real* best = nullptr;
    float closest = reach;
    for (const Real& mark : marks) {
        const float distance = std::abs(mark.get() - at.get());
        if (mark.get() < 0 || distance > closest) continue;
        closest = distance;
        best = &mark;
    }
    return best;
}

void Marks::Axis::clearNear() const {
    if (const Real* mark = nearest()) mark->set(noMark);
}

void Marks::Axis::clearEvery() const {
    for (const Real& mark : marks) mark.set(noMark);
}

void Marks::Axis::tick() const {
    near.set(nearest() != nullptr);
    full.set(std::all_of(marks.begin(), marks.end(), [](const Real& mark) { return mark.get() >= 0; }));
}

Marks::Marks(Store& values)
    : Module("marks", values), actFocus_(values, "VarLensActFocus"), actIris_(values, "VarLensActIris") {
    axes_.emplace_back(values, "Focus", "VarFocusMarkerClearValue");
    axes_.emplace_back(values, "Iris", "VarLensMarkerIrisClearValue");
    axes_.emplace_back(values, "Zoom", "VarLensMarkerZoomClearValue");
    for (Axis& axis : axes_) listenTo(axis);
}

void Marks::listenTo(Axis& axis) {
    hear(axis.add, [this, &axis] {
        if (axis.add.take()) axis.addHere(shownAt(axis));
        axis.tick();
    });
    hear(axis.clear, [&axis] {
        if (axis.clear.take()) axis.clearNear();
        axis.tick();
    });
    hear(axis.clearAll, [&axis] {
        if (axis.clearAll.take()) axis.clearEvery();
        axis.tick();
    });
}

float Marks::shownAt(const Axis& axis) const {
    return &axis == &axes_[0] ? actFocus_.get() : static_cast<float>(actIris_.get()) / 100;
}

void Marks::factory() {
    for (const Axis& axis : axes_) axis.clearEvery();
}

void Marks::tick(std::int64_t) {
    for (const Axis& axis : axes_) axis.tick();
}

}  // namespace Unit
