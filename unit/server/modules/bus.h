#pragma once

#include "unit/server/module.h"

namespace Unit {

/// What is agreed between the unit and the devices around it: the bus to the camera, whose data count, one unit of
/// length for all, stealth, an external zoom control, the end slate.
class Bus final : public Module {
  public:
    explicit Bus(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void connect(double seconds);
    void watchRecording();

    Number state_{store, "VarCanConnectState"}, camera_{store, "VarCamDataAvailable"}, camState_{store, "VarCamState"},
        source_{store, "VarDataSource"}, sourceSet_{store, "VarDataSourceSet"}, globalUnit_{store, "VarGlobalUnit"},
        displayUnit_{store, "VarDisplayUnit"}, cameraUnit_{store, "VarCamUnit"};
    Flag globalEnabled_{store, "VarGlobalUnitEnabled"}, stealth_{store, "VarExternalDevicesStealthMode"},
        stealthPossible_{store, "VarExternalDevicesStealthModeAvailable"}, suspend_{store, "VarSuspendModemManager"},
        suspended_{store, "VarModemManagerIsSuspended"}, steering_{store, "VarExternalZoomSteering"},
        endSlate_{store, "VarEndSlateModeActive"};
    Real steeringValue_{store, "VarExternalZoomValue"}, zoom_{store, "VarZoomTargetValue"};
    double connecting_ = 0, suspending_ = 0;
    bool recorded_ = false;
};

}  // namespace Unit
