#pragma once

#include <span>

/// What a motor says about its calibration.
struct MotorState {
    bool active = false;     ///< it is being calibrated
    bool connected = false;  ///< it asks for a calibration
    bool skippable = false;  ///< which may be left out
};

struct MotorSummary {
    bool anyRequest = false;
    bool anySkippable = false;
    bool anyActive = false;
    bool allSkippable = false;  ///< of those that ask; false when none does

    bool operator==(const MotorSummary&) const = default;
};

MotorSummary summarize(std::span<const MotorState> motors);
