#include "unit/server/modules/stopwatch.h"

#include <algorithm>

#include "model/catalogue/enums.h"

namespace Unit {

namespace {

constexpr std::int32_t longest = 5999;
constexpr std::int32_t beepCount = 11, vibrationCount = 5;

}  // namespace

Stopwatch::Stopwatch(Store& values)
    : Module("stopwatch", values),
      start_(values, "VarTimerStart"),
      stop_(values, "VarTimerStop"),
      reset_(values, "VarTimerReset"),
      active_(values, "VarTimerActive"),
      alert_(values, "VarTimerAlertActive"),
      audio_(values, "VarTimerAudio"),
      vibrate_(values, "VarTimerVibrate"),
      flash_(values, "VarTimerFlash"),
      syncToRec_(values, "VarTimerSyncToRec"),
      resetOnRec_(values, "VarTimerResetOnRecStart"),
      current_(values, "VarTimerCurrentValue"),
      function_(values, "VarTimerFunction"),
      minutes_(values, "VarTimerMinSet"),
      secondsSet_(values, "VarTimerSecSet"),
      beeps_(values, "VarTimerBeepCount"),
      vibrations_(values, "VarTimerVibrateCount"),
      camState_(values, "VarCamState") {
    hear(start_, [this] {
        if (start_.take()) active_.set(true);
    });
    hear(stop_, [this] {
        if (!stop_.take()) return;
        active_.set(false);
        alert_.set(false);
    });
    hear(reset_, [this] {
        if (reset_.take()) reset();
    });
    for (const Number* number : {&function_, &minutes_, &secondsSet_})
        hear(*number, [this] {
            if (!active_) reset();
        });
}

void Stopwatch::factory() {
    function_.set(Model::TimerFunction::Stopwatch);
    minutes_.set(1);
    secondsSet_.set(0);
    flash_.set(true);
    vibrate_.set(false);
    audio_.set(false);
    syncToRec_.set(false);
    resetOnRec_.set(false);
}

void Stopwatch::powerUp() {
    active_.set(false);
    recording_ = false;
    reset();
}

bool Stopwatch::countsDown() const {
    return function_.is(Model::TimerFunction::Countdown);
}

std::int32_t Stopwatch::startValue() const {
    return countsDown() ? minutes_.within(0, 99) * 60 + secondsSet_.within(0, 59) : 0;
}

void Stopwatch::reset() {
    elapsed_ = 0;
    alerting_ = 0;
    alert_.set(false);
    beeps_.set(0);
    vibrations_.set(0);
    current_.set(startValue());
}

void Stopwatch::followCamera() {
    const bool recording = camState_.is(Model::CamState::Recording);
    if (recording == recording_) return;
    recording_ = recording;
    if (recording && resetOnRec_) reset();
    if (syncToRec_) active_.set(recording);
}

void Stopwatch::alert(double seconds) {
    alerting_ += seconds;
    const auto times = static_cast<std::int32_t>(alerting_);
    beeps_.set(audio_ ? std::min(times + 1, beepCount) : 0);
    vibrations_.set(vibrate_ ? std::min(times + 1, vibrationCount) : 0);
}

void Stopwatch::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    followCamera();
    if (alert_) alert(seconds);
    if (!active_) return;
    elapsed_ += seconds;
    const auto whole = static_cast<std::int32_t>(elapsed_);
    if (!countsDown()) {
        current_.set(std::min(whole, longest));
        return;
    }
    current_.set(std::max(0, startValue() - whole));
    if (current_.get() > 0) return;
    active_.set(false);
    alert_.set(true);
}

}  // namespace Unit
