#include "apps/gui/main/modelwidgets.h"

#include "model.h"

HomeWidgets ModelWidgets::home() {
    return {};
}

MessageWidgets ModelWidgets::message() {
    MessageWidgets widgets = {
        .title = Model::messageTitle, .text = Model::messageText, .autoClose = Model::messageTimer};
    for (std::size_t i = 0; i < widgets.buttons.size(); ++i)
        widgets.buttons[i] = {Model::messageFields[i], Model::messageKeys[i], Model::messageActions[i]};
    return widgets;
}

LensWidgets ModelWidgets::lens() {
    return {};
}
