#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/virtual/driver.h"

namespace Unit {

struct NamedKey {
    const char* name;
    int code;
    const char* device;
};

/// Every key of the unit, by the name that the command line knows it by.
extern const std::vector<NamedKey> namedKeys;

/// A point of the display in its physical orientation, in pixels.
struct TouchPoint {
    int x;
    int y;

    bool operator==(const TouchPoint&) const = default;
};

/// The contacts of the touch panel, by slot.
using Contacts = std::array<std::optional<TouchPoint>, 2>;

/// Speaks as the unit's keys and touch panel, in their drivers' records.
class InputDevices {
  public:
    /// `driver` must outlive this. Plugs the devices in; the product finds them from now on.
    explicit InputDevices(Platform::Virtual::Driver& driver);

    void key(const NamedKey& key, bool down);
    /// A contact begins; `slot` is 0 or 1.
    void touch(int slot, TouchPoint point);
    /// Contacts move, all in one report; the index is the slot.
    void move(const std::vector<TouchPoint>& points);
    void release(int slots);
    /// What has become of the contacts since the last call, in one report; nothing when they are the same.
    void contacts(const Contacts& now);

  private:
    struct Report;

    Platform::Virtual::Driver& driver_;
    int tracking_ = 0;
    Contacts contacts_;
};

}  // namespace Unit
