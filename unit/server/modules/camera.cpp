#include "unit/server/modules/camera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "model/catalogue/enums.h"
#include "unit/server/modules/lengths.h"

namespace Unit {

using Model::CamState;

namespace {

constexpr std::array speeds = {23.976F, 24.0F, 25.0F, 29.97F, 30.0F, 48.0F, 50.0F, 59.94F, 60.0F, 100.0F, 120.0F};
constexpr std::array shutters = {11.2F, 22.5F, 45.0F, 90.0F, 144.0F, 172.8F, 180.0F, 270.0F, 356.0F};
constexpr std::array indices = {"160", "200", "400", "800", "1280", "1600", "2560", "3200"};
constexpr std::array filters = {"Clear", "0.6", "1.2", "1.8"};
constexpr std::array exposureTimes = {24, 25, 48, 50, 60, 96, 100, 120, 250, 500, 1000};
constexpr std::array setups = {"Daylight", "Night exterior", "High speed"};
constexpr std::array infos = {"Camera index", "Reel", "Clip", "Timecode"};
constexpr std::array monitors = {"SDI 1", "SDI 2", "Viewfinder"};
constexpr std::array monitorFunctions = {"Clean", "Processed", "Log"};
constexpr std::array buttonLabels = {"Frame grab", "Zebra", "Playback", "Look", "Audio", "Anamorphic"};

struct WhiteBalance {
    std::int32_t kelvin;
    float tint;
    const char* label;
};
constexpr std::array balances = {WhiteBalance{3200, 0, "Tungsten"}, WhiteBalance{4300, -2, "Fluorescent"},
                                 WhiteBalance{5600, 0, "Daylight"}, WhiteBalance{7000, 0, "Shade"}};

constexpr double lowMinutes = 5;
constexpr double mediaMinutes = 42;

std::string tenths(double value) {
    char text[24];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

}  // namespace

Camera::Camera(Store& values) : Module("camera", values) {
    addSettings();
    listenToRows();
    listenToOwnValues();
    listenToSwitches();
    listenToToggles();
    listenToUserButtons();
}

void Camera::addSettings() {
    settingChoice(
        "camera", {"none", "orvo", "partner"}, [this](std::size_t choice) { put(static_cast<Type>(choice)); },
        [this] {
            return static_cast<std::size_t>(type_.get() == 0 ? 0 : type_.get() == 8 ? 2 : 1);
        });
    settingFlag(
        "recording", [this](bool on) { setRecording(on); }, [this] { return state_.is(CamState::Recording); });
    settingNumber(
        "media-minutes", 0, 999, [this](double minutes) { mediaMinutes_ = minutes; }, [this] { return mediaMinutes_; });
    settingNumber(
        "state", 0, 8, [this](double state) { state_.set(static_cast<std::int32_t>(state)); },
        [this] { return state_.get(); });
}

void Camera::listenToRows() {
    const auto listen = [this](const Number& request, const Number& count, void (Camera::*show)(std::size_t)) {
        hear(request, [this, &request, &count, show] {
            if (request.get() >= 0 && request.get() < count.get())
                (this->*show)(static_cast<std::size_t>(request.get()));
        });
    };
    listen(speedSet_, speeds_, &Camera::showSpeed);
    listen(shutterSet_, shutters_, &Camera::showShutter);
    listen(indexSet_, indices_, &Camera::showExposureIndex);
    listen(filterSet_, filters_, &Camera::showFilter);
    listen(wbSet_, balances_, &Camera::showWhiteBalance);
    listen(timeSet_, times_, &Camera::showExposureTime);
}

/// A value of one's own is in no row.
void Camera::listenToOwnValues() {
    hear(speedCustom_, [this] {
        speedSet_.set(-1);
        speedAct_.set(speedCustom_.get());
    });
    hear(shutterCustom_, [this] {
        shutterSet_.set(-1);
        shutterAct_.set(std::clamp(shutterCustom_.get(), 0.0F, 360.0F));
    });
    hear(timeCustom_, [this] {
        timeSet_.set(-1);
        exposureTimeAct_.set(timeCustom_.get());
    });
    for (const Variable* custom : std::initializer_list<const Variable*>{&wbCustom_, &wbTintCustom_})
        hear(*custom, [this] {
            wbSet_.set(-1);
            wbAct_.set(wbCustom_.get());
            wbTint_.set(wbTintCustom_.get());
        });
}

void Camera::listenToSwitches() {
    hear(sdiStatusSet_, [this] { sdiStatus_.set(sdiStatusSet_.get()); });
    hear(highSpeedSet_, [this] { highSpeed_.set(highSpeedSet_); });
    for (const Flag* key : {&recordButton_, &recordKey_}) hear(*key, [this] { recordPressed(); });
}

void Camera::listenToToggles() {
    for (const char* name : {"SDIPeaking", "SDISurroundView", "SDIExposureTool", "SDIFramelines"})
        toggles_.push_back(
            {Flag(store, std::string("VarCam") + name + "Toggle"), Flag(store, std::string("VarCam") + name)});
    toggles_.push_back({Flag(store, "VarCamDiopterStateToggle"), Flag(store, "VarCamDiopterActive")});
    for (const Toggle& toggle : toggles_)
        hear(toggle.request, [toggle] {
            if (toggle.request.take()) toggle.state.set(!toggle.state);
        });
}

void Camera::listenToUserButtons() {
    for (std::size_t row = 0; row < buttonLabels.size(); ++row) {
        const Flag request(store, "VarCamUserButton" + std::to_string(row + 1) + "Set");
        hear(request, [this, request, row] {
            if (request.take()) buttonStates_.setText(row, buttonStates_.text(row) == "On" ? "Off" : "On");
        });
    }
}

void Camera::powerUp() {
    mediaMinutes_ = mediaMinutes;
    recordWasDown_ = false;
    put(Type::None);
}

void Camera::put(Type type) {
    type_.set(type == Type::None   ? Model::CamType::None
              : type == Type::Orvo ? Model::CamType::OrvoTwo
                                   : Model::CamType::PartnerSerial);
    available_.set(type == Type::None   ? Model::CamDataAvailable::None
                   : type == Type::Orvo ? Model::CamDataAvailable::Full
                                        : Model::CamDataAvailable::Basic);
    state_.set(type == Type::None ? CamState::NoCamera : CamState::Standby);
    clearLists();
    describe();
    if (type == Type::Orvo) {
        listSettings();
        listMedia();
    } else if (type == Type::Partner) {
        speedAct_.set(24);
        shutterAct_.set(180);
        mediaMinutes_ = mediaMinutes;
    }
}

void Camera::clearLists() {
    for (const Number* size : {&speeds_, &shutters_, &indices_, &balances_, &filters_, &times_, &setups_, &setupTexts_,
                               &infos_, &monitors_, &buttons_})
        size->set(0);
    for (const Real* act : {&speedAct_, &shutterAct_, &filterAct_, &wbTint_}) act->set(0);
    wbAct_.set(0);
    indexAct_.set("");
    filterText_.set("");
    timeValid_.set(false);
    exposureTimeAct_.set(0);
    footage_.set(0);
}

void Camera::describe() {
    const bool full = available_.is(Model::CamDataAvailable::Full);
    firmware_.set(full ? "4.2.1" : "");
    name_.set(full ? "A" : "");
    codec_.set(full ? "ORVORAW" : "");
    sensor_.set(full ? "4.6K 3:2\nOpen Gate" : "");
    resolution_.set(full ? "4608 x 3164" : "");
    front_.set(full ? Model::CamFilterType::Polariser : Model::CamFilterType::None);
    frontName_.set(full ? "Pola" : "");
    rear_.set(full ? Model::CamFilterType::NeutralDensity : Model::CamFilterType::None);
    rearName_.set(full ? "ND" : "");
    highSpeedSupport_.set(full);
    highSpeed_.set(false);
    fileTransfer_.set(full);
    calAll_.set(full);
    footageUnit_.set(Model::CamFootageUnit::Minutes);
    for (std::size_t row = 0; row < 2; ++row) {
        supply_.setReal(row, full ? 14.4F - 0.3F * static_cast<float>(row) : 0);
        supplyWarning_.setInteger(row, 0);
    }
}

void Camera::listSettings() {
    const auto size = [](const auto& list) { return static_cast<std::int32_t>(list.size()); };
    for (std::size_t row = 0; row < speeds.size(); ++row) speedList_.setReal(row, speeds[row]);
    for (std::size_t row = 0; row < shutters.size(); ++row) shutterList_.setReal(row, shutters[row]);
    for (std::size_t row = 0; row < indices.size(); ++row) indexList_.setText(row, indices[row]);
    for (std::size_t row = 0; row < filters.size(); ++row) filterList_.setText(row, filters[row]);
    for (std::size_t row = 0; row < exposureTimes.size(); ++row) timeList_.setInteger(row, exposureTimes[row]);
    for (std::size_t row = 0; row < balances.size(); ++row) {
        wbList_.setInteger(row, balances[row].kelvin);
        wbTintList_.setReal(row, balances[row].tint);
        wbLabelList_.setText(row, balances[row].label);
    }
    speeds_.set(size(speeds));
    shutters_.set(size(shutters));
    indices_.set(size(indices));
    filters_.set(size(filters));
    times_.set(size(exposureTimes));
    balances_.set(size(balances));
    timeValid_.set(true);
    showSpeed(1);
    showShutter(6);
    showExposureIndex(3);
    showFilter(0);
    showWhiteBalance(2);
    showExposureTime(2);
}

void Camera::listMedia() {
    const auto fill = [](const Column& column, const Number& count, const auto& texts) {
        for (std::size_t row = 0; row < texts.size(); ++row) column.setText(row, texts[row]);
        count.set(static_cast<std::int32_t>(texts.size()));
    };
    fill(setupTextList_, setupTexts_, setups);
    fill(setupLabels_, setups_, setups);
    for (std::size_t row = 0; row < setups.size(); ++row) setupList_.setInteger(row, static_cast<std::int32_t>(row));
    fill(infoList_, infos_, infos);
    fill(monitorList_, monitors_, monitors);
    fill(buttonLabels_, buttons_, buttonLabels);
    for (std::size_t row = 0; row < buttonLabels.size(); ++row) buttonStates_.setText(row, "Off");
    for (std::size_t row = 0; row < monitorFunctions.size(); ++row)
        monitorFunctions_.setText(row, monitorFunctions[row]);
}

void Camera::showSpeed(std::size_t row) {
    speedSet_.set(static_cast<std::int32_t>(row));
    speedAct_.set(speedList_.real(row));
}

void Camera::showShutter(std::size_t row) {
    shutterSet_.set(static_cast<std::int32_t>(row));
    shutterAct_.set(shutterList_.real(row));
}

void Camera::showExposureIndex(std::size_t row) {
    indexSet_.set(static_cast<std::int32_t>(row));
    indexAct_.set(indexList_.text(row));
}

void Camera::showFilter(std::size_t row) {
    filterSet_.set(static_cast<std::int32_t>(row));
    filterText_.set(filterList_.text(row));
    filterAct_.set(static_cast<float>(row) * 0.6F);
}

void Camera::showWhiteBalance(std::size_t row) {
    wbSet_.set(static_cast<std::int32_t>(row));
    wbAct_.set(wbList_.integer(row));
    wbTint_.set(wbTintList_.real(row));
}

void Camera::showExposureTime(std::size_t row) {
    timeSet_.set(static_cast<std::int32_t>(row));
    exposureTimeAct_.set(timeList_.integer(row));
}

void Camera::recordPressed() {
    const bool down = recordButton_ || recordKey_;
    if (down && !recordWasDown_) setRecording(!state_.is(CamState::Recording));
    recordWasDown_ = down;
}

void Camera::setRecording(bool recording) {
    if (available_.is(Model::CamDataAvailable::None)) return;
    const bool possible = mediaMinutes_ > 0;
    state_.set(recording && possible ? CamState::Recording : recording ? CamState::Error : CamState::Standby);
}

void Camera::tick(std::int64_t nanoseconds) {
    run(static_cast<double>(nanoseconds) * 1e-9);
    showLens();
}

void Camera::run(double seconds) {
    if (available_.is(Model::CamDataAvailable::None)) return;
    if (state_.is(CamState::Recording)) {
        mediaMinutes_ = std::max(0.0, mediaMinutes_ - seconds / 60);
        if (mediaMinutes_ <= 0) state_.set(CamState::Error);
    }
    footage_.set(static_cast<std::int32_t>(std::ceil(mediaMinutes_)));
    warning_.set(mediaMinutes_ < lowMinutes);
}

void Camera::showLens() {
    const bool known = lensType_.is(Model::CamLensType::Data) && available_.is(Model::CamDataAvailable::Full);
    const float metres = known ? lensFocus_.get() : 0;
    const float feet = metres / static_cast<float>(metresPerFoot);
    const double stop = known ? lensIris_.get() / 100.0 : 0;
    distanceMeter_.set(metres);
    distanceRaw_.set(metres);
    distanceFeet_.set(static_cast<std::int32_t>(feet));
    distanceInch_.set((feet - std::floor(feet)) * 12);
    stopRaw_.set(static_cast<float>(stop));
    stopText_.set(known ? "T" + tenths(stop) : std::string());
    stopFull_.set(known ? tenths(stop) : std::string());
    stopPart_.set(0);
    lengthRaw_.set(known ? static_cast<float>(lensLength_.get()) : 0);
    focalLength_.set(known ? static_cast<float>(lensLength_.get()) : 0);
}

}  // namespace Unit
