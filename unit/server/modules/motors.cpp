#include "unit/server/modules/motors.h"

#include <algorithm>

namespace Unit {

namespace {

// As a scene names them, in the order of stageOf.
const std::vector<std::string> plugChoices = {"absent",      "new",   "not-calibrated", "skippable",
                                              "calibrating", "ready", "lost",           "error"};

std::size_t choiceOf(const Motor& motor) {
    switch (motor.stage()) {
        case Motor::Stage::Absent: return 0;
        case Motor::Stage::Starting: return motor.skippable() ? 3 : 1;
        case Motor::Stage::Waiting: return motor.skippable() ? 3 : 2;
        case Motor::Stage::Ready: return 5;
        case Motor::Stage::Lost: return 6;
        case Motor::Stage::Error: return 7;
        default: return 4;
    }
}

void choose(Motor& motor, std::size_t choice) {
    switch (choice) {
        case 1: motor.plugIn(false); break;
        case 2: motor.put(Motor::Stage::Waiting, false); break;
        case 3: motor.put(Motor::Stage::Waiting, true); break;
        case 4: motor.put(Motor::Stage::SeekingLower, false); break;
        case 5: motor.put(Motor::Stage::Ready, true); break;
        case 6: motor.put(Motor::Stage::Lost, true); break;
        case 7: motor.put(Motor::Stage::Error, false); break;
        default: motor.unplug(); break;
    }
}

}  // namespace

Motors::Motors(Store& values)
    : Module("motors", values),
      allStart_(values, "VarAllStartCalibSet"),
      stopLimits_(values, "VarStopSettingLimit"),
      autoSkip_(values, "VarAutoSkipCal"),
      newConnected_(values, "VarNewMotorConnected"),
      anyRequest_(values, "VarAnyMotorCalRequest"),
      anySkippable_(values, "VarAnyMotorCalSkippable"),
      allSkippable_(values, "VarAllMotorsCalSkippable"),
      anyActive_(values, "VarAnyMotorCalActive"),
      manualAxis_(values, "VarManualCalibrationAxis"),
      manualStep_(values, "VarManualCalibrationStep"),
      manualFirst_(values, "VarManualCalibrationFirstBnd"),
      manualSecond_(values, "VarManualCalibrationSecondBnd"),
      manualFinished_(values, "VarManualCalibrationFinished") {
    addMotor("Focus", "focus", "VarFocusTargetValue", "VarFocusActPosNorm");
    addMotor("Iris", "iris", "VarIrisTargetValue", "VarIrisActPosNorm");
    addMotor("Zoom", "zoom", "VarZoomTargetValue", "VarZoomActPosNorm");
    addMotor("AUX", "aux", "VarAuxTargetValue", "VarAUXActPosNorm");
    addMotor("Cinefade", "cinefade", "", "");
    for (const char* axis : {"Focus", "Iris", "Zoom"})
        setLimit_.emplace_back(values, std::string("VarSetMotorLimit") + axis);
    hear(allStart_, [this] { calibrateAll(); });
    hear(stopLimits_, [this] { stopSettingLimits(); });
    hear(manualAxis_, [this] { manualAxisChanged(); });
    hear(manualFirst_, [this] { manualBound(true); });
    hear(manualSecond_, [this] { manualBound(false); });
}

void Motors::addMotor(const std::string& axis, const char* setting, const std::string& target,
                      const std::string& position) {
    const auto real = [this](const std::string& name) {
        return name.empty() ? std::nullopt : std::optional<Real>(std::in_place, store, name);
    };
    const bool cinefade = axis == "Cinefade";
    const int number = cinefade ? 6 : static_cast<int>(motors_.size()) + 1;
    motors_.push_back(std::make_unique<Motor>(store, axis, number, real(target), real(position)));
    Motor& motor = *motors_.back();
    listenTo(motor);
    settingChoice(
        setting, plugChoices, [&motor](std::size_t choice) { choose(motor, choice); },
        [&motor] { return choiceOf(motor); });
}

void Motors::listenTo(Motor& motor) {
    hear(motor.startRequest, [&motor] {
        if (motor.startRequest) motor.startCalibration();
    });
    hear(motor.skipRequest, [&motor] { motor.skip(); });
    hear(motor.state, [&motor] { motor.reread(); });
    hear(motor.torqueRequest, [&motor] { motor.takeTorque(); });
    hear(motor.gearRequest, [&motor] { motor.takeGear(); });
    hear(motor.gearAutoRequest, [&motor] { motor.takeGear(); });
    hear(motor.sideRequest, [&motor] { motor.takeSide(); });
    hear(motor.connectRequest, [&motor] { motor.connectNew(); });
}

void Motors::factory() {
    autoSkip_.set(false);
    for (const auto& motor : motors_) motor->factory();
}

void Motors::powerUp() {
    manual_ = nullptr;
    for (const auto& motor : motors_) motor->powerUp();
    sumUp();
}

void Motors::calibrateAll() {
    if (!allStart_.take()) return;
    for (const auto& motor : motors_)
        if (motor->stage() != Motor::Stage::Absent) motor->startCalibration();
}

void Motors::stopSettingLimits() {
    if (!stopLimits_.get()) return;
    for (const Flag& limit : setLimit_) limit.set(false);
    stopLimits_.set(false);
}

void Motors::manualAxisChanged() {
    const auto axis = static_cast<std::size_t>(manualAxis_.within(0, 4));
    if (manual_ != nullptr) manual_->endManual(manualFinished_);
    manual_ = axis == 0 ? nullptr : motors_[axis - 1].get();
    if (manual_ == nullptr) return;
    manual_->beginManual();
    manualStep_.set(0);
    manualFinished_.set(false);
}

void Motors::manualBound(bool first) {
    const Flag& request = first ? manualFirst_ : manualSecond_;
    if (!request.take() || manual_ == nullptr) return;
    manual_->setManualBound(first);
    manualStep_.set(first ? 1 : 2);
    if (first) return;
    manual_->endManual(true);
    manualFinished_.set(true);
}

void Motors::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    for (const auto& motor : motors_) motor->tick(seconds, autoSkip_);
    for (std::size_t axis = 0; axis < setLimit_.size(); ++axis) motors_[axis]->learnLimit(setLimit_[axis]);
    sumUp();
}

void Motors::sumUp() {
    std::size_t requests = 0, skippable = 0, active = 0, fresh = 0;
    for (const auto& motor : motors_) {
        requests += motor->waits() ? 1 : 0;
        skippable += motor->waits() && motor->skippable() ? 1 : 0;
        active += motor->calibrating() ? 1 : 0;
        fresh += motor->stage() == Motor::Stage::Starting && !motor->skippable() ? 1 : 0;
    }
    anyRequest_.set(requests > 0);
    anySkippable_.set(skippable > 0);
    allSkippable_.set(skippable > 0 && skippable == requests);
    anyActive_.set(active > 0);
    newConnected_.set(fresh > 0);
}

}  // namespace Unit
