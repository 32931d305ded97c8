#include "unit/server/modules/depthcamera.h"

#include <algorithm>
#include <cmath>

namespace Unit {

namespace {

constexpr double picturePeriod = 0.5;  // seconds
constexpr double brightest = 255, background = 20;
constexpr float defaultNear = 1, defaultFar = 10;
constexpr std::int32_t defaultIntervals = 64, mostIntervals = 127;

}  // namespace

DepthCamera::DepthCamera(Store& values) : Module("depth-camera", values) {
    settingFlag(
        "connected", [this](bool there) { there_ = there; }, [this] { return there_; });
    settingNumber(
        "subject", 0.2, 100, [this](double metres) { subject_ = metres; }, [this] { return subject_; });
    hear(request_, [this] {
        if (request_.take()) takePicture();
    });
    // The distance where most of the picture lies becomes the point that is looked at.
    hear(add_, [this] {
        if (!add_.take() || !there_) return;
        takePicture();
        const double width = static_cast<double>(far_.get()) - static_cast<double>(near_.get());
        const double part = std::clamp((subject_ - static_cast<double>(near_.get())) / width, 0.0, 1.0);
        const auto point = static_cast<std::int32_t>(part * (intervals_.get() - 1));
        index_.set(point);
        value_.set(static_cast<std::int32_t>(y_.real(static_cast<std::size_t>(point))));
    });
    hear(automatic_, [this] {
        if (!automatic_.take() || !there_) return;
        near_.set(static_cast<float>(subject_ / 2));
        far_.set(static_cast<float>(subject_ * 2));
        takePicture();
    });
}

void DepthCamera::powerUp() {
    there_ = false;
    subject_ = 3;
    since_ = 0;
    near_.set(defaultNear);
    far_.set(defaultFar);
    intervals_.set(defaultIntervals);
    takePicture();
}

void DepthCamera::tick(std::int64_t nanoseconds) {
    since_ += static_cast<double>(nanoseconds) * 1e-9;
    if (since_ < picturePeriod) return;
    since_ = 0;
    takePicture();
}

// What the product has asked for may be no range at all.
void DepthCamera::keepRange() {
    if (near_.get() >= 0 && far_.get() > near_.get() && std::isfinite(far_.get())) return;
    near_.set(defaultNear);
    far_.set(defaultFar);
}

double DepthCamera::amountAt(double metres) const {
    if (!there_) return 0;
    const double off = (metres - subject_) / (0.1 * subject_);
    return background + (brightest - background) * std::exp(-off * off / 2);
}

void DepthCamera::takePicture() {
    keepRange();
    intervals_.set(intervals_.within(2, mostIntervals));
    const auto points = static_cast<std::size_t>(intervals_.get());
    for (std::size_t i = 0; i < points; ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(points - 1);
        const double metres = static_cast<double>(near_.get()) + part * static_cast<double>(far_.get() - near_.get());
        const double amount = amountAt(metres);
        valid_.setInteger(i, there_ ? 1 : 0);
        x_.setReal(i, static_cast<float>(metres));
        y_.setReal(i, static_cast<float>(std::floor(amount)));
        xPart_.setReal(i, static_cast<float>(part));
        yPart_.setReal(i, static_cast<float>(amount / brightest));
    }
    count_.set(static_cast<std::int32_t>(points));
    displayMin_.set(near_.get());
    displayMax_.set(far_.get());
    measured_.set(there_ ? static_cast<float>(subject_) : 0);
}

}  // namespace Unit
