#include "embedded-gui-engine/level.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "screen.h"

namespace {

using Engine::Level;
using Engine::Rect;
using TextTest::Screen;
using Direction = Level::Direction;
using Mode = Level::Mode;

constexpr Engine::WidgetParams params{.x = 1, .y = 1, .width = 8, .height = 2};

std::string drawn(Direction direction, Mode mode, float value, Engine::WidgetParams where = params,
                  const Engine::Image* image = nullptr) {
    Level level(where, direction, mode, 2, 0.0F, image, value, 0.0F, 100.0F);
    Screen screen(10, 4);
    screen.draw(level);
    return screen.picture();
}

TEST(Level, BarsGrowInFourDirections) {
    EXPECT_EQ(drawn(Direction::Right, Mode::Bar, 50), "\n          \n ####.... \n ####.... \n          ");
    EXPECT_EQ(drawn(Direction::Left, Mode::Bar, 40), "\n          \n .....### \n .....### \n          ");
    EXPECT_EQ(drawn(Direction::Up, Mode::Bar, 50), "\n          \n ........ \n ######## \n          ");
    EXPECT_EQ(drawn(Direction::Down, Mode::Bar, 99), "\n          \n ######## \n ........ \n          ");
}

TEST(Level, PointersMoveInFourDirections) {
    EXPECT_EQ(drawn(Direction::Right, Mode::Pointer, 50), "\n          \n ...##... \n ...##... \n          ");
    EXPECT_EQ(drawn(Direction::Right, Mode::Pointer, 100), "\n          \n ......## \n ......## \n          ");
    EXPECT_EQ(drawn(Direction::Left, Mode::Pointer, 20), "\n          \n .....##. \n .....##. \n          ");
    Engine::WidgetParams upright = params;
    upright.y = 0;
    upright.width = 2;
    upright.height = 4;
    EXPECT_EQ(drawn(Direction::Up, Mode::Pointer, 0, upright), "\n ..       \n ..       \n ##       \n ##       ");
    EXPECT_EQ(drawn(Direction::Down, Mode::Pointer, 50, upright), "\n ..       \n ##       \n ##       \n ..       ");
}

TEST(Level, ImagesAreRevealedFromTheEdgeTheyGrowFrom) {
    static constexpr std::array<std::uint8_t, 4> bits{255, 0, 255, 255};
    const Engine::Image image{4, 4, 1, Engine::Image::Mask8, bits.data()};
    EXPECT_EQ(drawn(Direction::Right, Mode::Bar, 50, params, &image),
              "\n          \n #....... \n ........ \n          ");
    EXPECT_EQ(drawn(Direction::Left, Mode::Bar, 50, params, &image),
              "\n          \n ..##.... \n ........ \n          ");
    Engine::WidgetParams low = params;
    low.verticalAlign = Engine::Painter::Align::End;
    EXPECT_EQ(drawn(Direction::Right, Mode::Pointer, 50, low, &image),
              "\n          \n ........ \n ...#.... \n          ");
}

TEST(Level, StepsAreThoseOfTheValueItself) {
    const auto width = [](float steps, float value, float minimum, float maximum) {
        const Level level(params, Direction::Right, Mode::Bar, 1, steps, nullptr, value, minimum, maximum);
        Rect rect{0, 0, 100, 1};
        level.barRect(rect);
        return rect.width;
    };
    EXPECT_EQ(width(4, 99, 0, 100), 75);
    EXPECT_EQ(width(1, 99, 0, 100), 0);
    EXPECT_EQ(width(1, 100, 0, 100), 100);
    EXPECT_EQ(width(4, 60, 50, 150), 0);
    EXPECT_LT(width(1, 20, 10, 110), 0);
    EXPECT_EQ(width(0, 5, 7, 7), 100) << "no range: the whole rectangle";
    EXPECT_EQ(width(0, std::nanf(""), 0, 1), 0);
    EXPECT_EQ(width(0, std::numeric_limits<float>::infinity(), 0, 1), std::numeric_limits<std::int16_t>::max());
}

TEST(Level, LimitsPushTheValueForGood) {
    Level level(params);
    level.setValue(1500);
    EXPECT_EQ(level.value(), 1000.0F);
    level.setMaximum(2000.0F);
    EXPECT_EQ(level.value(), 1000.0F);
    level.setMinimum(1200.0F);
    EXPECT_EQ(level.value(), 1200.0F);
    level.setMaximum(1100.0F);
    EXPECT_EQ(level.value(), 1100.0F) << "the maximum wins";
}

}  // namespace
