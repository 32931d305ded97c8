#pragma once

#include "unit/server/module.h"

namespace Unit {

/// The polarising filter in front of the lens, turned by the cinefade motor: moving it by the filter keys or a control
/// that is assigned to it, its two ends, its modes.
class Cinefade final : public Module {
  public:
    explicit Cinefade(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void toggleSet();
    void commitMode();
    void followControl();
    void show();

    Number motor_{store, "VarCinefadeMotor.State"}, mode_{store, "VarCinefadeMode"},
        modeEdit_{store, "VarCinefadeModeEdit"};
    Number display_{store, "VarCinefadeDisplayModeValue"}, error_{store, "VarCinefadeError"};
    Number reference_{store, "VarCinefadeSyncReference"}, lensIris_{store, "VarLensActIris"},
        camState_{store, "VarCamState"};
    Flag available_{store, "VarCinefadeAvailable"}, shows_{store, "VarCinefadeShowGui"};
    Flag increase_{store, "VarCinefadeFilterIncActive"}, decrease_{store, "VarCinefadeFilterDecActive"};
    Flag valid_{store, "VarCinefadeValidArea"}, commit_{store, "VarCinefadeModeCommit"};
    Flag set_{store, "VarCinefadeSet"}, setToggle_{store, "VarCinefadeSetToggle"};
    Flag safe_{store, "VarCinefadeSafeArea"}, safeToggle_{store, "VarCinefadeSafeAreaToggle"};
    Real shown_{store, "VarCinefadeActVal"}, start_{store, "VarCinefadeStart"}, end_{store, "VarCinefadeEnd"};
    Number knobAssignment_{store, "VarKnobAssignment"}, sliderAssignment_{store, "VarSliderAssignment"};
    Real knob_{store, "VarKnob"}, slider_{store, "VarSlider"};
    double filter_ = 0;        ///< 0 open to 1 crossed
    double controlSeen_ = -1;  ///< where the control stood that turned it last
};

}  // namespace Unit
