#include "apps/common/event/eventhandling.h"

#include <errno.h>
#include <fcntl.h>

#include <cstdio>
#include <cstring>
#include <utility>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

// Types and codes of the Linux input protocol.
enum Type : std::uint16_t { Sync = 0, Key = 1, Absolute = 3 };
enum SyncCode : std::uint16_t { SyncReport = 0, SyncDropped = 3 };
enum AbsoluteCode : std::uint16_t { MtSlot = 47, MtPositionX = 53, MtPositionY = 54, MtTrackingId = 57 };

constexpr int noTracking = -1;

/// Valid until the next call.
const char* codeText(std::uint16_t code) {
    static char number[8];
    switch (code) {
        case MtSlot: return "SLOT";
        case MtPositionX: return "X";
        case MtPositionY: return "Y";
        case MtTrackingId: return "ID";
        default: std::snprintf(number, sizeof number, "%u", unsigned{code}); return number;
    }
}

const char* phaseText(EventHandling::TouchEvent phase) {
    static constexpr const char* texts[] = {"TOUCH", "RELEASE", "MOVE"};
    return texts[phase];
}

}  // namespace

EventHandling::EventHandling(std::string path) : DelayedOpen(std::move(path)) {}

EventHandling::~EventHandling() {
    closeDevice();
}

void EventHandling::setTouchCallback(TouchCallback callback) {
    touchCallback_.swap(callback);
}

void EventHandling::setKeyCallback(KeyCallback callback) {
    keyCallback_.swap(callback);
}

bool EventHandling::tryOpen() {
    closeDevice();  // a reader may be started anew while its device is open
    fd_ = Platform::open(path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    return fd_ >= 0;
}

bool EventHandling::poll() {
    if (!DelayedOpen::poll()) return false;
    pending_ = false;
    phase_ = MOVE;
    input_event event;
    ReadResult result;
    while ((result = readRecord(event)) == ReadResult::Record) decode(event);
    if (result == ReadResult::Gone) deviceGone();
    return true;
}

EventHandling::ReadResult EventHandling::readRecord(input_event& event) {
    ssize_t size;
    do {
        size = Platform::read(fd_, &event, sizeof event);
    } while (size < 0 && errno == EINTR);
    if (size == static_cast<ssize_t>(sizeof event)) {
        readErrorLogged_ = false;
        return ReadResult::Record;
    }
    if (size > 0) TERN_LOG(Log::Warn, "Dropped a short record of %zi bytes from %s", size, path().c_str());
    if (size < 0 && errno == ENODEV) return ReadResult::Gone;
    if (size < 0 && errno != EAGAIN) logReadError(errno);
    return ReadResult::Nothing;
}

void EventHandling::logReadError(int error) {
    if (readErrorLogged_) return;
    readErrorLogged_ = true;
    TERN_LOG(Log::Warn, "Read from %s: %s", path().c_str(), std::strerror(error));
}

void EventHandling::deviceGone() {
    TERN_LOG(Log::Warn, "Device %s is gone", path().c_str());
    closeDevice();
    releaseEverything();
    for (bool& ended : contactEnded_) ended = false;
    keysEnded_.reset();
    skipToSync_ = false;
    slot_ = 0;
    start();
}

void EventHandling::closeDevice() {
    if (fd_ >= 0) Platform::close(fd_);
    fd_ = -1;
}

void EventHandling::decode(const input_event& event) {
    if (event.type == Sync) {
        decodeSync(event);
    } else if (skipToSync_) {
        // The kernel threw away what came before: the rest of this frame has lost its context.
    } else if (event.type == Absolute) {
        decodeTouch(event);
    } else if (event.type == Key) {
        decodeKey(event);
    }
}

void EventHandling::decodeSync(const input_event& event) {
    if (event.code == SyncDropped) {
        TERN_LOG(Log::Warn, "Device %s lost events, its keys and contacts are released", path().c_str());
        releaseEverything();
        skipToSync_ = true;
    } else if (skipToSync_) {
        skipToSync_ = event.code != SyncReport;
    } else {
        emitPending();
    }
}

void EventHandling::decodeKey(const input_event& event) {
    if (event.code < keyCount) {
        const bool begins = event.value == 1;
        if (keysEnded_[event.code] && !begins) {
            keysEnded_[event.code] = event.value != 0;
            return;
        }
        keysEnded_[event.code] = false;
        keysDown_[event.code] = event.value != 0;
    }
    if (keyCallback_) keyCallback_(event);
}

void EventHandling::decodeTouch(const input_event& event) {
    if (Log::isLogged(Log::DebugAll)) TERN_LOG(Log::DebugAll, "%8.8s(%3i)", codeText(event.code), event.value);
    if (event.code == MtSlot) {
        emitPending();
        slot_ = event.value;
        phase_ = MOVE;
        return;
    }
    if (!slotInUse()) return;
    if (event.code == MtTrackingId) decodeTracking(event.value);
    if (event.code == MtPositionX) storeCoordinate(touchSecond_, event.value);
    if (event.code == MtPositionY) storeCoordinate(touchFirst_, event.value);
}

void EventHandling::decodeTracking(int value) {
    const bool alreadyEnded = std::exchange(contactEnded_[slot_], false);
    if (value != noTracking) {
        phase_ = TOUCH;
        return;
    }
    if (alreadyEnded) return;
    if (!touchDown_[slot_]) emit(TOUCH);
    phase_ = RELEASE;
    pending_ = true;
}

// The panel has twice the screen's resolution. It is mounted turned: its Y is the screen's x.
void EventHandling::storeCoordinate(int (&coordinates)[slotCount], int value) {
    if (value == 0 || contactEnded_[slot_]) return;
    coordinates[slot_] = value / 2;
    pending_ = true;
}

void EventHandling::emitPending() {
    if (pending_) emit(phase_);
    pending_ = false;
}

void EventHandling::emit(TouchEvent phase) {
    if (touchCallback_) {
        if (phase == RELEASE && !touchDown_[slot_]) {
            pending_ = false;
            phase_ = MOVE;
            return;
        }
        const int first = touchFirst_[slot_];
        const int second = touchSecond_[slot_];
        TERN_LOG(Log::DebugMost, "%i %8.8s @ %3ix%3i", slot_, phaseText(phase), first, second);
        touchCallback_(first, second, phase, slot_);
    }
    if (phase != MOVE) touchDown_[slot_] = phase == TOUCH;
    phase_ = MOVE;
}

void EventHandling::releaseEverything() {
    const int slot = slot_;
    for (slot_ = 0; slot_ < slotCount; ++slot_) {
        if (!touchDown_[slot_]) continue;
        emit(RELEASE);
        contactEnded_[slot_] = true;
    }
    slot_ = slot;
    pending_ = false;
    phase_ = MOVE;
    releaseKeys();
}

void EventHandling::releaseKeys() {
    if (keysDown_.none()) return;
    for (std::size_t code = 0; code < keyCount; ++code) {
        if (!keysDown_[code]) continue;
        keysDown_[code] = false;
        keysEnded_[code] = true;
        if (keyCallback_) keyCallback_({0, 0, Key, static_cast<std::uint16_t>(code), 0});
    }
}
