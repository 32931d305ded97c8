// From fractions and axis positions to pixels, and what numbers from outside do to it.
#include <cmath>
#include <limits>
#include <random>

#include "embedded-gui-engine/arraytablesource.h"
#include "ruler.h"

namespace ScaleTest {
namespace {

using Container = Engine::ScaleContainer;
using Follow = Container::Follow;

class ScaleMapping : public Engine::Test::World {
  protected:
    /// Pixels of the fractions on a window of 332 pixels, measured from the window's top.
    static std::vector<int> places(Container::Params params, std::initializer_list<float> fractions) {
        Ruler ruler(332, params);
        ruler.picture();
        std::vector<int> result{ruler.container.offset()};
        for (const float fraction : fractions) result.push_back(ruler.container.pixelOfFraction(fraction));
        return result;
    }
};

TEST_F(ScaleMapping, TruncatesAtEveryStep) {
    using V = std::vector<int>;
    EXPECT_EQ(places({}, {0, 0.5F, 1}), (V{0, 0, 166, 332}));
    EXPECT_EQ(places({.position = 0.5F, .follow = Follow::Centred, .magnification = 4}, {0.375F, 0.5F, 0.625F}),
              (V{-497, 1, 167, 333}));
    EXPECT_EQ(places({.position = 1, .magnification = 4}, {0, 0.75F, 1}), (V{-995, -994, 1, 333}));
    EXPECT_EQ(places({.position = 0.25F, .magnification = 2.5F}, {0.1F, 0.5F}), (V{-124, -40, 291}));
    EXPECT_EQ(places({.follow = Follow::Centred}, {0, 1}), (V{166, 166, 498}));
}

TEST_F(ScaleMapping, ReversedIsTheComplement) {
    Container::Params down{.position = 0.3F, .follow = Follow::Centred, .magnification = 3.7F};
    Container::Params up = down;
    up.position = 1.0F - down.position;
    up.direction = Container::Direction::Up;
    for (const float fraction : {0.0F, 0.125F, 0.5F, 0.75F, 1.0F})
        EXPECT_EQ(places(up, {fraction}).back(), places(down, {1.0F - fraction}).back()) << fraction;
}

TEST_F(ScaleMapping, TheAxisIsTheTables) {
    Ruler ruler(100);
    ruler.table.add(3, -1000);
    ruler.table.add(3, 3000);
    ruler.picture();
    EXPECT_EQ(ruler.container.pixelOfAxis(-1000), 0);
    EXPECT_EQ(ruler.container.pixelOfAxis(0), 25);
    EXPECT_EQ(ruler.container.pixelOfAxis(5000), 150) << "beyond the last row";
    EXPECT_EQ(ruler.container.axisOfFraction(ruler.container.fractionOfPixels(10)), -599) << "-599.5 truncates upwards";
    ruler.table.keep(1);
    EXPECT_EQ(ruler.container.pixelOfAxis(7), 0) << "an axis without extent";
}

TEST_F(ScaleMapping, NumbersFromOutsideStayWithinBounds) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    const float bad[] = {std::nanf(""), inf, -inf, 0, 1e30F, -1e30F, 1e-40F};
    Ruler ruler(40);
    for (const int axis : {0, INT32_MAX, INT32_MIN, 5, 5, 5, -7, INT32_MAX})
        ruler.table.add(3, axis, "12345678901234567890");
    ruler.elements = {&ruler.scale, &ruler.range, &ruler.marker};
    const Picture empty = Picture(42, "              ");
    for (const float position : bad)
        for (const float magnification : bad)
            for (const bool reversed : {false, true}) {
                ruler.container.setPosition(position);
                ruler.container.setMagnification(magnification);
                ruler.container.setReversed(reversed);
                ruler.marker.setValue(position);
                ruler.range.setFrom(position);
                ruler.range.setTo(magnification);
                ruler.table.counted = 0;
                const Picture picture = ruler.picture();
                EXPECT_EQ(picture.front(), empty.front());
                EXPECT_EQ(picture.back(), empty.back());
                EXPECT_LT(ruler.table.counted, 40);
                EXPECT_EQ(ruler.label.y(), 0) << "templates come home";
                EXPECT_EQ(ruler.dot.y(), -1);
            }
}

TEST_F(ScaleMapping, WhatIsNoNumberHasNoPlace) {
    Ruler ruler(10);
    ruler.table.add(3, 0, "0");
    ruler.table.add(3, 9, "9");
    ruler.elements = {&ruler.marker, &ruler.range, nullptr};
    ruler.marker.setValue(std::nanf(""));
    ruler.range.setFrom(std::nanf(""));
    for (const std::string& line : ruler.picture()) EXPECT_EQ(line.find_first_of("*AB="), std::string::npos) << line;
    EXPECT_EQ(ruler.container.pixelOfFraction(std::nanf("")), Container::Nowhere);
}

TEST_F(ScaleMapping, ScalesTallerThanACoordinateDoNotComeRound) {
    Ruler ruler(10, {.magnification = 6553.6F * 2});
    for (int axis = 0; axis <= 2; ++axis) ruler.table.add(3, axis);
    ruler.elements = {&ruler.plain, nullptr, nullptr};
    const Picture picture = ruler.picture();
    EXPECT_EQ(picture[1], " MMMM........ ");
    for (std::size_t line = 2; line <= 10; ++line) EXPECT_EQ(picture[line], " ............ ");
}

TEST_F(ScaleMapping, RowsAreCutAtTheirField) {
    Table table;
    const char text[16] = {'1', '2', '3', '4', '5', '6', '7', '8', '9', '0', '1', '2', '3', '4', '5', '6'};
    table.add(1, 5, text, nullptr);
    EXPECT_STREQ(Engine::ScaleRow::read(table, 0).mainText.data(), "1234567890123456");
    EXPECT_STREQ(Engine::ScaleRow::read(table, 0).subText.data(), "");
    EXPECT_EQ(Engine::ScaleRow::read(table, 7).axisPosition, 0) << "no cells";
}

TEST_F(ScaleMapping, LiveRowsEndWithTheTablesRoom) {
    struct Array {
        unsigned int rowDimension() const { return 70000; }
        unsigned int rowSize() const { return 3; }
        Engine::ValueProvider<int>* getIntVariable(unsigned int, unsigned int) const { return nullptr; }
        Engine::ValueProvider<float>* getFloatVariable(unsigned int, unsigned int) const { return nullptr; }
        Engine::ValueProvider<const char*>* getStringVariable(unsigned int, unsigned int) const { return nullptr; }
    };
    const Array array;
    EXPECT_EQ(Engine::ArrayTableSource<Array>(&array).rowCount(), 3u);
}

TEST_F(ScaleMapping, ATableMayShrinkBetweenTwoRows) {
    Ruler ruler(20);
    for (int axis = 0; axis < 50; ++axis) ruler.table.add(3, axis, "1");
    ruler.elements = {&ruler.scale, nullptr, nullptr};
    ruler.table.whenCounted = [&] {
        if (ruler.table.counted > 60) ruler.table.keep(10);
    };
    ruler.picture();
    EXPECT_LT(ruler.table.counted, 110);
}

}  // namespace
}  // namespace ScaleTest
