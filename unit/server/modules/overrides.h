#pragma once

#include <vector>

#include "unit/server/module.h"

namespace Unit {

/// Axes that another control of the set holds, giving them back and catching them; the nudge; the zoom assistance of
/// the camera's outputs.
class Overrides final : public Module {
  public:
    explicit Overrides(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    /// An output that the camera can magnify: whether it does now, and whether it can.
    struct Output {
        Flag active, enabled;
    };

    void addAxis(const std::string& axis, const char* setting);
    void addOutput(const std::string& output, const std::string& enabled);

    std::vector<Number> held_;
    std::vector<Output> outputs_;
    Number available_{store, "VarCamDataAvailable"};
    Flag unsupported_{store, "VarCamZoomUserButtonNotSupported"};
    Flag nudgeWanted_{store, "VarNudgeStateSet"}, nudge_{store, "VarNudgeStateAct"};
};

}  // namespace Unit
