#include "unit/server/modules/power.h"

#include <algorithm>

#include "model/catalogue/enums.h"

namespace Unit {

namespace {

constexpr double lowPercent = 15, emptyPercent = 5;
constexpr double secondsPerPercent = 180, chargeSecondsPerPercent = 90;
constexpr double emptyVolts = 6.4, fullVolts = 8.4;

}  // namespace

Power::Power(Store& values)
    : Module("power", values),
      state_(values, "VarPowerState"),
      percent_(values, "VarBattPercent"),
      status_(values, "VarBattStatus"),
      temperature_(values, "VarBattTemperature"),
      voltage_(values, "VarBattVoltage"),
      chargeVoltage_(values, "VarBattChargeVoltage"),
      current_(values, "VarBattCurrent"),
      batteryRail_(values, "VarVoltageBattery"),
      bus_(values, "VarVoltageKordel"),
      intermediate_(values, "VarVoltageIntermediate"),
      off_(values, "VarSystemPowerOff") {
    settingNumber(
        "battery", 0, 100,
        [this](double percent) {
            charge_ = percent;
            show();
        },
        [this] { return charge_; });
    settingFlag(
        "external",
        [this](bool external) {
            external_ = external;
            show();
        },
        [this] { return external_; });
}

void Power::powerUp() {
    charge_ = 80;
    external_ = false;
    off_.set(false);
    show();
}

void Power::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    charge_ += external_ ? seconds / chargeSecondsPerPercent : -seconds / secondsPerPercent;
    charge_ = std::clamp(charge_, 0.0, 100.0);
    show();
}

void Power::show() {
    const auto state = [this] {
        if (off_) return Model::PowerState::ShuttingDown;
        if (external_) return Model::PowerState::External;
        if (charge_ < emptyPercent) return Model::PowerState::Empty;
        return charge_ < lowPercent ? Model::PowerState::Low : Model::PowerState::Normal;
    };
    const auto whole = static_cast<std::int32_t>(charge_);
    const auto volts = static_cast<float>(emptyVolts + (fullVolts - emptyVolts) * whole / 100);
    state_.set(state());
    percent_.set(whole);
    status_.set(external_ ? 1 : 0);
    temperature_.set(27);
    voltage_.set(volts);
    batteryRail_.set(volts);
    chargeVoltage_.set(external_ ? static_cast<float>(fullVolts) : 0);
    current_.set(external_ ? 0.8F : -0.45F);
    bus_.set(external_ ? 14.4F : 0);
    intermediate_.set(5);
}

}  // namespace Unit
