#pragma once

#include "unit/server/module.h"

namespace Unit {

/// The supply: a battery that runs down and is charged, external power, and switching off.
class Power final : public Module {
  public:
    explicit Power(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void show();

    Number state_, percent_, status_;
    Real temperature_, voltage_, chargeVoltage_, current_, batteryRail_, bus_, intermediate_;
    Flag off_;
    double charge_ = 80;  ///< percent
    bool external_ = false;
};

}  // namespace Unit
