#include "unit/server/modules/radio.h"

#include <algorithm>
#include <cmath>

#include "model/catalogue/enums.h"

namespace Unit {

using Model::ModemType;
using Model::RadioState;

namespace {

constexpr double startingTime = 1.0, searchingTime = 1.5, connectingTime = 0.8;
constexpr double secondsPerChannel = 0.1;
constexpr int channels = 14;
constexpr std::int32_t unsetRegion = static_cast<std::int32_t>(Model::RadioRegion::Unset);
constexpr std::int32_t weakest = -96, perStep = 14;

/// Something like a band with two strong neighbours, moving slowly: the same at each run.
float noiseOf(int channel, int sweep) {
    const double near = std::exp(-std::pow(channel - 3.0, 2) / 2) * 0.7 + std::exp(-std::pow(channel - 10.0, 2)) * 0.5;
    const double ripple = 0.08 * (1 + std::sin(channel * 1.7 + sweep * 0.9));
    return static_cast<float>(std::clamp(near + ripple, 0.0, 1.0));
}

}  // namespace

Radio::Radio(Store& values) : Module("radio", values) {
    for (int channel = 0; channel < channels; ++channel)
        results_.emplace_back(values, "VarRadioRssiScanResultsCh" + std::to_string(channel));
    addSettings();
    hear(channel_, [this] { moduleChannel_.setInteger(moduleRow(), channel_.get()); });
    hear(region_, [this] { moduleRegion_.setInteger(moduleRow(), region_.get()); });
}

void Radio::addSettings() {
    settingChoice(
        "modem", {"none", "p900", "tern"}, [this](std::size_t choice) { putModem(choice); },
        [this] { return moduleRow(); });
    settingFlag(
        "controller", [this](bool there) { controller_ = there; }, [this] { return controller_; });
    settingNumber(
        "quality", 0, 4, [this](double quality) { linkQuality_ = static_cast<int>(quality); },
        [this] { return linkQuality_; });
    settingNumber(
        "region", 0, unsetRegion, [this](double region) { setRegion(static_cast<std::int32_t>(region)); },
        [this] { return region_.get(); });
    settingFlag(
        "connected", [this](bool connected) { setConnected(connected); },
        [this] { return state_.is(RadioState::Connected); });
}

void Radio::putModem(std::size_t type) {
    modem_.set(static_cast<std::int32_t>(type));
    modemConnected_.set(type > 0);
    tuneAsModule();
}

/// Each radio module keeps a channel and a region of its own.
void Radio::tuneAsModule() {
    channel_.set(moduleChannel_.integer(moduleRow()));
    region_.set(moduleRegion_.integer(moduleRow()));
}

void Radio::setRegion(std::int32_t region) {
    region_.set(region);
    moduleRegion_.setInteger(moduleRow(), region);
}

void Radio::setConnected(bool connected) {
    power_.set(connected);
    enter(static_cast<std::int32_t>(connected ? RadioState::Connected : RadioState::Off));
}

std::size_t Radio::moduleRow() const {
    return static_cast<std::size_t>(modem_.within(0, 2));
}

void Radio::factory() {
    power_.set(true);
    boost_.set(false);
    address_.set("0C:E6:B1:00:27:4A");
    controllerAddress_.set("0C:E6:B1:00:31:9F");
    for (std::size_t row = 0; row < moduleChannel_.rows(); ++row) {
        moduleChannel_.setInteger(row, 1);
        moduleRegion_.setInteger(row, static_cast<std::int32_t>(Model::RadioRegion::Europe));
    }
}

void Radio::powerUp() {
    modem_.set(ModemType::Tern);
    modemConnected_.set(true);
    version_.set("Tern radio 2.1.0");
    tuneAsModule();
    regions_.setFirst(static_cast<std::size_t>(unsetRegion));
    client_.set(1);
    linkQuality_ = 4;
    controller_ = true;
    scanned_ = 0;
    enter(static_cast<std::int32_t>(RadioState::Off));
}

bool Radio::usable() const {
    return power_ && !modem_.is(ModemType::None) && region_.get() != unsetRegion;
}

void Radio::enter(std::int32_t state) {
    state_.set(state);
    elapsed_ = 0;
    showLink();
}

void Radio::showLink() {
    const bool connected = state_.is(RadioState::Connected);
    quality_.set(connected ? linkQuality_ : 0);
    rssi_.set(connected ? weakest + perStep * linkQuality_ + (boost_ ? 6 : 0) : -120);
}

void Radio::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    elapsed_ += seconds;
    scan(seconds);
    const auto go = [this](RadioState next) { enter(static_cast<std::int32_t>(next)); };
    if (!usable()) {
        if (!state_.is(RadioState::Off)) go(RadioState::Off);
        return;
    }
    switch (static_cast<RadioState>(state_.get())) {
        case RadioState::Off: go(RadioState::Starting); break;
        case RadioState::Starting:
            if (elapsed_ >= startingTime) go(RadioState::Searching);
            break;
        case RadioState::Searching:
            if (elapsed_ >= searchingTime && controller_) go(RadioState::Connecting);
            break;
        case RadioState::Connecting:
            if (elapsed_ >= connectingTime) go(controller_ ? RadioState::Connected : RadioState::Searching);
            break;
        case RadioState::Connected:
            if (!controller_) go(RadioState::Searching);
            break;
        default: break;
    }
    showLink();
}

void Radio::scan(double seconds) {
    if (!scanRequest_) {
        scanned_ = 0;
        return;
    }
    const int before = static_cast<int>(scanned_ / secondsPerChannel);
    scanned_ += seconds;
    const int after = static_cast<int>(scanned_ / secondsPerChannel);
    for (int step = before; step < after; ++step)
        results_[static_cast<std::size_t>(step % channels)].set(noiseOf(step % channels, step / channels));
}

}  // namespace Unit
