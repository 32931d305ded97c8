#include "tests/whole/monkey.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "apps/common/event/eventhandling.h"
#include "embedded-gui-engine/guimanager.h"
#include "model/catalogue/constants.h"
#include "model/catalogue/places.h"
#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"

namespace {

constexpr const char* scenes[] = {
    "",          "camera-recording", "day",       "left-handed",           "night",          "no-lens",
    "no-motors", "prime-metres",     "usb-stick", "skippable-calibration", "zoom-feet-marks"};

constexpr const char* devices[] = {
    "/dev/input/by-path/platform-gpio-keys1-event", "/dev/input/by-path/platform-gpio-keys2-event",
    "/dev/input/by-path/platform-20cc000.snvs:snvs-powerkey-event", "/dev/input/touchscreen0"};

/// All messages may wait to be read, some of them closed by the left key alone; then a few pages lie on the way.
constexpr int keysToHome = 60;

/// Numbers that break things.
constexpr std::int32_t oddNumbers[] = {0, 1, -1, 2, 15, 16, 255, 0x7fffffff, std::numeric_limits<std::int32_t>::min()};
constexpr float oddFractions[] = {
    0,   -1, 1e-30F, 1e30F, -1e30F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(),
    0.5F};

constexpr const Places::Place& traceWords = Places::VarTRACE_INFO_VARIABLE;

const Catalogue::Table* tableOf(int index) {
    return &Catalogue::tables[static_cast<std::size_t>(index) % Catalogue::tables.size()];
}

}  // namespace

Monkey::Monkey(WholeUnit& unit, unsigned seed) : unit_(unit), random_(seed) {
    log_.open(Platform::Virtual::path("/dev/kmsg"));
    log_.seekg(0, std::ios::end);
}

bool Monkey::step() {
    whim();
    // What the monkey watches by: the keys in the log, and no more than needed beside them.
    unit_.poke("VarAppGuiLogLevel", "3");
    std::memset(unit_.server().area(static_cast<std::size_t>(traceWords.area)) + traceWords.offset, 0, traceWords.size);
    unit_.frames(any(8) == 0 ? 1 + any(30) : 1);
    check();
    return problem_.empty();
}

void Monkey::whim() {
    const int what = any(100);
    if (what < 18) return moveKey();
    if (what < 40) return moveFinger();
    if (what < 52) return turnControls();
    if (what < 57) return changeHardware();
    if (what < 72) return changeValue();
    if (what < 77) return changeCell();
    if (what < 82) return sendNotices();
    if (what < 86) return sendEverything();
    if (what < 87) return switchOn();
    if (what < 89) return spoilMemory();
    if (what < 90) return spoilInput();
}

// A person.

void Monkey::moveKey() {
    const Unit::NamedKey& key = anyOf(Unit::namedKeys);
    if (down_.contains(&key)) return release(key);
    down_.insert(&key);
    unit_.devices().key(key, true);
}

void Monkey::release(const Unit::NamedKey& key) {
    down_.erase(&key);
    unit_.devices().key(key, false);
    noteRelease();
}

/// A lock that is on when the device is read takes the release: one that stands, or comes with the next frame.
void Monkey::noteRelease() {
    releases_ = true;
    if (!keysCount()) swallowed_.insert(held_.begin(), held_.end());
}

void Monkey::moveFinger() {
    const std::size_t slot = fingers_[0].down && any(3) == 0 ? 1 : 0;
    Finger& finger = fingers_[slot];
    const Unit::TouchPoint somewhere = {any(240), any(400)};
    if (!finger.down) {
        finger = {true, somewhere};
        unit_.devices().touch(static_cast<int>(slot), somewhere);
    } else if (any(3) != 0) {
        finger.at = any(4) == 0 ? somewhere
                                : Unit::TouchPoint{std::clamp(finger.at.x + any(21) - 10, 0, 239),
                                                   std::clamp(finger.at.y + any(41) - 20, 0, 399)};
        std::vector<Unit::TouchPoint> points = {fingers_[0].at};
        if (fingers_[1].down) points.push_back(fingers_[1].at);
        unit_.devices().move(points);
    } else {
        unit_.devices().release(fingers_[1].down ? 2 : 1);
        fingers_ = {};
    }
}

void Monkey::turnControls() {
    static constexpr const char* controls[] = {"knob", "slider", "stick-x", "stick-y"};
    const char* control = anyOf(controls);
    const double to = control[1] == 't' && any(2) == 0 ? 0 : any(101) / 100.0;
    unit_.act("hands", control, std::to_string(to));
}

