#pragma once

#include <initializer_list>

#include "apps/gui/main/axiscolumns.h"
#include "embedded-gui-engine/eventmatcher.h"
#include "model/catalogue/events.h"

namespace SoftButtons {

/// The press of a lower and an upper key, or an axis's own two events. The release of each is the next event.
struct Presses {
    Engine::EventId lower;
    Engine::EventId upper;
};

inline constexpr Presses focus = {Model::Event_ButtonSoftLFPressed, Model::Event_ButtonSoftUFPressed};
inline constexpr Presses iris = {Model::Event_ButtonSoftLIPressed, Model::Event_ButtonSoftUIPressed};
inline constexpr Presses zoom = {Model::Event_ButtonSoftLZPressed, Model::Event_ButtonSoftUZPressed};

/// The keys of a column; zeros for a place that is no column.
constexpr Presses keysOf(int column) {
    switch (column) {
        case AxisColumns::left: return {Model::Event_ButtonSoftLLPressed, Model::Event_ButtonSoftULPressed};
        case AxisColumns::middle: return {Model::Event_ButtonSoftLMPressed, Model::Event_ButtonSoftUMPressed};
        case AxisColumns::right: return {Model::Event_ButtonSoftLRPressed, Model::Event_ButtonSoftURPressed};
        default: return {0, 0};
    }
}

}  // namespace SoftButtons

/// Lets the soft keys below and above each axis's column post the axis's own events as well, so that the model speaks
/// of axes and never of places. `setExtraEvent` is told (key's event, axis's event), one by one. What an axis had in
/// another column is not taken back.
template <typename SetExtraEvent>
void mapSoftButtons(const AxisColumns& columns, SetExtraEvent&& setExtraEvent) {
    const auto map = [&](int column, SoftButtons::Presses axis) {
        const SoftButtons::Presses keys = SoftButtons::keysOf(column);
        if (keys.lower == 0) return;
        for (const Engine::EventId release : {0U, 1U}) setExtraEvent(keys.lower + release, axis.lower + release);
        for (const Engine::EventId release : {0U, 1U}) setExtraEvent(keys.upper + release, axis.upper + release);
    };
    map(columns.focus, SoftButtons::focus);
    map(columns.iris, SoftButtons::iris);
    map(columns.zoom, SoftButtons::zoom);
}
