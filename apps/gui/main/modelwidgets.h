#pragma once

#include "apps/gui/main/homelayout.h"
#include "apps/gui/main/notifyhandler.h"
#include "apps/gui/main/overlaymessagehandling.h"

/// The model's widgets that the shell moves, colours and fills by itself: the one place that knows their names.
namespace ModelWidgets {

HomeWidgets home();
MessageWidgets message();
LensWidgets lens();

}  // namespace ModelWidgets