void Monkey::changeHardware() {
    struct Change {
        const char* module;
        const char* setting;
        std::vector<const char*> values;
    };
    static const std::vector<const char*> motor = {"absent",      "new",   "not-calibrated", "skippable",
                                                   "calibrating", "ready", "lost",           "error"};
    static const std::vector<Change> changes = {
        {"motors", "focus", motor},
        {"motors", "iris", motor},
        {"motors", "zoom", motor},
        {"motors", "aux", motor},
        {"motors", "cinefade", motor},
        {"lens", "lens", {"none", "prime-35", "prime-75", "zoom-25-250"}},
        {"camera", "camera", {"none", "orvo", "partner"}},
        {"camera", "recording", {"true", "false"}},
        {"camera", "state", {"0", "1", "2", "3", "4", "6", "8"}},
        {"radio", "quality", {"0", "1", "2", "3", "4"}},
        {"radio", "connected", {"true", "false"}},
        {"power", "battery", {"0", "3", "50", "100"}},
        {"power", "external", {"true", "false"}},
        {"files", "usb", {"true", "false"}},
    };
    const Change& change = anyOf(changes);
    unit_.act(change.module, change.setting, anyOf(change.values));
}

// The server.

void Monkey::write(int area, std::uint32_t offset, const void* data, std::size_t size) {
    std::memcpy(unit_.server().area(static_cast<std::size_t>(area)) + offset, data, size);
}

void Monkey::changeValue() {
    const Catalogue::Value& value = anyOf(Catalogue::values);
    if (value.area == Catalogue::noArea) return;
    if (value.size == 4) {
        const float fraction = any(2) == 0 ? anyOf(oddFractions) : static_cast<float>(any(2000) - 1000) / 100;
        const std::int32_t number = any(2) == 0 ? anyOf(oddNumbers) : any(12);
        if (value.kind == Catalogue::Kind::Float)
            write(value.area, value.offset, &fraction, sizeof fraction);
        else
            write(value.area, value.offset, &number, sizeof number);
    } else {
        const bool full = any(4) == 0;
        for (std::uint32_t i = 0; i < value.size; ++i) {
            const auto byte = static_cast<unsigned char>(value.size == 1 ? any(2)
                                                         : full          ? 1 + any(255)
                                                                         : any(2) * any(128));
            write(value.area, value.offset + i, &byte, 1);
        }
    }
    unit_.server().notify(value.id);
}

void Monkey::changeCell() {
    const Catalogue::Table& table = *tableOf(any(1 << 20));
    const int row = any(table.rows);
    for (const Catalogue::Field& field : table.fields) {
        const std::uint32_t offset = table.base + static_cast<std::uint32_t>(row) * table.stride + field.offset;
        const float fraction = any(3) == 0 ? anyOf(oddFractions) : static_cast<float>(any(1000)) / 1000;
        const std::int32_t number = any(3) == 0 ? anyOf(oddNumbers) : any(8);
        if (field.kind == Catalogue::Kind::Float)
            write(table.area, offset, &fraction, sizeof fraction);
        else if (field.size == 4)
            write(table.area, offset, &number, sizeof number);
        else
            for (std::uint32_t i = 0; i < field.size; ++i) {
                const auto byte = static_cast<unsigned char>(any(256));
                write(table.area, offset + i, &byte, 1);
            }
    }
    unit_.server().notify(table.id);
}

void Monkey::sendNotices() {
    std::vector<std::uint32_t> ids;
    for (int i = any(40); i >= 0; --i) ids.push_back(static_cast<std::uint32_t>(any(1400)));
    unit_.server().notify(ids);
}

void Monkey::sendEverything() {
    std::vector<std::uint32_t> ids(Catalogue::subscriptions.begin(), Catalogue::subscriptions.end());
    // Each of those writes a picture file, which would be most of the monkey's work.
    if (any(20) != 0) std::erase(ids, Catalogue::findValue("VarGuiScreenCaptureName")->id);
    unit_.server().notify(ids);
    announced_ = true;
}

void Monkey::switchOn() {
    unit_.scene(anyOf(scenes));
}

// Accidents.

void Monkey::spoilMemory() {
    const int area = any(static_cast<int>(Catalogue::areas.size()));
    const auto size = static_cast<int>(Catalogue::areas[static_cast<std::size_t>(area)].size);
    const int begin = any(size);
    const int length = std::min(1 + any(64), size - begin);
    for (int i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(any(256));
        write(area, static_cast<std::uint32_t>(begin + i), &byte, 1);
    }
    announced_ = false;
}

