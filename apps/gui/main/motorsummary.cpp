#include "apps/gui/main/motorsummary.h"

MotorSummary summarize(std::span<const MotorState> motors) {
    MotorSummary summary;
    bool allSkippable = true;
    for (const MotorState& motor : motors) {
        summary.anyActive |= motor.active;
        if (!motor.connected) continue;
        summary.anyRequest = true;
        summary.anySkippable |= motor.skippable;
        allSkippable &= motor.skippable;
    }
    summary.allSkippable = summary.anyRequest && allSkippable;
    return summary;
}
