#include "apps/libs/delayedopen/delayedopen.h"

#include <errno.h>

#include <utility>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

constexpr std::int64_t retryInterval = 100'000'000;

void sleepWhole(std::int64_t duration) {
    while (Platform::sleepNanoseconds(duration, &duration) < 0 && errno == EINTR) {
    }
}

}  // namespace

DelayedOpen::DelayedOpen(std::string path) : path_(std::move(path)) {}

DelayedOpen::~DelayedOpen() = default;

void DelayedOpen::setTimeout(float seconds) {
    timeout_ = seconds;
}

void DelayedOpen::start() {
    changeState(Idle);
    startTime_ = Platform::steadyNanoseconds();
    started_ = true;
    attempts_ = 0;
}

bool DelayedOpen::poll() {
    if (state_ == Failed) return false;
    if (state_ == Opened) return true;
    const std::int64_t now = Platform::steadyNanoseconds();
    if (!started_) {
        startTime_ = now;
        started_ = true;
    }
    if (!tryOpen()) {
        attemptFailed(now);
        return false;
    }
    if (attempts_ > 0) {
        TERN_LOG(Log::LogLight, "Open of device %s suceeded after %.3fs and %i tries", path_.c_str(),
                 secondsSinceStart(now), attempts_);
    }
    changeState(Opened);
    return true;
}

bool DelayedOpen::waitUntilDone() {
    while (!DelayedOpen::poll() && state_ != Failed) sleepWhole(retryInterval);
    return state_ == Opened;
}

bool DelayedOpen::hasFailed() {
    return state_ == Failed;
}

void DelayedOpen::attemptFailed(std::int64_t now) {
    if (attempts_ == 0) {
        TERN_LOG(Log::LogLight, "Open of device %s failed, trying for up to %.3fs", path_.c_str(),
                 static_cast<double>(timeout_));
    }
    ++attempts_;
    if (static_cast<double>(now - startTime_) <= static_cast<double>(timeout_) * 1e9) {
        changeState(Retrying);
        return;
    }
    // The line first: the callback may start anew, and then the numbers are gone.
    TERN_LOG(Log::Warn, "Open of device %s permanently failed after %.3fs and %i tries", path_.c_str(),
             secondsSinceStart(now), attempts_);
    changeState(Failed);
}

void DelayedOpen::changeState(int state) {
    if (state == state_) return;
    state_ = state;
    if (stateCallback_) stateCallback_(state);
}

double DelayedOpen::secondsSinceStart(std::int64_t now) const {
    return static_cast<double>(now - startTime_) / 1e9;
}
