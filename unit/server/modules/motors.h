#pragma once

#include <vector>

#include "unit/server/module.h"
#include "unit/server/modules/motor.h"

namespace Unit {

/// The lens motors: plugging, calibration alone or all together, skipping, limits, manual calibration, torque, gear.
class Motors final : public Module {
  public:
    explicit Motors(Store& values);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void addMotor(const std::string& axis, const char* setting, const std::string& target, const std::string& position);
    void listenTo(Motor& motor);
    void calibrateAll();
    void stopSettingLimits();
    void manualAxisChanged();
    void manualBound(bool first);
    void sumUp();

    std::vector<std::unique_ptr<Motor>> motors_;
    std::vector<Flag> setLimit_;  ///< of the first three motors
    Flag allStart_, stopLimits_, autoSkip_, newConnected_;
    Flag anyRequest_, anySkippable_, allSkippable_, anyActive_;
    Number manualAxis_, manualStep_;
    Flag manualFirst_, manualSecond_, manualFinished_;
    Motor* manual_ = nullptr;
};

}  // namespace Unit
