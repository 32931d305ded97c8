#include "unit/server/modules/cinefade.h"

#include <algorithm>

#include "model/catalogue/enums.h"

namespace Unit {

using Model::CinefadeDisplayMode;
using Model::CinefadeMode;

namespace {

constexpr double travelTime = 4;  // seconds from end to end
constexpr double stopsOfTravel = 3.5, degreesOfTravel = 90;
constexpr std::int32_t noError = 0, cameraRuns = 1;

}  // namespace

Cinefade::Cinefade(Store& values) : Module("cinefade", values) {
    settingNumber(
        "filter", 0, 1, [this](double at) { filter_ = at; }, [this] { return filter_; });
    hear(setToggle_, [this] {
        if (setToggle_.take()) toggleSet();
    });
    hear(safeToggle_, [this] {
        if (safeToggle_.take()) safe_.set(!safe_);
    });
    hear(commit_, [this] {
        if (commit_.take()) commitMode();
    });
}

void Cinefade::powerUp() {
    filter_ = 0;
    controlSeen_ = -1;
    start_.set(0);
    end_.set(1);
    set_.set(false);
    safe_.set(false);
    error_.set(noError);
    increase_.set(false);
    decrease_.set(false);
    modeEdit_.set(mode_.get());
    show();
}

// The first press begins a new area at the filter's place, the second one ends it there.
void Cinefade::toggleSet() {
    if (!available_) return;
    set_.set(!set_);
    (set_ ? start_ : end_).set(static_cast<float>(filter_));
    if (!set_ && start_.get() > end_.get()) {
        const float swapped = start_.get();
        start_.set(end_.get());
        end_.set(swapped);
    }
}

void Cinefade::commitMode() {
    const bool refused = modeEdit_.get() == static_cast<std::int32_t>(CinefadeMode::RotaPola) &&
                         camState_.is(Model::CamState::Recording);
    error_.set(refused ? cameraRuns : noError);
    if (refused)
        modeEdit_.set(mode_.get());
    else
        mode_.set(modeEdit_.get());
}

void Cinefade::tick(std::int64_t nanoseconds) {
    const double step = static_cast<double>(nanoseconds) * 1e-9 / travelTime;
    available_.set(!motor_.is(Model::MotorState::Absent));
    if (available_) {
        followControl();
        filter_ += (increase_ ? step : 0) - (decrease_ ? step : 0);
        const bool bounded = safe_ && !set_;
        filter_ =
            std::clamp(filter_, bounded ? static_cast<double>(start_.get()) : 0.0,
                       bounded ? std::max(static_cast<double>(start_.get()), static_cast<double>(end_.get())) : 1.0);
    }
    show();
}

void Cinefade::followControl() {
    constexpr auto mine = static_cast<std::int32_t>(Model::AxisAssignment::Cinefade);
    const Real* control = knobAssignment_.get() == mine ? &knob_ : sliderAssignment_.get() == mine ? &slider_ : nullptr;
    const double at = control != nullptr ? static_cast<double>(control->get()) : -1;
    if (at >= 0 && at != controlSeen_) filter_ = at;
    controlSeen_ = at;
}

void Cinefade::show() {
    shows_.set(available_);
    valid_.set(available_ && filter_ >= static_cast<double>(start_.get()) &&
               filter_ <= static_cast<double>(end_.get()));
    reference_.set(available_ ? lensIris_.get() : 0);
    const double factor = display_.is(CinefadeDisplayMode::Percent) ? 100
                          : display_.is(CinefadeDisplayMode::Stops) ? stopsOfTravel
                                                                    : degreesOfTravel;
    shown_.set(available_ ? static_cast<float>(filter_ * factor) : 0);
}

}  // namespace Unit
