#pragma once

#include "apps/gui/main/joystick.h"

namespace Engine {
class GuiManager;
}

/// Posts what the joystick does as events of the model, and logs the first and the last of a run.
class JoystickEvents final : public Joystick::Listener {
  public:
    /// `manager` outlives this.
    explicit JoystickEvents(Engine::GuiManager& manager) : manager_(manager) {}

    void joystickPressed(Joystick::Direction direction, bool first) override;
    void joystickReleased(Joystick::Direction direction, int events) override;

  private:
    Engine::GuiManager& manager_;
};
