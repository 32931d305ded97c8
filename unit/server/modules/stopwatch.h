#pragma once

#include "unit/server/module.h"

namespace Unit {

/// The stopwatch and the countdown: start, stop, reset, the alert at the end, and running with the camera.
class Stopwatch final : public Module {
  public:
    explicit Stopwatch(Store& values);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    bool countsDown() const;
    std::int32_t startValue() const;
    void reset();
    void followCamera();
    void alert(double seconds);

    Flag start_, stop_, reset_, active_, alert_, audio_, vibrate_, flash_, syncToRec_, resetOnRec_;
    Number current_, function_, minutes_, secondsSet_, beeps_, vibrations_, camState_;
    double elapsed_ = 0;
    double alerting_ = 0;
    bool recording_ = false;
};

}  // namespace Unit
