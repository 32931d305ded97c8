#pragma once

// All actions on variables, events and widgets.
#include "embedded-gui-engine/fireevent.h"
#include "embedded-gui-engine/varincrement.h"
#include "embedded-gui-engine/varnegate.h"
#include "embedded-gui-engine/varsettovalue.h"
#include "embedded-gui-engine/varsettovariable.h"
#include "embedded-gui-engine/widgetsetfocus.h"
