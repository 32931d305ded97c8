#pragma once

#include <optional>
#include <string>
#include <vector>

#include "unit/server/module.h"

namespace Unit {

/// The workshop's jobs: self tests, calibration of the controls, writing the chips, the sensors. Each runs for its
/// time, says how it went and resets its request. They run in service mode only.
class Service final : public Module {
  public:
    explicit Service(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    struct Job {
        Flag request;
        std::optional<Number> result;
        Text label;
        double seconds;
        std::string done;
        std::function<bool()> works;
        double elapsed = -1;  ///< negative while it does not run
    };

    void addCalibration(const std::string& control, const std::string& label);
    void addSelfTest(const std::string& what, std::function<bool()> works);
    void addJob(const std::string& request, const std::string& label, double seconds, std::string done);
    void run(Job& job, double seconds);
    void readSensors(double seconds);

    std::vector<Job> jobs_;
    Flag enabled_{store, "VarServiceModeEnabled"}, ledTest_{store, "VarServiceModeLedTest"};
    Number modem_{store, "VarModemType"}, ledRed_{store, "VarLedRunR"}, ledGreen_{store, "VarLedRunG"},
        ledBlue_{store, "VarLedRunB"}, light_{store, "VarLightSensorClearValue"},
        infrared_{store, "VarLightSensorIrValue"}, x_{store, "VarAccelerationX"}, y_{store, "VarAccelerationY"},
        z_{store, "VarAccelerationZ"};
    Flag turned_{store, "VarGuiRotate"};
    double brightness_ = 300;  ///< lux around the unit
    double time_ = 0;
};

}  // namespace Unit
