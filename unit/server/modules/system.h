#pragma once

#include <functional>

#include "unit/server/module.h"

namespace Unit {

/// What the unit is (names, versions, hardware), the settings that only the product reads, and the factory reset.
/// Sound, vibration and the knob's light are taken over as requests; there is nothing to hear or feel.
class System final : public Module {
  public:
    System(Store& values, std::function<void()> factoryReset);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void give(std::span<const std::pair<const char*, const char*>> values);
    void showKnobLight();

    std::function<void()> factoryReset_;
    Flag reset_, resetFinished_, sound_, vibration_;
    Real soundDuration_, vibrationDuration_;
    Number knobColor_, knobBrightness_, white_, red_, green_, blue_;
    Real magnification_;
    double soundLeft_ = 0, vibrationLeft_ = 0;
};

}  // namespace Unit
