#include "apps/gui/common/inputeventhandling.h"

#include <algorithm>
#include <utility>

#include "apps/common/log/log.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/trace.h"

namespace {

constexpr int keyType = 1;
constexpr int released = 0;
constexpr int pressed = 1;
constexpr int firstSoftKey = 256;  ///< upper left
constexpr int lastSoftKey = 261;   ///< lower right

/// Each key has two events that follow each other: pressed, released. This floor does not see the model: the numbers
/// are those of its table of events (model/catalogue/events.tsv), Event_ButtonSoft...Pressed.
struct Key {
    int code;
    Engine::EventId pressedEvent;
};

constexpr Key keys[] = {
    {256, 138},  // soft key, upper left
    {257, 140},  // upper middle
    {258, 142},  // upper right
    {259, 144},  // lower left
    {260, 146},  // lower middle
    {261, 148},  // lower right
    {262, 150},  // user key 1
    {263, 152},  // user key 2
    {264, 154},  // user key 3
    {139, 168},  // page
    {116, 174},  // power
    {167, 170},  // record
    {353, 172},  // function
};

/// 0 when there is none, as for the repeats of a held key.
Engine::EventId eventOf(int type, int code, int value) {
    if (type != keyType || (value != pressed && value != released)) return 0;
    const auto* key = std::find_if(std::begin(keys), std::end(keys), [code](const Key& k) { return k.code == code; });
    if (key == std::end(keys)) return 0;
    return key->pressedEvent + (value == released ? 1 : 0);
}

Engine::TouchEvent::Phase phaseOf(EventHandling::TouchEvent phase) {
    return static_cast<Engine::TouchEvent::Phase>(phase);
}
static_assert(static_cast<int>(Engine::TouchEvent::Phase::Down) == EventHandling::TOUCH);
static_assert(static_cast<int>(Engine::TouchEvent::Phase::Up) == EventHandling::RELEASE);
static_assert(static_cast<int>(Engine::TouchEvent::Phase::Move) == EventHandling::MOVE);

}  // namespace

InputEventHandling::InputEventHandling(int width, int height, std::function<void()> lockedKeyCallback)
    : keys1_("/dev/input/by-path/platform-gpio-keys1-event"),
      keys2_("/dev/input/by-path/platform-gpio-keys2-event"),
      power_("/dev/input/by-path/platform-20cc000.snvs:snvs-powerkey-event"),
      touch_("/dev/input/touchscreen0"),
      width_(width),
      height_(height),
      lockedKeyCallback_(std::move(lockedKeyCallback)) {
    for (EventHandling* device : {&keys1_, &keys2_, &power_})
        device->setKeyCallback([this](const EventHandling::input_event& event) {
            handleKey(event.type, event.code, event.value, Source::Device);
        });
    touch_.setTouchCallback(
        [this](int x, int y, EventHandling::TouchEvent phase, int slot) { handleTouch(x, y, phase, slot); });
}

bool InputEventHandling::update(bool keysLocked, bool touchLocked, bool inputOff, bool screenSaverActive) {
    if (inputOff) return screenSaver_;
    touchLocked_ = touchLocked || keysLocked;
    keysLocked_ = keysLocked;
    if (screenSaverActive && !screenSaver_) wakePending_ = false;
    screenSaver_ = screenSaverActive;
    keys1_.poll();
    keys2_.poll();
    keysLocked_ = false;
    touch_.poll();
    touchLocked_ = false;
    power_.poll();
    return screenSaver_;
}

void InputEventHandling::simulateKey(std::uint32_t packedKey) {
    handleKey(static_cast<int>(packedKey >> 24), static_cast<int>(packedKey >> 8 & 0xffff),
              static_cast<int>(packedKey & 0xff), Source::Simulation);
}

std::uint32_t InputEventHandling::packedKeyOf(Engine::EventId eventId) {
    for (const Key& key : keys)
        for (const int value : {pressed, released})
            if (eventOf(keyType, key.code, value) == eventId)
                return static_cast<std::uint32_t>(keyType << 24 | key.code << 8 | value);
    return 0;
}

void InputEventHandling::setExtraEvent(Engine::EventId eventId, Engine::EventId extraId) {
    if (extraId == 0)
        extraEvents_.erase(eventId);
    else
        extraEvents_[eventId] = extraId;
}

// Keys.

void InputEventHandling::handleKey(int type, int code, int value, Source source) {
    if (keysLocked_) {
        if (lockedKeyCallback_) lockedKeyCallback_();
        return;
    }
    if (rotated_ && code >= firstSoftKey && code <= lastSoftKey) code = firstSoftKey + lastSoftKey - code;
    if (screenSaver_ && keyWakes(code, value)) return;
    if (const Engine::EventId eventId = eventOf(type, code, value)) postKeyEvent(eventId, source);
}

bool InputEventHandling::keyWakes(int code, int value) {
    if (value != released) {
        wakePending_ = true;
        return true;
    }
    if (!wakePending_) return false;
    wake(code);
    return true;
}

void InputEventHandling::postKeyEvent(Engine::EventId eventId, Source source) {
    Engine::GuiManager& manager = Engine::GuiManager::instance();
    TERN_LOG(Log::LogAll, "%s Key: %s", source == Source::Device ? "USER" : "SIMULATE",
             Engine::Trace::instance().eventName(eventId));
    if (const auto extra = extraEvents_.find(eventId); extra != extraEvents_.end()) manager.postEvent(extra->second);
    manager.postEvent(eventId);
}

// Touches.

void InputEventHandling::handleTouch(int x, int y, EventHandling::TouchEvent phase, int slot) {
    if (touchLocked_) return;
    if (rotated_) {
        x = width_ - x;
        y = height_ - y;
    }
    if (phase != EventHandling::MOVE)
        TERN_LOG(Log::LogAll, "USER Touch: %s/%i at %ix%i", phase == EventHandling::TOUCH ? "touch" : "release", slot,
                 x, y);
    if (screenSaver_)
        touchWakes(phase);
    else
        Engine::GuiManager::instance().handleTouch({x, y, phaseOf(phase), slot});
}

void InputEventHandling::touchWakes(EventHandling::TouchEvent phase) {
    if (phase == EventHandling::TOUCH)
        wakePending_ = true;
    else if (phase == EventHandling::RELEASE && wakePending_)
        wake(touchKey);
}

void InputEventHandling::wake(int key) {
    screenSaver_ = false;
    lastKey_ = key;
}
