#include "apps/gui/main/modelwidgets.h"

#include <algorithm>
#include <array>

#include "model.h"

namespace {

/// The model's list of widgets of one class as a list of widgets, which stays.
template <const auto& list>
std::span<Engine::Widget* const> widgetsOf() {
    static const auto widgets = [] {
        std::array<Engine::Widget*, std::size(list)> result;
        std::copy(std::begin(list), std::end(list), result.begin());
        return result;
    }();
    return widgets;
}

}  // namespace

HomeWidgets ModelWidgets::home() {
    HomeWidgets widgets;
    std::copy(std::begin(Model::homeRows), std::end(Model::homeRows), widgets.rows.begin());
    widgets.rowFrame = Model::homeRowFrame;
    for (std::size_t axis = 0; axis < widgets.axes.size(); ++axis) {
        widgets.axes[axis] = {Model::homeLower[axis], widgetsOf<Model::homeLowerSigns>().subspan(axis, 1)};
        widgets.softKeys[axis] = {Model::homeUpper[axis], {}};
    }
    return widgets;
}

MessageWidgets ModelWidgets::message() {
    MessageWidgets widgets = {
        .title = Model::messageTitle, .text = Model::messageText, .autoClose = Model::messageTimer};
    for (std::size_t i = 0; i < widgets.buttons.size(); ++i)
        widgets.buttons[i] = {Model::messageFields[i], Model::messageKeys[i], Model::messageActions[i]};
    return widgets;
}

LensWidgets ModelWidgets::lens() {
    LensWidgets widgets;
    widgets.internalMarkers = {widgetsOf<Model::focusMarks>(), widgetsOf<Model::irisMarks>(),
                               widgetsOf<Model::zoomMarks>()};
    widgets.externalMarkers = widgetsOf<Model::sensorMarks>();
    return widgets;
}
