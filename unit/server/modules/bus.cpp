#include "unit/server/modules/bus.h"

#include <algorithm>

#include "model/catalogue/enums.h"

namespace Unit {

using Model::CanConnectState;
using Model::LengthUnit;

namespace {

constexpr double connectTime = 0.5, suspendTime = 0.3;  // seconds

}  // namespace

Bus::Bus(Store& values) : Module("bus", values) {
    settingFlag(
        "zoom-control", [this](bool there) { steering_.set(there); }, [this] { return steering_.get(); });
    settingNumber(
        "zoom", 0, 1, [this](double at) { steeringValue_.set(static_cast<float>(at)); },
        [this] { return static_cast<double>(steeringValue_.get()); });
    hear(sourceSet_, [this] { source_.set(sourceSet_.get()); });
    hear(globalUnit_, [this] {
        if (!globalEnabled_) return;
        const bool metric = globalUnit_.is(Model::GlobalUnit::Metric);
        for (const Number* unit : {&displayUnit_, &cameraUnit_})
            unit->set(metric ? LengthUnit::Meter : LengthUnit::Feet);
    });
    hear(stealth_, [this] {
        if (!stealthPossible_) stealth_.set(false);
    });
    hear(suspend_, [this] { suspending_ = 0; });
}

void Bus::powerUp() {
    state_.set(CanConnectState::Disconnected);
    connecting_ = suspending_ = 0;
    recorded_ = false;
    globalEnabled_.set(true);
    for (const Flag* flag : {&stealth_, &suspend_, &suspended_, &steering_, &endSlate_}) flag->set(false);
    steeringValue_.set(0.5F);
    sourceSet_.set(Model::DataSource::Auto);
    source_.set(Model::DataSource::Auto);
}

void Bus::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    connect(seconds);
    watchRecording();
    suspending_ += seconds;
    if (suspend_ != suspended_ && suspending_ >= suspendTime) suspended_.set(suspend_);
    if (steering_) zoom_.set(std::clamp(steeringValue_.get(), 0.0F, 1.0F));
}

void Bus::connect(double seconds) {
    const bool there = camera_.is(Model::CamDataAvailable::Full);
    connecting_ = there ? connecting_ + seconds : 0;
    state_.set(!there                      ? CanConnectState::Disconnected
               : connecting_ < connectTime ? CanConnectState::Connecting
                                           : CanConnectState::Connected);
    stealthPossible_.set(there);
    if (!there) stealth_.set(false);
}

// An end slate is of one take.
void Bus::watchRecording() {
    const bool records = camState_.is(Model::CamState::Recording);
    if (recorded_ && !records) endSlate_.set(false);
    recorded_ = records;
}

}  // namespace Unit
