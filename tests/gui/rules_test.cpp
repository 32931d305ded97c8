// The shell's rules about axes, assignments, motors, marks and the screen saver.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>
#include <vector>

#include "apps/gui/main/assignmentflags.h"
#include "apps/gui/main/axiscolumns.h"
#include "apps/gui/main/markercolors.h"
#include "apps/gui/main/messagedata.h"
#include "apps/gui/main/motorsummary.h"
#include "apps/gui/main/scalemarks.h"
#include "apps/gui/main/screencapture.h"
#include "apps/gui/main/screensaveranimation.h"
#include "apps/gui/main/softbuttonmapping.h"

namespace {

TEST(AxisColumns, FollowTheAssignments) {
    const auto right = [](Assignments a) { return axisColumns(a, Rows::PerAxis, Hand::Right); };
    EXPECT_EQ(right({1, 2, 3}), (AxisColumns{160, 0, 80}));
    EXPECT_EQ(axisColumns({1, 2, 3}, Rows::PerAxis, Hand::Left), (AxisColumns{0, 160, 80}));
    EXPECT_EQ(right({7, 0, 8}), (AxisColumns{80, 160, 0})) << "second units stand for their axis";
    EXPECT_EQ(right({2, 2, 3}), (AxisColumns{80, 160, 80})) << "an axis that the knob has placed stays";
    EXPECT_EQ(right({0, 1, 3}), (AxisColumns{80, 80, 80})) << "focus never goes to the left, and hides the force pad";
    for (const int odd : {-1, 4, 6, 9, 0x7fffffff}) EXPECT_EQ(right({odd, odd, odd}), (AxisColumns{80, 80, 80})) << odd;
    EXPECT_EQ(axisColumns({3, 1, 2}, Rows::Single, Hand::Left), (AxisColumns{-80, -80, 0}));
    EXPECT_EQ((Assignments{0, 5, 2}.single()), 5);
}

TEST(SoftButtons, AreMappedForPlacedAxesOnly) {
    std::map<unsigned, unsigned> extra;
    mapSoftButtons({160, 0, -80}, [&](unsigned key, unsigned axis) { extra[key] = axis; });
    EXPECT_EQ(extra,
              (std::map<unsigned, unsigned>{
                  {148, 176}, {149, 177}, {142, 178}, {143, 179}, {144, 180}, {145, 181}, {138, 182}, {139, 183}}));
}

TEST(AssignmentFlags, GrowWithTheUnit) {
    EXPECT_EQ(assignmentFlags({}).slider.bits(), 0x0f);
    EXPECT_EQ(assignmentFlags({.cinefadeAvailable = true}).knob.bits(), 0x0f) << "the unit must know how to fade";
    const auto all = assignmentFlags({true, true, true, true});
    EXPECT_EQ(all.knob.bits(), 0x5f);
    EXPECT_EQ(all.slider.bits(), 0xff);
    EXPECT_EQ(all.forcePad.bits(), 0x15f);
    EXPECT_FALSE(all.knob.has(16));
    EXPECT_FALSE(all.knob.has(-1));
    EXPECT_THROW(EntryMask().set(16), std::runtime_error);
    EXPECT_EQ(multiSegmentFlags({}), 0x6bu);
    EXPECT_EQ(multiSegmentFlags({.cinefadeUnit = true}), 0x7bu);
    EXPECT_EQ(multiSegmentFlags({.fullUnit = true}), 0x6fu);
    EXPECT_EQ(multiSegmentFlags({.fullUnit = true, .cinefadeUnit = true}), 0x7fu);
}

TEST(MotorSummary, CountsOnlyWhoAsks) {
    const auto of = [](std::vector<MotorState> motors) { return summarize(motors); };
    EXPECT_EQ(of({{}, {true, false, true}}), (MotorSummary{.anyActive = true}));
    EXPECT_EQ(of({{false, true, true}, {false, true, false}}),
              (MotorSummary{.anyRequest = true, .anySkippable = true}));
    EXPECT_TRUE(of({{false, true, true}, {false, false, false}}).allSkippable);
}

TEST(ScaleMarks, AreSharesOfTheirFrameAndBearAnything) {
    EXPECT_EQ(ScaleMark::length(33, 100), 33);
    EXPECT_EQ(ScaleMark::figureY(150, 40), 10);
    EXPECT_EQ(ScaleMark::figureY(0, 40), -20);
    EXPECT_EQ(ScaleMark::thickness(0.1F), 1);
    EXPECT_EQ(ScaleMark::thickness(5), 30);
    EXPECT_EQ(ScaleMark::offset(5), -15);
    EXPECT_EQ(ScaleMark::length(NAN, 100), 0);
    EXPECT_EQ(ScaleMark::length(INFINITY, 100), 32767);
    EXPECT_EQ(ScaleMark::figureY(-INFINITY, 40), -32768);
}

TEST(MarkerColors, AreOneOrGoRound) {
    EXPECT_EQ(markerColor(2, 7), 0xffff4c42);
    EXPECT_EQ(markerColor(0, 11), 0xffff4c42);
    EXPECT_EQ(markerColor(-5, 0), markerColor(99, 10));
}

TEST(ScreenCapture, RefusesNamesThatLeadElsewhere) {
    std::tm time = {};
    time.tm_year = 126, time.tm_mday = 3;
    EXPECT_EQ(ScreenCapture::path("home", time), "/tmp/gui-capture-20260103-000000-home.png");
    for (const char* name : {"a/b", "../x", "a..b", "a\nb"}) EXPECT_FALSE(ScreenCapture::path(name, time)) << name;
    EXPECT_FALSE(ScreenCapture::path(std::string(128, 'a'), time));
}

TEST(ScreenSaver, ChangesItsColourOncePerRippleInModeZeroOnly) {
    ScreenSaverAnimation animation;
    std::vector<std::uint32_t> pixels(8 * 12);
    std::vector<int> colors;
    animation.activate(0, 0);
    for (int ms = 0; ms < 50'000; ms += 100) {
        animation.draw(pixels.data(), 8, 12, ms);
        if (colors.empty() || colors.back() != animation.colorIndex()) colors.push_back(animation.colorIndex());
    }
    EXPECT_EQ(colors, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 1}));
    animation.activate(6, 0);
    animation.draw(pixels.data(), 8, 12, 2500);
    EXPECT_EQ(animation.colorIndex(), 6);
    EXPECT_EQ(pixels[6 * 8 + 4], 0x00ff00u) << "the middle of the ring at phase 0";
    for (const int odd : {-1, 11, 0x7fffffff}) {
        animation.activate(odd, odd);
        animation.draw(pixels.data(), 8, 12, 3000);
    }
}

TEST(MessageTable, HasEachMessageOnceWithItsName) {
    EXPECT_EQ(Messages::table.size(), 22u);
    for (const MessageData& message : Messages::table) {
        EXPECT_STRNE(Messages::nameOf(message.id), "Unknown") << message.id;
        EXPECT_TRUE(message.priority >= 0 && message.priority < 3) << message.id;
        EXPECT_NE(message.button2Text, Engine::TextId{}) << "each can be closed";
    }
    for (const int other : {-1, 15, 26}) EXPECT_STREQ(Messages::nameOf(other), "Unknown");
}

}  // namespace
