// What scales and indicators draw, as pictures.
#include <cmath>
#include <limits>

#include "embedded-gui-engine/fixedindicator.h"
#include "embedded-gui-engine/scaleplace.h"
#include "ruler.h"
#include "tests/text/recordingpainter.h"
#include "tests/text/testfont.h"

namespace ScaleTest {
namespace {

using Container = Engine::ScaleContainer;
using Follow = Container::Follow;

class Scales : public Engine::Test::World {};

/// The lines between the free pixels.
Picture inside(Ruler& ruler) {
    Picture result;
    for (const std::string& line : ruler.picture()) result.push_back(line.substr(1, 12));
    EXPECT_EQ(result.front(), "            ");
    EXPECT_EQ(result.back(), "            ");
    return {result.begin() + 1, result.end() - 1};
}

TEST_F(Scales, NumbersAreLeftOutWhereRowsStandTooClose) {
    Ruler ruler(10);
    ruler.table.add(3, 0, "0");
    ruler.table.add(3, 10, "1");  // one pixel further: a label takes two
    ruler.table.add(3, 30, "3");
    ruler.table.add(1, 50, "5");  // no label
    ruler.table.add(3, 70, "");   // a label without a text
    ruler.table.add(3, 100);
    ruler.elements = {&ruler.scale, nullptr, nullptr};
    EXPECT_EQ(inside(ruler), (Picture{"MMMM.LLL....",  //
                                      "--...LLL....",  //
                                      "............",  //
                                      "MMMM.LLL....",  //
                                      ".....LLL....",  //
                                      "mmm.........",  //
                                      "............",  //
                                      "mmm.........",  //
                                      "............",  //
                                      "............"}));
    ruler.container.setMagnification(2);
    EXPECT_EQ(inside(ruler), (Picture{"MMMM.LLL....",  //
                                      ".....LLL....",  //
                                      "MMMM.LLL....",  //
                                      ".....LLL....",  //
                                      "............",  //
                                      "............",  //
                                      "MMMM.LLL....",  //
                                      ".....LLL....",  //
                                      "............",  //
                                      "............"}));
}

TEST_F(Scales, WithoutAMediumTickTheGapDecides) {
    Ruler ruler(6);
    ruler.table.add(3, 0, "0");
    ruler.table.add(1, 10);
    ruler.table.add(1, 40);
    ruler.table.add(1, 60);
    Engine::Scale scale(&ruler.container,
                        {.majorTick = &ruler.major, .minorTick = &ruler.minor, .mainLabel = &ruler.label});
    ruler.elements = {&scale, nullptr, nullptr};
    EXPECT_EQ(inside(ruler), (Picture{"MMMM.LLL....", "--...LLL....", "............", "............", "MMMM........",
                                      "............"}));
}

TEST_F(Scales, RowsOutOfRangeAreDisabledOrLeftOut) {
    Ruler ruler(6);
    ruler.table.add(0, 0, "0");
    ruler.table.add(2, 30, "3");
    ruler.table.add(1, 60);
    ruler.elements = {&ruler.scale, nullptr, nullptr};
    EXPECT_EQ(inside(ruler), (Picture{"xxx.........", "............", "............", "xxxx.LLL....", ".....LLL....",
                                      "............"}));
    ruler.label.setDisabledForeground(0xFFFFFFFF);  // numbers every row with a text
    ruler.medium.setDisabledForeground(0);
    ruler.medium.setDisabledBackground(0);
    EXPECT_EQ(inside(ruler), (Picture{"xxxx.xxx....", ".....xxx....", "............", "xxxx.LLL....", ".....LLL....",
                                      "............"}));
    ruler.label.setDisabledForeground(0);
    EXPECT_EQ(inside(ruler)[0], "............") << "both disabled colours of the medium tick are 0";
}

TEST_F(Scales, SlideBehindTheWindow) {
    Ruler ruler(5, {.position = 0.5F, .follow = Follow::Centred, .magnification = 2});
    for (int axis = 0; axis <= 10; axis += 5) ruler.table.add(3, axis);
    ruler.elements = {&ruler.plain, nullptr, nullptr};
    EXPECT_EQ(inside(ruler), (Picture{"............", "............", "............", "MMMM........", "............"}));
    ruler.container.setPosition(0.25F);
    EXPECT_EQ(inside(ruler), (Picture{"MMMM........", "............", "............", "............", "............"}));
    ruler.container.setReversed(true);
    ruler.container.setPosition(1);
    EXPECT_EQ(ruler.container.pixelOfFraction(1), 2) << "the offset follows at once";
}

TEST_F(Scales, MarkersStayAtTheEdgeWhileTheirValueIsOutside) {
    Ruler ruler(6, {.position = 0.5F, .follow = Follow::Centred, .magnification = 2});
    ruler.elements = {&ruler.marker, nullptr, nullptr};
    const auto shown = [&](float value) {
        ruler.marker.setValue(value);
        std::string column;
        for (const std::string& line : inside(ruler)) column += line[8];
        return column;
    };
    EXPECT_EQ(shown(0.5F), "...***");
    EXPECT_EQ(shown(0.0F), "AA....");
    EXPECT_EQ(shown(1.0F), "....BB");
    Engine::MarkerIndicator bare(&ruler.container, {.marker = &ruler.dot}, -0.25F);
    ruler.elements = {&bare, nullptr, nullptr};
    EXPECT_EQ(shown(0.0F), "......");
    bare.setValue(0.0F);
    EXPECT_EQ(shown(0.0F), "*.....") << "the clip takes the rest";
    bare.setEnabled(false);
    EXPECT_EQ(shown(0.0F), "......");
}

TEST_F(Scales, RangesAreTheSameEitherWayRound) {
    Ruler ruler(8);
    ruler.elements = {&ruler.range, nullptr, nullptr};
    const auto shown = [&](float from, float to) {
        ruler.range.setFrom(from);
        ruler.range.setTo(to);
        std::string column;
        for (const std::string& line : inside(ruler)) column += line[10];
        return column;
    };
    EXPECT_EQ(shown(0.25F, 0.75F), "..====..");
    EXPECT_EQ(shown(0.75F, 0.25F), "..====..");
    EXPECT_EQ(shown(0.5F, 0.5F), "........");
    EXPECT_EQ(shown(-1e9F, 1e9F), "========");
}

TEST_F(Scales, WhatStandsStillLiesBetweenTheOthersInTheirOrder) {
    Ruler ruler(4);
    Engine::Test::Box line{{.x = 0, .y = 1, .width = 12, .height = 2, .background = green}};
    Engine::FixedIndicator below(&ruler.container, &line), none(&ruler.container, nullptr);
    ruler.range.setFrom(0.25F);
    ruler.range.setTo(0.5F);
    ruler.elements = {&ruler.range, &below, &none};
    line.setParent(&ruler.container);
    EXPECT_EQ(inside(ruler)[1][10], 'm') << "over the band";
    ruler.container.setPosition(0.7F);
    EXPECT_EQ(inside(ruler)[2][0], 'm') << "it does not slide";
    ruler.elements = {&below, &ruler.range, nullptr};
    EXPECT_EQ(inside(ruler)[1][10], '=') << "under the band";
    below.setEnabled(false);
    EXPECT_EQ(inside(ruler)[1][0], '.');
}

TEST_F(Scales, AValueHasItsPlaceBetweenTheRowsThatEncloseIt) {
    Table rising, falling, two;
    const float far = 9999;
    for (const auto& [axis, value] : {std::pair(100, 1.0F), {300, 2.0F}, {400, 4.0F}, {500, far}})
        rising.addValue(axis, value);
    for (const auto& [axis, value] : {std::pair(0, far), {50, 2.0F}, {100, 1.0F}}) falling.addValue(axis, value);
    const auto place = [](const Table& table, float value) {
        const Engine::Result<float> wanted(value);
        return Engine::ScalePlace(&table, &wanted).value();
    };
    EXPECT_FLOAT_EQ(place(rising, 1), 0);
    EXPECT_FLOAT_EQ(place(rising, 2), 0.5F);
    EXPECT_FLOAT_EQ(place(rising, 4.0F / 3), 0.25F) << "half way of the reciprocals";
    EXPECT_FLOAT_EQ(place(rising, 0.5F), 0) << "the nearer end";
    EXPECT_FLOAT_EQ(place(rising, 1e9F), 1);
    EXPECT_FLOAT_EQ(place(rising, std::numeric_limits<float>::infinity()), 1);
    EXPECT_FLOAT_EQ(place(falling, 2), 0.5F);
    EXPECT_FLOAT_EQ(place(falling, 1.2F), 0.5F + 0.5F * (1 / 2.0F - 1 / 1.2F) / (1 / 2.0F - 1));
    for (const float odd : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_TRUE(std::isnan(place(rising, odd)));
    EXPECT_TRUE(std::isnan(place(two, 1)));
    two.addValue(5, 1);
    two.addValue(5, 2);
    EXPECT_TRUE(std::isnan(place(two, 1))) << "no extent";
    two.addValue(9, std::numeric_limits<float>::quiet_NaN());
    two.addValue(10, 0);
    EXPECT_FALSE(place(two, 1.5F) > 1) << "odd rows give a place on the scale or none";
}

TEST_F(Scales, ObjectsStandAcrossAndAlong) {
    Ruler ruler(4);
    Table objects;
    objects.addObject(1, 0.5F, 0.25F);
    objects.addObject(0, 0, 0.5F);
    objects.addObject(7, -1, 0.75F);
    Engine::ObjectIndicator indicator(&ruler.container, &objects, &ruler.object, 8);
    ruler.elements = {&indicator, nullptr, nullptr};
    EXPECT_EQ(inside(ruler), (Picture{"............", ".......o....", "............", ".o.........."}));
    EXPECT_EQ(ruler.object.x(), 5);
    indicator.update();
    EXPECT_TRUE(ruler.page.isDirty());
}

TEST_F(Scales, TheSecondTextFollowsTheFirst) {
    const TextTest::TestFont font(TextTest::TestFont::monospaced(6));
    TextTest::RecordingPainter painter;
    Ruler ruler(100);
    auto& testFont = const_cast<TextTest::TestFont&>(font);
    Engine::Label main({.x = 20, .width = 60, .height = 10, .font = testFont.font()});
    Engine::Label sub({.x = 2, .width = 60, .height = 10, .font = testFont.font()});
    main.setParent(&ruler.container);
    sub.setParent(&ruler.container);
    ruler.table.add(3, 0, "a", "b");
    ruler.table.add(3, 50, "aaa", "b");
    ruler.table.add(3, 90, "a");  // at the window's end: out of sight
    Engine::Scale scale(&ruler.container, {.mainLabel = &main, .subLabel = &sub},
                        Engine::Scale::SubLabel::FollowsMainLabel);
    ruler.elements = {&scale, nullptr, nullptr};
    ruler.page.draw(painter);
    // The container begins at 1, the main text at 21, glyphs bear 1 to the right; the second text begins 2 behind.
    std::erase_if(painter.calls, [](const auto& call) { return call.kind != 'g'; });
    EXPECT_EQ(painter.glyphs(), "a22 b30 a22 a28 a34 b42");
    EXPECT_EQ(sub.x(), 2);
}

TEST_F(Scales, ToldOfATableTheyAskForARepaint) {
    Ruler ruler(10);
    ruler.elements = {&ruler.scale, &ruler.marker, nullptr};
    ruler.picture();
    EXPECT_FALSE(ruler.page.isDirty());
    ruler.container.update();
    EXPECT_TRUE(ruler.page.isDirty());
    ruler.picture();
    ruler.marker.setValue(0);
    ruler.container.setMagnification(1);
    EXPECT_FALSE(ruler.page.isDirty()) << "values in force";
    ruler.marker.setValue(0.5F);
    EXPECT_TRUE(ruler.page.isDirty());
}

class Told : public Engine::VariableBase<float> {
  public:
    const char* name() const override { return "told"; }
    float value() const override { return value_; }
    int flags() const override { return 0; }
    bool setValue(float value) override {
        value_ = value;
        ++writes;
        return true;
    }
    int writes = 0;

  private:
    float value_ = -1;
};

TEST_F(Scales, TellTheEdgesOfTheWindow) {
    Told start, end;
    Ruler ruler(
        100,
        {.position = 0.5F, .follow = Follow::Centred, .magnification = 4, .visibleStart = &start, .visibleEnd = &end});
    ruler.picture();
    EXPECT_FLOAT_EQ(start.value(), 149.0F / 400.0F) << "the offset of 50 - 200 + 0.5 truncates to -149";
    EXPECT_FLOAT_EQ(end.value(), 249.0F / 400.0F);
    ruler.container.setMagnification(0);
    ruler.picture();
    EXPECT_EQ(start.writes + end.writes, 2) << "nothing is told of a scale without extent";
}

// What a model declares is constant data, also where container and elements name each other.
extern Engine::ScaleContainer modelContainer;
constinit Engine::Scale modelScale(&modelContainer, {});
constinit Engine::MarkerIndicator modelMarker(&modelContainer, {}, 0.5F);
constinit Engine::RangeIndicator modelRange(&modelContainer, nullptr);
constinit Engine::ObjectIndicator modelObjects(&modelContainer, nullptr, nullptr, 3);
constinit Engine::ScaleContainerElement* const modelElements[] = {&modelScale, &modelMarker, &modelRange,
                                                                  &modelObjects};
constinit Engine::ScaleContainer modelContainer({}, {.elements = modelElements});
static_assert(std::is_trivially_destructible_v<Engine::ScaleContainer>);
static_assert(std::is_trivially_destructible_v<Engine::Scale>);
static_assert(std::is_trivially_destructible_v<Engine::ObjectIndicator>);

}  // namespace
}  // namespace ScaleTest
