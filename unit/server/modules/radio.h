#pragma once

#include <vector>

#include "unit/server/module.h"

namespace Unit {

/// The radio module and the motor controller at its other end: switching on, searching, the link and its quality,
/// channel and region by module, and the scan of the band.
class Radio final : public Module {
  public:
    explicit Radio(Store& values);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    bool usable() const;
    void enter(std::int32_t state);
    void showLink();
    void scan(double seconds);
    std::size_t moduleRow() const;

    Flag power_, boost_, scanRequest_, modemConnected_;
    Number state_, channel_, region_, quality_, rssi_, modem_, client_;
    Text version_, address_, controllerAddress_;
    Mask regions_;
    Column moduleChannel_, moduleRegion_;
    std::vector<Real> results_;
    double elapsed_ = 0;
    double scanned_ = 0;  ///< seconds of this scan
    int linkQuality_ = 4;
    bool controller_ = true;
};

}  // namespace Unit
