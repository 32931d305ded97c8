#pragma once

#include <optional>
#include <string>

#include "unit/server/variable.h"

namespace Unit {

/// One lens motor: what its slot of MemMotors says, and how it comes there. Without a calibration a motor does not
/// move; one that was calibrated before it was plugged in may skip it.
class Motor {
  public:
    enum class Stage { Absent, Starting, Waiting, SeekingLower, SeekingUpper, Returning, Manual, Ready, Lost, Error };

    /// `axis`: "Focus", "Iris", "Zoom", "AUX" or "Cinefade". `number`: its MotorAxis. `target` may be null: it then
    /// stays in the middle.
    Motor(Store& store, const std::string& axis, int number, std::optional<Real> target, std::optional<Real> position);

    void factory();
    void powerUp();
    void tick(double seconds, bool autoSkip);

    /// Puts the motor into that stage, as if all before it had gone well.
    void put(Stage stage, bool skippable);
    void plugIn(bool known);
    void unplug();
    Stage stage() const { return stage_; }
    bool skippable() const { return skippable_; }

    // Answers to requests.
    void startCalibration();
    void skip();
    void reread();  ///< somebody has overwritten the state
    void takeTorque();
    void takeGear();
    void takeSide();
    void connectNew();
    void beginManual();
    void setManualBound(bool first);
    void endManual(bool finished);

    bool waits() const { return stage_ == Stage::Waiting; }
    bool calibrating() const;
    void learnLimit(bool learning);

    // Its requests, for the module that listens to them.
    Flag startRequest;
    Number skipRequest;
    Number torqueRequest;
    Flag gearAutoRequest;
    Number gearRequest;
    Number sideRequest;
    Flag connectRequest;
    Number state;

  private:
    void enter(Stage stage);
    void show();
    void advance(double seconds, bool autoSkip);
    void seekLower(double seconds);
    void seekUpper();
    void comeBack(double seconds);
    void follow(double seconds);
    void setBounds(double lower, double upper);

    Number connectState_, boundLower_, boundUpper_, softLower_, softUpper_, actPosition_, gear_, side_, axis_;
    Real softLowerNorm_, softUpperNorm_, realLower_, realUpper_;
    Flag calActive_, calRequest_, calSkippable_, softActive_, positionValid_, gearAuto_, calFinished_, manualPossible_,
        requestSoft_, onBoundary_;
    Number torque_;
    std::optional<Number> teeth_;
    std::optional<Real> target_, position_;
    int number_;

    Stage stage_ = Stage::Absent;
    double elapsed_ = 0;  ///< seconds in this stage
    double at_ = 0.5;     ///< normalised position
    bool skippable_ = false;
    bool learning_ = false;
    double lowest_ = 1, highest_ = 0;
    double manualLower_ = 0;
};

}  // namespace Unit
