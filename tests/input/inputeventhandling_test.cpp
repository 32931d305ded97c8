// From records of the devices to events and touches of the engine.
#include "apps/gui/common/inputeventhandling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/widget.h"
#include "fakeplatform.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* keys1 = "/dev/input/by-path/platform-gpio-keys1-event";
constexpr const char* power = "/dev/input/by-path/platform-20cc000.snvs:snvs-powerkey-event";
constexpr const char* touchScreen = "/dev/input/touchscreen0";

/// Matches everything and remembers it.
class Listener : public Engine::EventMatcher {
  public:
    bool matches(Engine::EventId eventId) const override {
        heard.push_back(eventId);
        return true;
    }
    mutable std::vector<Engine::EventId> heard;
};

class TouchPad : public Engine::Widget {
  public:
    TouchPad() : Widget({.width = 240, .height = 400}) {}
    void draw(Engine::Painter&, Engine::Rect) override {}
    bool acceptsTouch() const override { return true; }
    bool handleTouch(const Engine::TouchEvent& event) override {
        touches.emplace_back(static_cast<int>(event.phase), event.x, event.y, event.finger);
        return true;
    }
    std::vector<std::tuple<int, int, int, int>> touches;
};

class Input : public testing::Test {
  protected:
    Input() {
        FakePlatform::devices = {{keys1, {}}, {power, {}}, {touchScreen, {}}};
        FakePlatform::log.clear();
        Engine::GuiManager::setInstance(&manager);
        page.linkChildren();
        manager.finishInitialization();
        manager.setActivePage(&page);
        listener.heard.clear();
    }
    ~Input() override { Engine::GuiManager::setInstance(nullptr); }

    void key(int code, int value, const char* device = keys1) {
        FakePlatform::devices[device].push_back({0, 0, 1, static_cast<std::uint16_t>(code), value});
    }
    /// A contact that begins at a place of the screen, or moves there. The panel counts in halves.
    void contact(int x, int y, bool begins) {
        auto& records = FakePlatform::devices[touchScreen];
        if (begins) records.push_back({0, 0, 3, 57, 1});
        records.push_back({0, 0, 3, 54, 2 * x});
        records.push_back({0, 0, 3, 53, 2 * y});
        records.push_back({0, 0, 0, 0, 0});
    }
    void lift() {
        auto& records = FakePlatform::devices[touchScreen];
        records.push_back({0, 0, 3, 57, -1});
        records.push_back({0, 0, 0, 0, 0});
    }
    enum Lock { None = 0, Keys = 1, Touch = 2, Off = 4, Saver = 8 };
    bool update(int lock = None) {
        return input.update((lock & Keys) != 0, (lock & Touch) != 0, (lock & Off) != 0, (lock & Saver) != 0);
    }
    std::vector<Engine::EventId> events() {
        manager.processEvents(true);
        return std::exchange(listener.heard, {});
    }
    auto touches() { return std::exchange(pad.touches, {}); }

    Engine::GuiManager manager;
    Listener listener;
    TouchPad pad;
    Engine::Reaction reaction{{}, &listener};
    Engine::Reaction* const reactions[1] = {&reaction};
    Engine::Object* const children[1] = {&pad};
    Engine::Page page{Engine::PageParams{.children = children, .behavior = {.reactions = reactions}}};
    int lockedKeys = 0;
    InputEventHandling input{240, 400, [this] { ++lockedKeys; }};
};

TEST_F(Input, KeysBecomeEvents) {
    for (const int value : {1, 2, 0}) key(256, value);
    key(300, 1);
    key(116, 1, power);
    update();
    EXPECT_THAT(events(), ElementsAre(138, 139, 174));
    EXPECT_THAT(FakePlatform::log, HasSubstr("USER Key: UnknownUserEvent"));
    input.simulateKey(1u << 24 | 353u << 8 | 0u);
    EXPECT_THAT(events(), ElementsAre(173));
    EXPECT_THAT(FakePlatform::log, HasSubstr("SIMULATE Key: "));
    input.simulateKey(2u << 24 | 353u << 8 | 0u);
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Input, ExtraEventsComeFirst) {
    input.setExtraEvent(138, 250);
    input.setExtraEvent(138, 251);
    key(256, 1);
    update();
    EXPECT_THAT(events(), ElementsAre(251, 138));
    input.setExtraEvent(138, 0);
    key(256, 1);
    update();
    EXPECT_THAT(events(), ElementsAre(138));
}

TEST_F(Input, LockedKeysTellTheCallbackAndSparePowerAlone) {
    key(256, 1);
    key(256, 0);
    key(116, 1, power);
    contact(10, 10, true);
    lift();
    update(Keys);
    EXPECT_EQ(lockedKeys, 2);
    EXPECT_THAT(touches(), IsEmpty()) << "the key lock implies the touch lock";
    EXPECT_THAT(events(), ElementsAre(174));
    key(256, 1);
    contact(10, 10, true);
    update(Touch);
    EXPECT_THAT(events(), ElementsAre(138));
    EXPECT_THAT(touches(), IsEmpty());
}

TEST_F(Input, RotationSwapsSoftKeysAndMirrorsTouches) {
    input.setRotated(true);
    for (const int code : {256, 257, 261, 262}) key(code, 1);
    update();
    EXPECT_THAT(events(), ElementsAre(148, 146, 138, 150));
    contact(10, 20, true);
    update();
    EXPECT_THAT(touches(), ElementsAre(std::tuple(0, 230, 380, 0)));
    EXPECT_THAT(FakePlatform::log, HasSubstr("USER Touch: touch/0 at 230x380"));
}

TEST_F(Input, NothingIsReadWhileInputIsOff) {
    key(256, 1);
    update(Saver);
    key(257, 1);
    EXPECT_TRUE(update(Off));
    EXPECT_EQ(FakePlatform::devices[keys1].size(), 1u);
}

TEST_F(Input, AKeyOrATouchWakesTheScreenAndIsNotDelivered) {
    EXPECT_TRUE(update(Saver));
    key(259, 1);
    EXPECT_TRUE(update(Saver));
    key(259, 0);
    EXPECT_FALSE(update(Saver));
    EXPECT_EQ(input.lastKey(), 259);
    update();
    contact(10, 10, true);
    contact(12, 10, false);
    EXPECT_TRUE(update(Saver));
    lift();
    EXPECT_FALSE(update(Saver));
    EXPECT_EQ(input.lastKey(), InputEventHandling::touchKey);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(touches(), IsEmpty());
}

TEST_F(Input, WhatWasHeldWhenTheSaverBeganDoesNotWake) {
    key(256, 1);
    contact(10, 10, true);
    update();
    touches();
    key(256, 0);
    lift();
    EXPECT_TRUE(update(Saver));
    EXPECT_THAT(touches(), IsEmpty()) << "a touch's release is swallowed";
    EXPECT_THAT(events(), ElementsAre(138, 5, 139)) << "a key's release goes through";
}

TEST_F(Input, AMissingDeviceDoesNotStopTheOthers) {
    FakePlatform::devices.erase(keys1);
    contact(10, 10, true);
    update();
    EXPECT_THAT(touches(), ElementsAre(std::tuple(0, 10, 10, 0)));
}

}  // namespace
