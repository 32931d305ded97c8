#include <gtest/gtest.h>

#include <cmath>

#include "embedded-gui-engine/pinchscalewidget.h"

namespace ScaleTest {
namespace {

using Phase = Engine::TouchEvent::Phase;

class Value : public Engine::VariableBase<float> {
  public:
    const char* name() const override { return "value"; }
    float value() const override { return now; }
    int flags() const override { return 0; }
    bool setValue(float value) override {
        now = value;
        ++writes;
        return true;
    }
    float now = 2;
    int writes = 0;
};

class Pinch : public testing::Test {
  protected:
    bool touch(Phase phase, int finger, int x, int y = 0) { return widget.handleTouch({x, y, phase, finger}); }
    /// Two fingers at `from` pixels from each other.
    void start(int from) {
        EXPECT_FALSE(touch(Phase::Down, 0, 0));
        EXPECT_TRUE(touch(Phase::Down, 1, from));
    }

    Value value;
    Engine::PinchScaleWidget widget{{.width = 68, .height = 332}, &value, &value, 0.5F, 3};
};

TEST_F(Pinch, FollowsTheRatioFromTheFirstTouchOn) {
    start(100);
    EXPECT_EQ(value.now, 2) << "ratio 1";
    EXPECT_TRUE(touch(Phase::Move, 1, 125));
    EXPECT_EQ(value.now, 2.5F);
    EXPECT_TRUE(touch(Phase::Move, 0, 50)) << "the start value is that of the first step, not the last one written";
    EXPECT_EQ(value.now, 1.5F);
    touch(Phase::Move, 1, 200);
    EXPECT_EQ(value.now, 3) << "150 of 100, at the limit";
    touch(Phase::Move, 1, 50);
    EXPECT_EQ(value.now, 0.5F);
    touch(Phase::Move, 1, 200);
    widget.setMaximum(2.5F);
    touch(Phase::Move, 1, 200);
    EXPECT_EQ(value.now, 2.5F) << "a limit is in force from the next step on";
}

TEST_F(Pinch, EndsWhenAFingerIsLifted) {
    start(100);
    EXPECT_FALSE(touch(Phase::Up, 1, 100));
    EXPECT_FALSE(widget.isPinching());
    const int writes = value.writes;
    EXPECT_FALSE(touch(Phase::Move, 0, 40));
    EXPECT_FALSE(touch(Phase::Move, 1, 500));
    EXPECT_EQ(value.writes, writes);
    value.now = 1;
    EXPECT_TRUE(touch(Phase::Down, 1, 100)) << "the other finger is down still";
    EXPECT_TRUE(touch(Phase::Move, 0, 0));
    EXPECT_EQ(value.now, 1) << "measured from where the first finger went down";
}

TEST_F(Pinch, RefusesOtherFingersAndOneAlone) {
    EXPECT_FALSE(touch(Phase::Down, 0, 0));
    EXPECT_FALSE(touch(Phase::Move, 0, 50));
    EXPECT_FALSE(touch(Phase::Down, 2, 50));
    EXPECT_FALSE(touch(Phase::Down, -1, 50));
    EXPECT_EQ(value.writes, 0);
}

TEST_F(Pinch, OfNoDistanceGoesToALimit) {
    start(0);
    EXPECT_EQ(value.now, 0.5F) << "0 / 0";
    touch(Phase::Move, 1, 1);
    EXPECT_EQ(value.now, 3) << "1 / 0";
    touch(Phase::Move, 1, INT32_MAX, INT32_MIN);
    EXPECT_EQ(value.now, 3);
}

TEST_F(Pinch, NeverWritesWhatIsNotFinite) {
    widget.setMinimum(std::nanf(""));
    widget.setMaximum(INFINITY);
    start(0);
    touch(Phase::Move, 1, 7);
    EXPECT_EQ(value.writes, 0);
}

TEST_F(Pinch, WithoutAVariableOnlyTakesTheTouch) {
    Engine::PinchScaleWidget blind({.width = 10, .height = 10}, nullptr, nullptr);
    blind.handleTouch({0, 0, Phase::Down, 0});
    EXPECT_TRUE(blind.handleTouch({5, 0, Phase::Down, 1}));
}

}  // namespace
}  // namespace ScaleTest
