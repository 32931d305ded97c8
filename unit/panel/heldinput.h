#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>

#include "unit/ctl/inputdevices.h"

namespace Unit {

/// What several people hold of one unit: a key is down as long as anybody holds it, and the touch panel belongs to
/// whoever touched it first, until that one lets go. Who vanishes lets go of everything.
class HeldInput {
  public:
    using Person = std::uint32_t;

    /// `devices` must outlive this.
    explicit HeldInput(InputDevices& devices) : devices_(devices) {}

    /// Both throw Problem when the devices are full.
    void key(Person person, const NamedKey& key, bool down);
    void touch(Person person, const Contacts& contacts);
    void letGo(Person person);

  private:
    InputDevices& devices_;
    std::map<const NamedKey*, std::set<Person>> keys_;
    std::optional<Person> toucher_;
};

}  // namespace Unit
