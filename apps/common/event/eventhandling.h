#pragma once

#include <bitset>
#include <cstdint>
#include <functional>

#include "apps/libs/delayedopen/delayedopen.h"

/// Reads one Linux input device and decodes it into key records and multi-touch contacts (protocol B). A device that
/// is missing or vanishes is no error: `poll` does nothing until it can be opened or the timeout of DelayedOpen is
/// over.
///
/// After an overrun of the kernel's queue, and when the device vanishes, each contact ends with a release and each key
/// that was down gets a release record; what the kernel later tells of those contacts and keys is ignored until
/// they begin anew.
class EventHandling : public DelayedOpen {
  public:
    enum TouchEvent : int { TOUCH = 0, RELEASE = 1, MOVE = 2 };

    /// The device's record with 32-bit times, as the target's kernel writes it on every machine of ours.
    struct input_event {
        std::uint32_t seconds;
        std::uint32_t microseconds;
        std::uint16_t type;
        std::uint16_t code;
        std::int32_t value;
    };
    static_assert(sizeof(input_event) == 16);

    /// `first` and `second` are the screen's x and y in pixels; `slot` is 0 or 1.
    using TouchCallback = std::function<void(int first, int second, TouchEvent phase, int slot)>;
    using KeyCallback = std::function<void(const input_event& event)>;

    explicit EventHandling(std::string path);
    ~EventHandling() override;

    /// Either may be empty. Not to be called from within a callback.
    void setTouchCallback(TouchCallback callback);
    void setKeyCallback(KeyCallback callback);

    /// Opens the device if need be and handles all records that it has now. Whether the device was open.
    bool poll() override;

  protected:
    bool tryOpen() override;

  private:
    static constexpr int slotCount = 2;
    static constexpr std::size_t keyCount = 0x300;

    enum class ReadResult { Record, Nothing, Gone };

    ReadResult readRecord(input_event& event);
    void logReadError(int error);
    void deviceGone();
    void decode(const input_event& event);
    void decodeKey(const input_event& event);
    void decodeSync(const input_event& event);
    void decodeTouch(const input_event& event);
    void decodeTracking(int value);
    void storeCoordinate(int (&coordinates)[slotCount], int value);
    void emitPending();
    void emit(TouchEvent phase);
    void releaseEverything();
    void releaseKeys();
    void closeDevice();
    bool slotInUse() const { return slot_ >= 0 && slot_ < slotCount; }

    int fd_ = -1;
    int touchFirst_[slotCount] = {};
    int touchSecond_[slotCount] = {};
    bool touchDown_[slotCount] = {};
    int slot_ = 0;
    TouchCallback touchCallback_;
    KeyCallback keyCallback_;

    bool pending_ = false;
    TouchEvent phase_ = MOVE;
    bool skipToSync_ = false;
    bool readErrorLogged_ = false;
    // Contacts and keys that were ended before the device said so.
    bool contactEnded_[slotCount] = {};
    std::bitset<keyCount> keysDown_;
    std::bitset<keyCount> keysEnded_;
};
