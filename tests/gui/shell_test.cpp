// The shell's small parts.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "apps/gui/main/joystick.h"
#include "apps/gui/main/missedframes.h"
#include "apps/gui/main/options.h"

namespace {

class Heard final : public Joystick::Listener {
  public:
    void joystickPressed(Joystick::Direction direction, bool first) override {
        pressed.push_back(direction);
        firsts += first ? 1 : 0;
    }
    void joystickReleased(Joystick::Direction, int events) override { released.push_back(events); }

    std::vector<Joystick::Direction> pressed;
    std::vector<int> released;
    int firsts = 0;
};

TEST(MissedFrames, BeginAboveTwentyMilliseconds) {
    EXPECT_EQ(missedFrames(20'000'000), 0);
    EXPECT_EQ(missedFrames(21'000'000), 0) << "0.5 + 1.26 is one frame, the one that was due";
    EXPECT_EQ(missedFrames(2'000'000'000), 119);
}

TEST(JoystickSteps, RepeatSlowlyAndFastByTheDeflection) {
    Joystick joystick;
    Heard slow, fast;
    joystick.step({}, slow);
    for (int i = 0; i < 600; ++i) joystick.step({0.2F, 0, false, 3}, slow);
    EXPECT_EQ(slow.pressed.size(), 3u) << "0.025 a step against 20 / 3";
    EXPECT_EQ(slow.firsts, 1);
    joystick.step({0, 0, false, 3}, slow);
    EXPECT_EQ(slow.released, std::vector<int>{3});
    for (int i = 0; i < 60; ++i) joystick.step({0, -1, false, 10}, fast);
    EXPECT_EQ(fast.pressed.front(), Joystick::Down);
    EXPECT_EQ(fast.pressed.size(), 49u);
}

TEST(JoystickSteps, AreBlockedUntilTheCentreAndSurviveBadReadings) {
    Joystick joystick;
    Heard heard;
    joystick.step({1, 0, true, 1}, heard);
    EXPECT_TRUE(heard.pressed.empty()) << "held since the start";
    joystick.step({0, 0, true, 1}, heard);
    joystick.step({1, 1, true, 0}, heard);
    EXPECT_EQ(heard.pressed, std::vector<Joystick::Direction>{Joystick::Up}) << "a tie goes to Y";
    joystick.step({std::nanf(""), INFINITY, true, -5}, heard);
    EXPECT_EQ(heard.pressed.size(), 1u);
    joystick.step({0, 1, true, 0x7fffffff}, heard);
    EXPECT_EQ(heard.pressed.size(), 2u) << "a speed that cannot be is the fastest there is";
    joystick.block();
    for (int i = 0; i < 9; ++i) joystick.step({0, 1, true, 10}, heard);
    EXPECT_EQ(heard.pressed.size(), 2u);
}

TEST(Options, RefuseWhatTheyDoNotKnowWithTheUsage) {
    char name[] = "gui", unknown[] = "-x", text[] = "-t", index[] = "12";
    char* good[] = {name, text, index, nullptr};
    const auto options = parseOptions(3, good, stderr);
    ASSERT_TRUE(options);
    EXPECT_TRUE(options->verifyTexts);
    EXPECT_EQ(options->language, 12);
    char buffer[256] = "";
    std::FILE* errors = ::fmemopen(buffer, sizeof buffer, "w");
    char* bad[] = {name, unknown, nullptr};
    EXPECT_FALSE(parseOptions(2, bad, errors));
    std::fclose(errors);
    EXPECT_NE(std::string(buffer).find(
                  "Usage: gui [OPTION]...\n  -t INDEX         run text translation test for language with INDEX\n"),
              std::string::npos);
}

}  // namespace
