#include "apps/gui/main/joystickevents.h"

#include "apps/common/log/log.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/trace.h"
#include "model/catalogue/events.h"

namespace {

Engine::EventId eventOf(Joystick::Direction direction) {
    switch (direction) {
        case Joystick::Up: return Model::Event_JoystickUp;
        case Joystick::Down: return Model::Event_JoystickDown;
        case Joystick::Left: return Model::Event_JoystickLeft;
        default: return Model::Event_JoystickRight;
    }
}

}  // namespace

void JoystickEvents::joystickPressed(Joystick::Direction direction, bool first) {
    const Engine::EventId event = eventOf(direction);
    if (first) TERN_LOG(Log::LogAll, "USER: Pressed %s", Engine::Trace::instance().eventName(event));
    manager_.postEvent(event);
}

void JoystickEvents::joystickReleased(Joystick::Direction direction, int events) {
    TERN_LOG(Log::LogAll, "USER: Released %s, total %i events", Engine::Trace::instance().eventName(eventOf(direction)),
             events);
}
