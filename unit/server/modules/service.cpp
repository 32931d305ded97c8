#include "unit/server/modules/service.h"

#include <cmath>

#include "model/catalogue/enums.h"

namespace Unit {

using Model::SelfTestResult;

namespace {

constexpr double testTime = 2, calibrationTime = 3, chipTime = 1, lampTime = 0.5;
constexpr std::int32_t gravity = 1000, lampOn = 255;  // thousandths of g; full light

}  // namespace

Service::Service(Store& values) : Module("service", values) {
    settingNumber(
        "light", 0, 100'000, [this](double lux) { brightness_ = lux; }, [this] { return brightness_; });
    for (const std::string control : {"Knob", "KnobLin", "Slider", "ForcePad", "Vibration"})
        addCalibration(control, control);
    addSelfTest("Radio", [this] { return !modem_.is(Model::ModemType::None); });
    addSelfTest("Serial", [] { return true; });
    addJob("WritingToModem1Wire", "1WireModemLabel", chipTime, "Written");
    addJob("WritingToRing1Wire", "1WireRingLabel", chipTime, "Written");
    addJob("1WireInitInternal", "1WireInitInternalLabel", chipTime, "Initialised");
    addJob("SetSystemTime", "SystemTimeLabel", chipTime, "Set");
    jobs_.back().result.emplace(store, "VarServiceModeSetSystemTimeResult");
    for (Job& job : jobs_)
        hear(job.request, [this, &job] {
            if (!enabled_) job.request.set(false);
            if (!job.request || job.elapsed >= 0) return;
            job.elapsed = 0;
            job.label.set("Running");
            if (job.result) job.result->set(SelfTestResult::Running);
        });
}

void Service::addJob(const std::string& request, const std::string& label, double seconds, std::string done) {
    jobs_.push_back({.request = Flag(store, "VarServiceMode" + request),
                     .result = std::nullopt,
                     .label = Text(store, "VarServiceMode" + label),
                     .seconds = seconds,
                     .done = std::move(done),
                     .works = [] { return true; }});
}

void Service::addCalibration(const std::string& control, const std::string& label) {
    addJob("Calib" + control, label + "Label", calibrationTime, "Lowest 12, centre 2047, highest 4081");
}

void Service::addSelfTest(const std::string& what, std::function<bool()> works) {
    addJob(what + "SelfTest", what + "SelfTestLabel", testTime, "Passed");
    jobs_.back().result.emplace(store, "VarServiceMode" + what + "SelfTestResult");
    jobs_.back().works = std::move(works);
}

void Service::powerUp() {
    enabled_.set(false);
    ledTest_.set(false);
    brightness_ = 300;
    time_ = 0;
    for (Job& job : jobs_) {
        job.elapsed = -1;
        job.request.set(false);
        job.label.set("");
        if (job.result) job.result->set(SelfTestResult::NotRun);
    }
    readSensors(0);
}

void Service::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    for (Job& job : jobs_) run(job, seconds);
    readSensors(seconds);
}

void Service::run(Job& job, double seconds) {
    if (job.elapsed < 0) return;
    job.elapsed += seconds;
    if (job.elapsed < job.seconds && enabled_) return;
    const bool good = enabled_ && job.works();
    job.elapsed = -1;
    job.request.set(false);
    job.label.set(good ? job.done : "Failed");
    if (job.result) job.result->set(good ? SelfTestResult::Passed : SelfTestResult::Failed);
}

void Service::readSensors(double seconds) {
    time_ += seconds;
    // A hand never holds quite still.
    const auto tremor = [this](double hertz) {
        return static_cast<std::int32_t>(std::lround(8 * std::sin(2 * M_PI * hertz * std::floor(time_ * 4) / 4)));
    };
    if (enabled_) {
        x_.set(tremor(0.3));
        y_.set((turned_ ? gravity : -gravity) + tremor(0.2));
        z_.set(tremor(0.5));
    }
    light_.set(static_cast<std::int32_t>(brightness_));
    infrared_.set(static_cast<std::int32_t>(brightness_ / 4));
    if (!ledTest_) return;
    const auto lamp = static_cast<int>(time_ / lampTime) % 3;
    ledRed_.set(lamp == 0 ? lampOn : 0);
    ledGreen_.set(lamp == 1 ? lampOn : 0);
    ledBlue_.set(lamp == 2 ? lampOn : 0);
}

}  // namespace Unit
