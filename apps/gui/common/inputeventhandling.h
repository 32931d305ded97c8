#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "apps/common/event/eventhandling.h"
#include "embedded-gui-engine/eventmatcher.h"

/// Turns the unit's keys and touch screen into events and touch records of the engine, honouring rotation, key lock,
/// touch lock and the screen saver. A device that is missing does not stop the others.
class InputEventHandling {
  public:
    /// The code that `lastKey` gives for a touch.
    static constexpr int touchKey = 330;

    /// The size of the screen in pixels. `lockedKeyCallback` is told of each edge of a key while keys are locked; it
    /// may be empty.
    InputEventHandling(int width, int height, std::function<void()> lockedKeyCallback);
    InputEventHandling(const InputEventHandling&) = delete;
    InputEventHandling& operator=(const InputEventHandling&) = delete;

    /// Reads the devices; nothing at all while `inputOff`. The key lock covers the touch screen and never the power
    /// key. Answers whether the screen saver stays active: the release of a key or of a touch ends it, and neither
    /// that release nor its press is delivered.
    bool update(bool keysLocked, bool touchLocked, bool inputOff, bool screenSaverActive);

    /// A key as if it came from a device: type << 24 | code << 8 | value.
    void simulateKey(std::uint32_t packedKey);

    /// The packed key that causes an event, 0 when none does.
    static std::uint32_t packedKeyOf(Engine::EventId eventId);

    /// Lets `extraId` be posted before each `eventId` that a key causes; 0 takes it away again.
    void setExtraEvent(Engine::EventId eventId, Engine::EventId extraId);

    /// The unit is held upside down: the soft keys change places and touches are mirrored.
    void setRotated(bool rotated) { rotated_ = rotated; }

    /// The code of the key that ended the screen saver last, 0 before the first time.
    int lastKey() const { return lastKey_; }

  private:
    enum class Source { Device, Simulation };

    void handleKey(int type, int code, int value, Source source);
    /// True when the screen saver takes the record.
    bool keyWakes(int code, int value);
    void postKeyEvent(Engine::EventId eventId, Source source);
    void handleTouch(int x, int y, EventHandling::TouchEvent phase, int slot);
    void touchWakes(EventHandling::TouchEvent phase);
    void wake(int key);

    EventHandling keys1_;
    EventHandling keys2_;
    EventHandling power_;
    EventHandling touch_;
    int width_;
    int height_;
    std::function<void()> lockedKeyCallback_;
    bool rotated_ = false;
    bool keysLocked_ = false;
    bool touchLocked_ = false;
    bool screenSaver_ = false;
    int lastKey_ = 0;
    bool wakePending_ = false;  ///< a press or touch was seen since the screen saver began
    std::map<Engine::EventId, Engine::EventId> extraEvents_;
};
