#include "apps/gui/main/modelwidgets.h"

HomeWidgets ModelWidgets::home() {
    return {};
}

MessageWidgets ModelWidgets::message() {
    return {};
}

LensWidgets ModelWidgets::lens() {
    return {};
}
