#include "unit/ctl/inputdevices.h"

#include <linux/input-event-codes.h>

#include <algorithm>

#include "apps/common/event/eventhandling.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace {

constexpr const char* keys1 = "/dev/input/by-path/platform-gpio-keys1-event";
constexpr const char* keys2 = "/dev/input/by-path/platform-gpio-keys2-event";
constexpr const char* powerKey = "/dev/input/by-path/platform-20cc000.snvs:snvs-powerkey-event";
constexpr const char* panel = "/dev/input/touchscreen0";

constexpr int noTracking = -1;

/// The panel has twice the display's resolution. 0 means that it knows nothing, so the first line and column are 1.
int panelPosition(int pixel) {
    return std::max(1, 2 * pixel);
}

}  // namespace

const std::vector<NamedKey> namedKeys = {
    {"ul", 256, keys1},       {"um", 257, keys1},   {"ur", 258, keys1},     {"ll", 259, keys1},
    {"lm", 260, keys1},       {"lr", 261, keys1},   {"user1", 262, keys1},  {"user2", 263, keys1},
    {"user3", 264, keys1},    {"page", 139, keys2}, {"record", 167, keys2}, {"function", 353, keys2},
    {"power", 116, powerKey},
};

/// Records that the product is to see in one go.
struct InputDevices::Report {
    std::vector<EventHandling::input_event> records;

    void add(int type, int code, int value) {
        records.push_back({0, 0, static_cast<std::uint16_t>(type), static_cast<std::uint16_t>(code), value});
    }
    void position(TouchPoint point) {
        add(EV_ABS, ABS_MT_POSITION_X, panelPosition(point.y));
        add(EV_ABS, ABS_MT_POSITION_Y, panelPosition(point.x));
    }
    void sendTo(Platform::Virtual::Driver& driver, const char* device) {
        add(EV_SYN, SYN_REPORT, 0);
        if (!driver.feed(device, records.data(), records.size() * sizeof records[0]))
            throw Problem("The product does not read its input devices; they are full. Look at it: unitctl status.");
    }
};

InputDevices::InputDevices(Platform::Virtual::Driver& driver) : driver_(driver) {
    for (const char* device : {keys1, keys2, powerKey, panel}) driver_.plug(device);
}

void InputDevices::key(const NamedKey& key, bool down) {
    Report report;
    report.add(EV_KEY, key.code, down ? 1 : 0);
    report.sendTo(driver_, key.device);
}

void InputDevices::touch(int slot, TouchPoint point) {
    Report report;
    report.add(EV_ABS, ABS_MT_SLOT, slot);
    report.add(EV_ABS, ABS_MT_TRACKING_ID, ++tracking_);
    report.position(point);
    report.sendTo(driver_, panel);
}

void InputDevices::move(const std::vector<TouchPoint>& points) {
    Report report;
    for (std::size_t slot = 0; slot < points.size(); ++slot) {
        report.add(EV_ABS, ABS_MT_SLOT, static_cast<int>(slot));
        report.position(points[slot]);
    }
    report.sendTo(driver_, panel);
}

void InputDevices::release(int slots) {
    Report report;
    for (int slot = 0; slot < slots; ++slot) {
        report.add(EV_ABS, ABS_MT_SLOT, slot);
        report.add(EV_ABS, ABS_MT_TRACKING_ID, noTracking);
    }
    report.sendTo(driver_, panel);
}

void InputDevices::contacts(const Contacts& now) {
    Report report;
    for (std::size_t slot = 0; slot < now.size(); ++slot) {
        if (now[slot] == contacts_[slot]) continue;
        report.add(EV_ABS, ABS_MT_SLOT, static_cast<int>(slot));
        if (!now[slot])
            report.add(EV_ABS, ABS_MT_TRACKING_ID, noTracking);
        else if (!contacts_[slot])
            report.add(EV_ABS, ABS_MT_TRACKING_ID, ++tracking_);
        if (now[slot]) report.position(*now[slot]);
    }
    if (report.records.empty()) return;
    report.sendTo(driver_, panel);
    contacts_ = now;
}

}  // namespace Unit
