// Any bytes from an input device, read in passes that end anywhere: no contact outside the two slots is reported, and
// once the device is gone nothing is left down.
#include <errno.h>

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "apps/common/event/eventhandling.h"
#include "apps/common/log/log.h"
#include "platform/virtual/virtual.h"

namespace {

constexpr const char* path = "/dev/input/touchscreen0";
constexpr std::size_t keyCount = 0x300;
constexpr int quiet = Log::Error + 1;

void require(bool good) {
    if (!good) std::abort();
}

struct Unit {
    Platform::Virtual::TemporaryInstance instance;
    Platform::Virtual::Driver driver;
    Unit() {
        Log::threshold = &quiet;
        driver.holdClockAt(0);
        driver.plug(path);
    }
};

struct Down {
    bool contacts[2] = {};
    std::bitset<keyCount> keys;
};

void watch(EventHandling& reader, Down& down) {
    reader.setTouchCallback([&down](int, int, EventHandling::TouchEvent phase, int slot) {
        require(slot == 0 || slot == 1);
        require(phase != EventHandling::RELEASE || down.contacts[slot]);
        if (phase != EventHandling::MOVE) down.contacts[slot] = phase == EventHandling::TOUCH;
    });
    reader.setKeyCallback([&down](const EventHandling::input_event& event) {
        if (event.code < keyCount) down.keys[event.code] = event.value != 0;
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Unit unit;
    Platform::Virtual::clearFaults();
    Down down;
    EventHandling reader(path);
    watch(reader, down);
    const std::size_t pass = size > 0 ? 1 + data[0] : 1;
    for (std::size_t at = 0; at < size; at += pass) {
        require(unit.driver.feed(path, data + at, std::min(pass, size - at)));
        reader.poll();
    }
    Platform::Virtual::failCall(Platform::Virtual::Call::Read, ENODEV, {.path = path});
    reader.poll();
    require(!down.contacts[0] && !down.contacts[1] && down.keys.none());
    return 0;
}
