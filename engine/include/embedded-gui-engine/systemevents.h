#pragma once

#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

/// The engine's own events.
enum SystemEvent : EventId {
    Event_PageEntered = 0,
    Event_PageExited = 1,
    Event_EditingStarted = 2,
    Event_EditingFinished = 3,
    Event_EngineStarted = 4,
    Event_TouchStart = 5,
    Event_TouchEnd = 6,
    Event_TouchTouched = 7,
    Event_TouchMoved = 8,
    Event_SelectionOnTouchChanged = 9,
    Event_GotSelection = 10,
    Event_SwipeLeft = 11,
    Event_SwipeRight = 12,
    Event_SwipeUp = 13,
    Event_SwipeDown = 14
};

constexpr EventId SystemEventCount = 15;
constexpr EventId FirstUserEvent = 128;

}  // namespace Engine
