// The verbs of Client that are hands: keys, the touch panel and the stick, in frames of lockstep or in real time.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <nlohmann/json.hpp>
#include <thread>

#include "unit/ctl/client.h"
#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace {

constexpr unsigned framesPerSecond = 60;

const NamedKey& keyNamed(const std::string& name) {
    std::vector<std::string> names;
    for (const NamedKey& key : namedKeys) {
        if (name == key.name) return key;
        names.push_back(key.name);
    }
    std::string known;
    for (const auto& one : names) known += " " + one;
    throw Problem("There is no key \"" + name + "\"." + suggestion(name, names) + " The keys:" + known);
}

int between(int from, int to, unsigned step, unsigned steps) {
    return from + static_cast<int>(std::lround(static_cast<double>(to - from) * step / steps));
}

}  // namespace

InputDevices& Client::devices() {
    if (!devices_) devices_ = std::make_unique<InputDevices>(driver());
    return *devices_;
}

void Client::checkPoint(TouchPoint point) {
    const int width = static_cast<int>(driver().width()), height = static_cast<int>(driver().height());
    if (point.x >= 0 && point.x < width && point.y >= 0 && point.y < height) return;
    throw Problem("The point " + std::to_string(point.x) + " " + std::to_string(point.y) +
                  " is off the display; x goes from 0 to " + std::to_string(width - 1) + ", y from 0 to " +
                  std::to_string(height - 1) + ".");
}

/// As many frames as `milliseconds` hold, at least `least`. Before each of them `before` is told its number and that of
/// the last one, and has its input seen by that frame.
void Client::runFrames(unsigned milliseconds, unsigned least,
                       const std::function<void(unsigned frame, unsigned last)>& before) {
    using Clock = std::chrono::steady_clock;
    const bool lockstep = unitStatus().at("pacing") == "lockstep";
    const unsigned frames = std::max(least, (milliseconds * framesPerSecond + 500) / 1000);
    const auto begin = Clock::now();
    for (unsigned frame = 0; frame < frames; ++frame) {
        before(frame, frames - 1);
        if (lockstep)
            askSupervisor("step 1", 60'000);
        else
            std::this_thread::sleep_until(begin + std::chrono::microseconds(1'000'000) * (frame + 1) / framesPerSecond);
    }
    print("", {{"frames", frames}});
}

void Client::key(const std::string& name, bool down) {
    devices().key(keyNamed(name), down);
    print("", {{"key", name}, {"down", down}});
}

void Client::press(const std::string& name, unsigned milliseconds) {
    const NamedKey& key = keyNamed(name);
    runFrames(milliseconds, 2, [&](unsigned frame, unsigned last) {
        if (frame == 0 || frame == last) devices().key(key, frame == 0);
    });
}

void Client::touch(TouchPoint point, unsigned milliseconds) {
    checkPoint(point);
    runFrames(milliseconds, 2, [&](unsigned frame, unsigned last) {
        if (frame == 0) devices().touch(0, point);
        if (frame == last) devices().release(1);
    });
}

void Client::drag(TouchPoint from, TouchPoint to, unsigned milliseconds) {
    checkPoint(from);
    checkPoint(to);
    runFrames(milliseconds, 3, [&](unsigned frame, unsigned last) {
        if (frame == 0) return devices().touch(0, from);
        if (frame == last) return devices().release(1);
        devices().move({{between(from.x, to.x, frame, last - 1), between(from.y, to.y, frame, last - 1)}});
    });
}

void Client::pinch(TouchPoint centre, int from, int to, unsigned milliseconds) {
    const auto left = [&](int distance) { return TouchPoint{centre.x - distance / 2, centre.y}; };
    const auto right = [&](int distance) { return TouchPoint{centre.x - distance / 2 + distance, centre.y}; };
    for (const int distance : {from, to}) {
        if (distance < 1) throw Problem("The contacts of a pinch are at least 1 pixel apart.");
        checkPoint(left(distance));
        checkPoint(right(distance));
    }
    runFrames(milliseconds, 3, [&](unsigned frame, unsigned last) {
        if (frame == 0) {
            devices().touch(0, left(from));
            devices().touch(1, right(from));
        } else if (frame == last) {
            devices().release(2);
        } else {
            const int distance = between(from, to, frame, last - 1);
            devices().move({left(distance), right(distance)});
        }
    });
}

void Client::joystick(double x, double y, unsigned milliseconds) {
    if (std::isnan(x) || std::isnan(y) || std::abs(x) > 1 || std::abs(y) > 1)
        throw Problem("The stick goes from -1 to 1 in both directions.");
    const Output output = output_;
    output_ = Output::Text;
    const auto hold = [&](double toX, double toY) {
        set("VarJoystickX", std::to_string(toX));
        set("VarJoystickY", std::to_string(toY));
    };
    runFrames(milliseconds, 2, [&](unsigned frame, unsigned last) {
        if (frame == 0) hold(x, y);
        if (frame == last) hold(0, 0);
    });
    output_ = output;
    print("", {{"x", x}, {"y", y}});
}

}  // namespace Unit