void Monkey::spoilInput() {
    std::vector<EventHandling::input_event> records;
    for (int i = any(20); i >= 0; --i)
        records.push_back(
            {0, 0, static_cast<std::uint16_t>(any(4)), static_cast<std::uint16_t>(any(60)), any(500) - 1});
    // The kernel's own word for lost records, which lets everything go.
    records.push_back({0, 0, 0, 3, 0});
    records.push_back({0, 0, 0, 0, 0});
    const char* device = anyOf(devices);
    unit_.driver().feed(device, records.data(), records.size() * sizeof records[0]);
    if (device == std::string(devices[3])) fingers_ = {};
    noteRelease();
}

// What holds.

bool Monkey::keysCount() const {
    for (const char* lock : {"VarButtonsLocked", "VarServiceModeEnabled", "VarScreenSaverActive"})
        if (flag(lock)) return false;
    return true;
}

void Monkey::check() {
    ++pages_[unit_.page()];
    noteTurn();
    readLog();
    if (any(2) == 0) checkPicture();
    if (any(150) == 0) goHome();
}

/// A unit that is turned round while a key is held takes it for another one from then on.
void Monkey::noteTurn() {
    const bool turned = std::exchange(rotation_, unit_.rotation()) != unit_.rotation();
    const bool locked = std::exchange(releases_, false) && !keysCount();
    if (turned || locked) swallowed_.insert(held_.begin(), held_.end());
}

/// What is on the screen is what drawing everything anew gives. Where a text in memory was spoilt and nobody told, the
/// new drawing would show it.
void Monkey::checkPicture() {
    if (!announced_ || flag("VarScreenSaverActive") || unit_.get("VarServiceModeDisplayTest") != "0") return;
    ++comparisons_;
    const auto shown = unit_.shot();
    const auto anew = unit_.redrawn();
    std::size_t at = 0;
    while (at < anew.pixels.size() && shown.pixels[at] == anew.pixels[at]) ++at;
    if (at == anew.pixels.size()) return;
    fail("the picture of " + unit_.page() + " is not what drawing it anew gives, first at " +
         std::to_string(at % anew.width) + ", " + std::to_string(at / anew.width));
}

/// The log says what the keys did: "USER Key: Event_ButtonSoftULPressed".
void Monkey::readLog() {
    static const std::string mark = "USER Key: Event_ButtonSoft";
    std::string line;
    while (std::getline(log_, line)) {
        const auto at = line.find(mark);
        if (at == std::string::npos) continue;
        std::string name = line.substr(at + mark.size());
        if (name.ends_with("Pressed")) {
            held_.insert(name.substr(0, name.size() - 7));
        } else if (name.ends_with("Released")) {
            name.resize(name.size() - 8);
            held_.erase(name);
            swallowed_.erase(name);
        }
    }
    log_.clear();
}

void Monkey::letGo() {
    while (!down_.empty()) release(**down_.begin());
    unit_.devices().release(2);
    fingers_ = {};
}

/// However it stands: with hands off the unit, and its locks off, the keys lead home.
void Monkey::goHome() {
    ++homecomings_;
    for (const char* lock : {"VarServiceModeEnabled", "VarButtonsLocked", "VarDisableTouchscreen", "VarTemp_TouchLock",
                             "VarScreenSaverActive", "VarServiceModeDisplayTest"})
        unit_.set(lock, "0");
    sendEverything();
    unit_.frames(2);
    noteTurn();
    letGo();
    unit_.frames(3);
    readLog();
    checkReleases();
    std::string way;
    for (int round = 0; round < keysToHome && !isHome(); ++round) {
        way += " " + unit_.page() + (flag("VarMessageIsVisible") ? "(message)" : "");
        unit_.press(flag("VarMessageIsVisible") ? messageKey(round % 3 != 2) : "page", 2);
        unit_.frames(4);
    }
    if (!isHome()) fail("the keys do not lead home:" + way);
}

/// The keys below a message, where they are when the unit is turned round.
const char* Monkey::messageKey(bool right) const {
    if (unit_.rotation() == 0) return right ? "lr" : "ll";
    return right ? "ul" : "ur";
}

bool Monkey::isHome() const {
    return unit_.page() == "Home_LDD" && !flag("VarMessageIsVisible");
}

void Monkey::checkReleases() {
    for (const std::string& key : held_)
        if (!swallowed_.contains(key)) fail("the release of " + key + " is lost");
    held_.clear();
    swallowed_.clear();
    const Engine::GuiManager& manager = Engine::GuiManager::instance();
    if (manager.touchGrabber() != nullptr || manager.gesture().down) fail("a touch never ends");
}

void Monkey::fail(const std::string& what) {
    if (problem_.empty()) problem_ = what;
}

std::string Monkey::summary() const {
    std::string text = std::to_string(comparisons_) + " pictures compared, " + std::to_string(homecomings_) +
                       " times home; steps by page:";
    for (const auto& [page, count] : pages_) text += " " + page + " " + std::to_string(count);
    return text;
}
