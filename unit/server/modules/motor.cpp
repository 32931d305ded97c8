#include "unit/server/modules/motor.h"

#include <algorithm>
#include <cmath>

#include "model/catalogue/enums.h"

namespace Unit {

namespace {

constexpr double startingTime = 1.0;
constexpr double seekingTime = 2.0;
constexpr double returningTime = 1.0;
constexpr double autoSkipTime = 0.5;
constexpr double fastest = 2.0;  ///< travels a second at the strongest torque
constexpr double smallestRange = 0.01;
constexpr int encoderLast = 65535;

constexpr std::int32_t skipIdle = static_cast<std::int32_t>(Model::SkipCalib::Wait);

std::int32_t encoder(double norm) {
    return static_cast<std::int32_t>(std::lround(norm * encoderLast));
}

std::string slot(const std::string& axis, const char* member) {
    return "Var" + axis + "Motor." + member;
}

Model::MotorTeeth teethOf(bool automatic, std::int32_t teeth) {
    if (automatic) return Model::MotorTeeth::Auto;
    switch (teeth) {
        case 22: return Model::MotorTeeth::Teeth22;
        case 35: return Model::MotorTeeth::Teeth35;
        case 40: return Model::MotorTeeth::Teeth40;
        case 50: return Model::MotorTeeth::Teeth50;
        case 60: return Model::MotorTeeth::Teeth60;
        default: return Model::MotorTeeth::Manual;
    }
}

}  // namespace

Motor::Motor(Store& store, const std::string& axis, int number, std::optional<Real> target,
             std::optional<Real> position)
    : startRequest(store, "Var" + axis + "StartCalibSet"),
      skipRequest(store, "Var" + axis + "SkipCalibSet"),
      torqueRequest(store, "Var" + axis + "TorqueSet"),
      gearAutoRequest(store, "Var" + axis + "GearTeethAutoSet"),
      gearRequest(store, "Var" + axis + "GearTeethSet"),
      sideRequest(store, "Var" + axis + "SideSet"),
      connectRequest(store, "Var" + axis + "ConnectNewSet"),
      state(store, slot(axis, "State")),
      connectState_(store, slot(axis, "ConnectState")),
      boundLower_(store, slot(axis, "BndLower")),
      boundUpper_(store, slot(axis, "BndUpper")),
      softLower_(store, slot(axis, "SoftBndLower")),
      softUpper_(store, slot(axis, "SoftBndUpper")),
      actPosition_(store, slot(axis, "ActPosition")),
      gear_(store, slot(axis, "GearTeethAct")),
      side_(store, slot(axis, "Side")),
      axis_(store, slot(axis, "MotorAxis")),
      softLowerNorm_(store, slot(axis, "SoftBndLowerNorm")),
      softUpperNorm_(store, slot(axis, "SoftBndUpperNorm")),
      realLower_(store, slot(axis, "RealLowerLimit")),
      realUpper_(store, slot(axis, "RealUpperLimit")),
      calActive_(store, slot(axis, "CalActive")),
      calRequest_(store, slot(axis, "CalRequest")),
      calSkippable_(store, slot(axis, "CalSkippable")),
      softActive_(store, slot(axis, "SoftBndActive")),
      positionValid_(store, slot(axis, "ActPosValid")),
      gearAuto_(store, slot(axis, "GearTeethAuto")),
      calFinished_(store, slot(axis, "CalFinished")),
      manualPossible_(store, slot(axis, "ManualCalibrationPossible")),
      requestSoft_(store, slot(axis, "MotorRequestSoftBnd")),
      onBoundary_(store, slot(axis, "MotorIsOnBoundary")),
      torque_(store, "Var" + axis + "Torque"),
      target_(target),
      position_(position),
      number_(number) {
    if (axis != "Cinefade") teeth_.emplace(store, "Var" + axis + "MotorTeeth");
}

void Motor::factory() {
    torque_.set(2);
}

void Motor::powerUp() {
    torqueRequest.set(torque_.get());
    skipRequest.set(skipIdle);
    gear_.set(35);
    gearAuto_.set(true);
    gearRequest.set(35);
    gearAutoRequest.set(true);
    side_.set(Model::MotorSide::Right);
    sideRequest.set(Model::MotorSide::Right);
    if (teeth_) teeth_->set(Model::MotorTeeth::Auto);
    learning_ = false;
    at_ = 0.5;
    setBounds(0, 1);
    unplug();
}

void Motor::setBounds(double lower, double upper) {
    boundLower_.set(encoder(lower));
    boundUpper_.set(encoder(upper));
    softLower_.set(encoder(lower));
    softUpper_.set(encoder(upper));
    softLowerNorm_.set(0);
    softUpperNorm_.set(1);
    realLower_.set(static_cast<float>(lower));
    realUpper_.set(static_cast<float>(upper));
    softActive_.set(false);
}

void Motor::enter(Stage stage) {
    stage_ = stage;
    elapsed_ = 0;
    if (stage == Stage::Waiting) skipRequest.set(skipIdle);
    show();
}

void Motor::show() {
    const auto stateOf = [this] {
        switch (stage_) {
            case Stage::Absent: return Model::MotorState::Absent;
            case Stage::Starting: return Model::MotorState::Starting;
            case Stage::Waiting: return Model::MotorState::NotCalibrated;
            case Stage::Ready: return Model::MotorState::Ready;
            case Stage::Lost: return Model::MotorState::Lost;
            case Stage::Error: return Model::MotorState::Error;
            default: return Model::MotorState::Calibrating;
        }
    };
    state.set(stateOf());
    if (stage_ == Stage::Absent || stage_ == Stage::Lost) {
        connectState_.set(Model::MotorConnectState::Disconnected);
    } else if (connectState_.is(Model::MotorConnectState::Disconnected)) {
        connectState_.set(Model::MotorConnectState::Connected);
    }
    axis_.set(stage_ == Stage::Absent ? 0 : number_);
    calRequest_.set(waits());
    calSkippable_.set(waits() && skippable_);
    calActive_.set(calibrating());
    calFinished_.set(stage_ == Stage::Ready);
    positionValid_.set(stage_ == Stage::Ready || calibrating());
    manualPossible_.set(stage_ == Stage::Waiting || stage_ == Stage::Ready);
}

bool Motor::calibrating() const {
    return stage_ == Stage::SeekingLower || stage_ == Stage::SeekingUpper || stage_ == Stage::Returning ||
           stage_ == Stage::Manual;
}

void Motor::put(Stage stage, bool skippable) {
    skippable_ = skippable;
    connectState_.set(Model::MotorConnectState::Connected);
    if (stage == Stage::Ready && target_) at_ = static_cast<double>(target_->get());
    enter(stage);
}

void Motor::plugIn(bool known) {
    skippable_ = known;
    connectState_.set(known ? Model::MotorConnectState::Connected : Model::MotorConnectState::New);
    enter(Stage::Starting);
}

void Motor::unplug() {
    skippable_ = false;
    enter(Stage::Absent);
}

void Motor::startCalibration() {
    startRequest.set(false);
    if (stage_ == Stage::Waiting || stage_ == Stage::Ready || stage_ == Stage::Error) enter(Stage::SeekingLower);
}

void Motor::skip() {
    if (skipRequest.get() != static_cast<std::int32_t>(Model::SkipCalib::Skip)) return;
    const bool possible = waits() && skippable_;
    if (possible) enter(Stage::Ready);
    skipRequest.set(possible ? Model::SkipCalib::Skipped : Model::SkipCalib::Wait);
}

void Motor::reread() {
    show();
    state.note();
}

void Motor::takeTorque() {
    torque_.set(torqueRequest.within(1, 4));
}

void Motor::takeGear() {
    const bool automatic = gearAutoRequest;
    gearAuto_.set(automatic);
    gear_.set(automatic ? 35 : gearRequest.within(1, 255));
    if (teeth_) teeth_->set(teethOf(automatic, gear_.get()));
}

void Motor::takeSide() {
    side_.set(sideRequest.get());
}

void Motor::connectNew() {
    if (connectRequest.take() && connectState_.is(Model::MotorConnectState::New))
        connectState_.set(Model::MotorConnectState::Connected);
}

void Motor::beginManual() {
    if (stage_ == Stage::Waiting || stage_ == Stage::Ready) enter(Stage::Manual);
}

void Motor::setManualBound(bool first) {
    if (stage_ != Stage::Manual) return;
    if (first) {
        manualLower_ = at_;
        return;
    }
    const auto [lower, upper] = std::minmax(manualLower_, at_);
    setBounds(lower, upper);
}

void Motor::endManual(bool finished) {
    if (stage_ == Stage::Manual) enter(finished ? Stage::Ready : Stage::Waiting);
}

void Motor::learnLimit(bool learning) {
    requestSoft_.set(learning);
    if (learning) {
        if (!learning_) {
            lowest_ = 1;
            highest_ = 0;
            softActive_.set(false);
        }
        lowest_ = std::min(lowest_, at_);
        highest_ = std::max(highest_, at_);
    } else if (learning_ && highest_ - lowest_ > smallestRange) {
        softLower_.set(encoder(lowest_));
        softUpper_.set(encoder(highest_));
        softLowerNorm_.set(static_cast<float>(lowest_));
        softUpperNorm_.set(static_cast<float>(highest_));
        softActive_.set(true);
    }
    learning_ = learning;
}

void Motor::follow(double seconds) {
    const double goal = target_ ? static_cast<double>(target_->get()) : 0.5;
    const double reach = fastest * torque_.get() / 4 * seconds;
    at_ += std::clamp(goal - at_, -reach, reach);
}

void Motor::tick(double seconds, bool autoSkip) {
    elapsed_ += seconds;
    advance(seconds, autoSkip);
    actPosition_.set(encoder(at_));
    onBoundary_.set(stage_ == Stage::Ready && (at_ <= 0 || at_ >= 1));
    if (position_) position_->set(static_cast<float>(at_));
}

void Motor::advance(double seconds, bool autoSkip) {
    switch (stage_) {
        case Stage::Starting:
            if (elapsed_ >= startingTime) enter(Stage::Waiting);
            break;
        case Stage::Waiting:
            if (autoSkip && skippable_ && elapsed_ >= autoSkipTime) enter(Stage::Ready);
            break;
        case Stage::SeekingLower: seekLower(seconds); break;
        case Stage::SeekingUpper: seekUpper(); break;
        case Stage::Returning: comeBack(seconds); break;
        case Stage::Manual:
        case Stage::Ready: follow(seconds); break;
        default: break;
    }
}

void Motor::seekLower(double seconds) {
    at_ = std::max(0.0, at_ - seconds / seekingTime);
    if (elapsed_ >= seekingTime) enter(Stage::SeekingUpper);
}

void Motor::seekUpper() {
    at_ = std::min(1.0, elapsed_ / seekingTime);
    if (elapsed_ >= seekingTime) enter(Stage::Returning);
}

/// To where the hand unit wants it, once both ends are known.
void Motor::comeBack(double seconds) {
    follow(seconds);
    if (elapsed_ < returningTime) return;
    setBounds(0, 1);
    skippable_ = true;
    enter(Stage::Ready);
}

}  // namespace Unit
