#include "unit/server/modules/bluetooth.h"

#include <array>

#include "model/catalogue/enums.h"

namespace Unit {

using Model::BluetoothDeviceState;

namespace {

struct Known {
    const char* address;
    const char* name;
    bool pairs;
};
// The first is paired from earlier, the last one turns up when it looks for the unit itself.
constexpr std::array known = {
    Known{"00:1B:44:11:3A:B7", "Focus tablet", true}, Known{"00:1B:44:11:3A:C2", "Script laptop", true},
    Known{"7C:9E:BD:00:41:10", "Headphones", false}, Known{"7C:9E:BD:00:41:52", "Second unit", true},
    Known{"A4:C1:38:55:02:9F", "Phone", true}};

constexpr double scanTime = 8, timePerDevice = 2, visibleTime = 120, visitAfter = 5, pairingTime = 2;

constexpr std::int32_t number(BluetoothDeviceState state) {
    return static_cast<std::int32_t>(state);
}

}  // namespace

Bluetooth::Bluetooth(Store& values) : Module("bluetooth", values) {
    settingFlag(
        "adapter", [this](bool there) { available_.set(there); }, [this] { return available_.get(); });
    hear(scan_, [this] { scanned_ = 0; });
    hear(discoverable_, [this] { visible_ = 0; });
    hear(firstState_, [this] { pairing_ = 0; });
}

void Bluetooth::powerUp() {
    available_.set(true);
    powered_ = false;
    switchPower();
}

void Bluetooth::switchPower() {
    scan_.set(false);
    discoverable_.set(false);
    count_.set(0);
    if (powered_) addDevice(0, number(BluetoothDeviceState::Paired));
}

void Bluetooth::addDevice(std::size_t index, std::int32_t state) {
    for (std::size_t row = 0; row < names_.live(count_); ++row)
        if (addresses_.text(row) == known[index].address) return;
    const auto row = names_.live(count_);
    if (row >= names_.rows()) return;
    addresses_.setText(row, known[index].address);
    names_.setText(row, known[index].name);
    states_.setInteger(row, state);
    count_.set(static_cast<std::int32_t>(row) + 1);
}

void Bluetooth::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    if (const bool on = power_ && available_; on != powered_) {
        powered_ = on;
        switchPower();
    }
    if (!powered_) {
        scan_.set(false);
        discoverable_.set(false);
        return;
    }
    if (scan_) {
        scanned_ += seconds;
        for (std::size_t i = 1; i + 1 < known.size() && scanned_ >= timePerDevice * static_cast<double>(i); ++i)
            addDevice(i, number(BluetoothDeviceState::Found));
        if (scanned_ >= scanTime) scan_.set(false);
    }
    if (discoverable_) {
        visible_ += seconds;
        if (visible_ >= visitAfter) addDevice(known.size() - 1, number(BluetoothDeviceState::Paired));
        if (visible_ >= visibleTime) discoverable_.set(false);
    }
    pair(seconds);
}

void Bluetooth::pair(double seconds) {
    bool any = false;
    for (std::size_t row = 0; row < names_.live(count_); ++row) {
        if (states_.integer(row) != number(BluetoothDeviceState::Pairing)) continue;
        any = true;
        if (pairing_ + seconds < pairingTime) continue;
        bool pairs = false;
        for (const Known& device : known) pairs = pairs || (device.pairs && addresses_.text(row) == device.address);
        states_.setInteger(row, number(pairs ? BluetoothDeviceState::Paired : BluetoothDeviceState::Failed));
    }
    pairing_ = any ? pairing_ + seconds : 0;
}

}  // namespace Unit
