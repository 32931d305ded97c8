#include "apps/gui/main/shellvalues.h"

#include "apps/gui/main/areavalue.h"

Assignments ShellValues::assignments() {
    return {Area::number(Places::VarKnobAssignment), Area::number(Places::VarSliderAssignment),
            Area::number(Places::VarForcePadAssignment)};
}

Rows ShellValues::rows() {
    return Area::flag(Places::VarSimpleLDD) ? Rows::Single : Rows::PerAxis;
}

UnitAbilities ShellValues::abilities() {
    return {.fullUnit = Area::flag(Places::VarHwFullUnit),
            .cinefadeUnit = Area::flag(Places::VarHwCinefadeUnit),
            .cinefadeAvailable = Area::flag(Places::VarCinefadeAvailable),
            .nextFeatures = Area::flag(Places::VarEnableNextSupFeatures)};
}

std::array<MotorState, 4> ShellValues::motors() {
    using namespace Places;
    const auto motor = [](const Place& active, const Place& request, const Place& skippable) {
        return MotorState{Area::flag(active), Area::flag(request), Area::flag(skippable)};
    };
    return {motor(VarFocusMotor_CalActive, VarFocusMotor_CalRequest, VarFocusMotor_CalSkippable),
            motor(VarIrisMotor_CalActive, VarIrisMotor_CalRequest, VarIrisMotor_CalSkippable),
            motor(VarZoomMotor_CalActive, VarZoomMotor_CalRequest, VarZoomMotor_CalSkippable),
            motor(VarAUXMotor_CalActive, VarAUXMotor_CalRequest, VarAUXMotor_CalSkippable)};
}

AxisColumns ShellValues::columns() {
    return {Area::number(Places::VarFocusPositionX), Area::number(Places::VarIrisPositionX),
            Area::number(Places::VarZoomPositionX)};
}

AxisColumns ShellValues::wantedColumns() {
    return axisColumns(assignments(), rows(), Area::flag(Places::VarGuiRotate) ? Hand::Left : Hand::Right);
}
